// The shared drawing resources, created at start-up and freed at shut-down.
#include "ui/DrawingResources.h"

#include "models/Settings.h"
#include "resources/resource.h"
#include "ui/Application.h"

namespace velmora {
namespace {

// The piece sets in the order of the "bitmapIndex" setting.
constexpr int kSmallBitmaps[DrawingResources::kPieceSets] = {IDB_DIAGRAM_SMALL, IDB_STAUNTON_SMALL,
                                                             IDB_TITAN_SMALL, IDB_ROYAL_SMALL};
constexpr int kLargeBitmaps[DrawingResources::kPieceSets] = {IDB_DIAGRAM_LARGE, IDB_STAUNTON_LARGE,
                                                             IDB_TITAN_LARGE, IDB_ROYAL_LARGE};
constexpr int kPiecesInASet = 12;
constexpr COLORREF kTransparent = 0x000000FF;  // pure red

// A bitmap of the program holding count images of width x height side by side.
struct Strip {
    int bitmapId;
    int width;
    int height;
    int count;
    bool masked;  // every pure red pixel is transparent
};

// Loads a strip into a new image list; null when the bitmap or list cannot be made.
HIMAGELIST LoadStrip(const Strip& strip) {
    HBITMAP bitmap =
        static_cast<HBITMAP>(LoadImageW(App().programInstance, MAKEINTRESOURCEW(strip.bitmapId),
                                        IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
    if (bitmap == nullptr) return nullptr;
    HIMAGELIST list = ImageList_Create(strip.width, strip.height,
                                       ILC_COLOR24 | (strip.masked ? ILC_MASK : 0), strip.count, 1);
    if (list != nullptr) {
        if (strip.masked) {
            ImageList_AddMasked(list, bitmap, kTransparent);
        } else {
            ImageList_Add(list, bitmap, nullptr);
        }
    }
    DeleteObject(bitmap);
    return list;
}

}  // namespace

DrawingResources::DrawingResources(const Settings& settings) {
    HDC screen = GetDC(nullptr);
    for (int set = 0; set < kPieceSets; ++set) {
        smallPieces[set] =
            LoadStrip({kSmallBitmaps[set], kSmallSquare, kSmallSquare, kPiecesInASet, true});
        largePieces[set] =
            LoadStrip({kLargeBitmaps[set], kLargeSquare, kLargeSquare, kPiecesInASet, true});
    }
    evaluationSymbols = LoadStrip({IDB_EVALUATION_SYMBOLS, 15, 14, 8, true});
    indicators = LoadStrip({IDB_SIDE_TO_MOVE, 14, 14, 14, false});

    LOGFONTW font{};
    font.lfHeight = NotationFontHeight(GetDeviceCaps(screen, LOGPIXELSY));
    font.lfCharSet = DEFAULT_CHARSET;
    lstrcpyW(font.lfFaceName, L"Verdana");
    notationFont = CreateFontIndirectW(&font);
    waitCursor = LoadCursorW(nullptr, IDC_WAIT);
    LOGFONTW bold{};
    GetObjectW(GetStockObject(SYSTEM_FONT), sizeof(bold), &bold);
    bold.lfWeight = FW_BOLD;
    boldFont = CreateFontIndirectW(&bold);

    nagMenu = LoadMenuW(App().resourceInstance, MAKEINTRESOURCEW(IDM_NAG));
    nagPopup = nagMenu != nullptr ? GetSubMenu(nagMenu, 0) : nullptr;
    engineMenu = LoadMenuW(App().resourceInstance, MAKEINTRESOURCEW(IDM_ENGINE));
    RebuildColours(settings);
    ReleaseDC(nullptr, screen);
}

DrawingResources::~DrawingResources() {
    DeleteColourObjects();
    if (nagMenu != nullptr) DestroyMenu(nagMenu);
    if (engineMenu != nullptr) DestroyMenu(engineMenu);
    for (int set = 0; set < kPieceSets; ++set) {
        if (smallPieces[set] != nullptr) ImageList_Destroy(smallPieces[set]);
        if (largePieces[set] != nullptr) ImageList_Destroy(largePieces[set]);
    }
    if (evaluationSymbols != nullptr) ImageList_Destroy(evaluationSymbols);
    if (indicators != nullptr) ImageList_Destroy(indicators);
    if (notationFont != nullptr) DeleteObject(notationFont);
    if (boldFont != nullptr) DeleteObject(boldFont);
}

void DrawingResources::DeleteColourObjects() {
    if (framePen != nullptr) DeleteObject(framePen);
    if (arrowPen != nullptr) DeleteObject(arrowPen);
    if (arrowBrush != nullptr) DeleteObject(arrowBrush);
    framePen = arrowPen = nullptr;
    arrowBrush = nullptr;
}

void DrawingResources::RebuildColours(const Settings& settings) {
    DeleteColourObjects();
    lightColour = settings.whiteColor;
    highlightColour = settings.selectColor;
    darkColour = settings.blackColor;
    framePen = CreatePen(PS_SOLID, 0, darkColour);
    arrowPen = CreatePen(PS_SOLID, 0, highlightColour);
    arrowBrush = CreateSolidBrush(highlightColour);
}

HIMAGELIST DrawingResources::Pieces(int set, int squareSize) const {
    if (set < 0 || set >= kPieceSets) set = 0;
    return squareSize >= kLargeSquare ? largePieces[set] : smallPieces[set];
}

}  // namespace velmora
