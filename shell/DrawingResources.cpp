// The shared drawing resources, created at start-up and freed at shut-down.
#include "shell/DrawingResources.h"

#include "shell/Application.h"
#include "shell/Settings.h"

namespace velmora {
namespace {

constexpr int kSmallBitmaps[DrawingResources::kPieceSets] = {139, 118, 132, 129};
constexpr int kLargeBitmaps[DrawingResources::kPieceSets] = {113, 119, 131, 128};
constexpr COLORREF kTransparent = 0x000000FF;  // pure red

// Loads bitmap id of the program into a new image list of size x size images; with a mask,
// every pure red pixel is transparent. Null when the bitmap or list cannot be made.
HIMAGELIST LoadStrip(int id, int width, int height, int count, bool masked) {
    HBITMAP bitmap = static_cast<HBITMAP>(LoadImageW(App().programInstance, MAKEINTRESOURCEW(id),
                                                     IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
    if (bitmap == nullptr) return nullptr;
    HIMAGELIST list =
        ImageList_Create(width, height, ILC_COLOR24 | (masked ? ILC_MASK : 0), count, 1);
    if (list != nullptr) {
        if (masked) {
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
        smallPieces[set] = LoadStrip(kSmallBitmaps[set], kSmallSquare, kSmallSquare, 12, true);
        largePieces[set] = LoadStrip(kLargeBitmaps[set], kLargeSquare, kLargeSquare, 12, true);
    }
    evaluationSymbols = LoadStrip(106, 15, 14, 8, true);
    indicators = LoadStrip(116, 14, 14, 14, false);

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

    nagMenu = LoadMenuW(App().resourceInstance, MAKEINTRESOURCEW(106));
    nagPopup = nagMenu != nullptr ? GetSubMenu(nagMenu, 0) : nullptr;
    engineMenu = LoadMenuW(App().resourceInstance, MAKEINTRESOURCEW(124));
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
