// The options sheet: three page procedures that move data between their controls and the
// settings through OptionsForm, and the sheet that holds them.
#include "gamewindow/OptionsSheet.h"

#include <commctrl.h>
#include <prsht.h>

#include "core/PositionValue.h"
#include "gamewindow/BoardRenderer.h"
#include "models/OptionsForm.h"
#include "models/Settings.h"
#include "platform/SettingsStore.h"
#include "resources/resource.h"
#include "ui/Application.h"
#include "ui/DebugTrace.h"
#include "ui/DeviceFrame.h"
#include "ui/DrawingResources.h"

namespace velmora {
namespace {

// The handheld's sheet is closed by the "OK" of its menu bar (SHIDIF_DONEBUTTON). On the
// desktop the sheet shows its own OK and Cancel buttons, which a done bar would cover, so it
// is sized to the screen without one.
constexpr DWORD kSheetInitFlags =
    0x0002 /* SHIDIF_SIZEDLG */ | pocketpc::kSipDown | pocketpc::kEmptyMenu;

Settings* SettingsOf(HWND page) {
    return reinterpret_cast<Settings*>(GetWindowLongPtrW(page, DWLP_USER));
}

// Keeps the Settings a page edits, from the page parameter.
Settings* TakeSettings(HWND page, LPARAM lParam) {
    auto* sheetPage = reinterpret_cast<const PROPSHEETPAGEW*>(lParam);
    auto* settings = reinterpret_cast<Settings*>(sheetPage->lParam);
    SetWindowLongPtrW(page, DWLP_USER, reinterpret_cast<LONG_PTR>(settings));
    return settings;
}

bool Checked(HWND page, int id) {
    return IsDlgButtonChecked(page, id) == BST_CHECKED;
}

// ---- Display

void InitDisplayPage(HWND page, const Settings& settings) {
    HWND layouts = GetDlgItem(page, IDC_LAYOUT);
    for (const LayoutChoice& choice : kLayoutChoices) {
        auto item =
            SendMessageW(layouts, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(choice.text)));
        SendMessageW(layouts, CB_SETITEMDATA, static_cast<WPARAM>(item), choice.code);
    }
    std::optional<int> entry = LayoutEntryOf(settings.layout);
    SendMessageW(layouts, CB_SETCURSEL,
                 entry ? static_cast<WPARAM>(*entry) : static_cast<WPARAM>(-1), 0);
    CheckDlgButton(page, IDC_INDICATE_COMMENT, settings.indicateComment ? BST_CHECKED : 0);
    CheckDlgButton(page, IDC_DISPLAY_ARROW, settings.displayArrow ? BST_CHECKED : 0);
    HWND pieces = GetDlgItem(page, IDC_PIECE_SET);
    for (const char16_t* name : kPieceSetNames)
        SendMessageW(pieces, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(name)));
    SendMessageW(pieces, CB_SETCURSEL, settings.bitmapIndex, 0);
}

void StoreDisplay(HWND page, Settings& settings) {
    DisplayPageState state;
    HWND layouts = GetDlgItem(page, IDC_LAYOUT);
    auto layout = SendMessageW(layouts, CB_GETCURSEL, 0, 0);
    if (layout != CB_ERR) {
        state.layoutCode =
            static_cast<std::uint32_t>(SendMessageW(layouts, CB_GETITEMDATA, layout, 0));
    }
    state.indicateComment = Checked(page, IDC_INDICATE_COMMENT);
    state.displayArrow = Checked(page, IDC_DISPLAY_ARROW);
    auto pieces = SendDlgItemMessageW(page, IDC_PIECE_SET, CB_GETCURSEL, 0, 0);
    if (pieces != CB_ERR) state.pieceSet = static_cast<int>(pieces);
    StoreDisplayPage(state, settings);
}

INT_PTR CALLBACK DisplayPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            InitDisplayPage(page, *TakeSettings(page, lParam));
            return TRUE;
        case WM_DESTROY:
            if (Settings* settings = SettingsOf(page)) StoreDisplay(page, *settings);
            return FALSE;
        default:
            return FALSE;
    }
}

// ---- Startup

void EnableStartupDependents(HWND page) {
    const bool enabled = StartupDependentsEnabled(Checked(page, IDC_STARTUP_OPEN_LAST));
    for (int id : {IDC_STARTUP_NEW_GAME_ALT, IDC_STARTUP_NEW_GAME, IDC_STARTUP_EXTRA}) {
        if (HWND control = GetDlgItem(page, id)) EnableWindow(control, enabled);
    }
}

void InitStartupPage(HWND page, const Settings& settings) {
    const StartupChecks checks = StartupChecksFor(settings);
    if (checks.displayList) CheckDlgButton(page, IDC_STARTUP_DISPLAY_LIST, BST_CHECKED);
    if (checks.openLast) CheckDlgButton(page, IDC_STARTUP_OPEN_LAST, BST_CHECKED);
    if (checks.newGameAlt) CheckDlgButton(page, IDC_STARTUP_NEW_GAME_ALT, BST_CHECKED);
    if (checks.createNewGame) CheckDlgButton(page, IDC_STARTUP_NEW_GAME, BST_CHECKED);
    CheckDlgButton(page, IDC_STARTUP_CHECK_ASSOC, checks.checkAssoc ? BST_CHECKED : 0);
    EnableStartupDependents(page);
}

INT_PTR CALLBACK StartupPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            InitStartupPage(page, *TakeSettings(page, lParam));
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wParam) == IDC_STARTUP_DISPLAY_LIST ||
                LOWORD(wParam) == IDC_STARTUP_OPEN_LAST) {
                EnableStartupDependents(page);
            }
            return FALSE;
        case WM_DESTROY:
            if (Settings* settings = SettingsOf(page)) {
                // A control the template lacks reads as not checked.
                StoreStartupPage([page](int id) { return Checked(page, id); }, *settings);
            }
            return FALSE;
        default:
            return FALSE;
    }
}

// ---- Colors

struct ColourBoxes {
    int red, green, blue;
    int redSpin, greenSpin, blueSpin;
};
constexpr ColourBoxes kColourBoxes[3] = {
    {IDC_WHITE_RED, IDC_WHITE_GREEN, IDC_WHITE_BLUE, IDC_WHITE_RED_SPIN, IDC_WHITE_GREEN_SPIN,
     IDC_WHITE_BLUE_SPIN},
    {IDC_BLACK_RED, IDC_BLACK_GREEN, IDC_BLACK_BLUE, IDC_BLACK_RED_SPIN, IDC_BLACK_GREEN_SPIN,
     IDC_BLACK_BLUE_SPIN},
    {IDC_SELECT_RED, IDC_SELECT_GREEN, IDC_SELECT_BLUE, IDC_SELECT_RED_SPIN, IDC_SELECT_GREEN_SPIN,
     IDC_SELECT_BLUE_SPIN}};

// What the Colors page keeps while it is open.
struct ColorsPage {
    Settings* settings = nullptr;
    PageColours opened;  // what "Restore" puts back
    HDC memory = nullptr;
    bool filling = false;  // the boxes are being written by the page itself
};

ColorsPage* ColorsPageOf(HWND page) {
    return reinterpret_cast<ColorsPage*>(GetWindowLongPtrW(page, DWLP_USER));
}

void WriteColours(HWND page, ColorsPage& state, const PageColours& colours) {
    state.filling = true;
    const std::uint32_t values[3] = {colours.white, colours.black, colours.select};
    for (int row = 0; row < 3; ++row) {
        const auto boxes = BoxesOfColour(values[row]);
        SetDlgItemInt(page, kColourBoxes[row].red, boxes[0], FALSE);
        SetDlgItemInt(page, kColourBoxes[row].green, boxes[1], FALSE);
        SetDlgItemInt(page, kColourBoxes[row].blue, boxes[2], FALSE);
    }
    state.filling = false;
}

// Reads the nine boxes; an empty or non-numeric box reads as 0, and each number keeps its
// low 8 bits.
PageColours ReadColours(HWND page) {
    std::uint32_t values[3] = {};
    for (int row = 0; row < 3; ++row) {
        const ColourBoxes& boxes = kColourBoxes[row];
        values[row] = ColourFromBoxes(GetDlgItemInt(page, boxes.red, nullptr, FALSE),
                                      GetDlgItemInt(page, boxes.green, nullptr, FALSE),
                                      GetDlgItemInt(page, boxes.blue, nullptr, FALSE));
    }
    return {values[0], values[1], values[2]};
}

// Draws one preview square, the piece scaled down to the square.
void DrawPreviewSquare(HDC dc, int x, int y, PieceCode code, COLORREF colour) {
    BoardRenderer::DrawPieceAt(0, x, y, kPreviewSquare, nullptr, dc, colour);
    const int type = TypeOf(code);
    const DrawingResources* drawing = App().drawing;
    if (type < kPawn || type > kKing || drawing == nullptr) return;
    const Settings* settings = App().settings;
    HIMAGELIST pieces =
        drawing->Pieces(settings != nullptr ? static_cast<int>(settings->bitmapIndex) : 0,
                        DrawingResources::kSmallSquare);
    if (pieces == nullptr) return;
    HICON icon = ImageList_GetIcon(pieces, 2 * (type - kPawn) + (ColourOf(code) == kBlack ? 1 : 0),
                                   ILD_TRANSPARENT);
    if (icon == nullptr) return;
    DrawIconEx(dc, x, y, icon, kPreviewSquare, kPreviewSquare, 0, nullptr, DI_NORMAL);
    DestroyIcon(icon);
}

// Draws the three files a..c of ranks 8 to 6 of the initial position in the colours the boxes
// hold: selection, black and white squares as the page arranges them.
void DrawPreview(HWND page, HDC dc) {
    const PageColours colours = ReadColours(page);
    const PositionValue initial;
    enum { kSel, kBlk, kWht };
    static constexpr int kScheme[3][3] = {
        {kSel, kBlk, kWht},  // a8 b8 c8
        {kBlk, kWht, kSel},  // a7 b7 c7
        {kWht, kBlk, kWht},  // a6 b6 c6
    };
    for (int row = 0; row < 3; ++row) {
        const int rank = 7 - row;
        for (int file = 0; file < 3; ++file) {
            const int which = kScheme[row][file];
            const std::uint32_t colour = which == kSel   ? colours.select
                                         : which == kBlk ? colours.black
                                                         : colours.white;
            DrawPreviewSquare(dc, kPreviewLeft + file * kPreviewSquare,
                              kPreviewTop + row * kPreviewSquare, initial.At(rank * 8 + file),
                              colour);
        }
    }
}

void RedrawPreview(HWND page) {
    HDC dc = GetDC(page);
    DrawPreview(page, dc);
    ReleaseDC(page, dc);
}

void InitColorsPage(HWND page, Settings& settings) {
    auto* state = new ColorsPage;
    state->settings = &settings;
    state->opened = PageColours::From(settings);
    SetWindowLongPtrW(page, DWLP_USER, reinterpret_cast<LONG_PTR>(state));
    for (const ColourBoxes& boxes : kColourBoxes) {
        for (int spin : {boxes.redSpin, boxes.greenSpin, boxes.blueSpin})
            SendDlgItemMessageW(page, spin, UDM_SETRANGE32, 0, 255);
    }
    WriteColours(page, *state, state->opened);
    HDC screen = GetDC(page);
    state->memory = CreateCompatibleDC(screen);
    ReleaseDC(page, screen);
}

bool IsColourBox(int id) {
    for (const ColourBoxes& boxes : kColourBoxes) {
        if (id == boxes.red || id == boxes.green || id == boxes.blue) return true;
    }
    return false;
}

INT_PTR CALLBACK ColorsPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    ColorsPage* state = message == WM_INITDIALOG ? nullptr : ColorsPageOf(page);
    switch (message) {
        case WM_INITDIALOG: {
            auto* sheetPage = reinterpret_cast<const PROPSHEETPAGEW*>(lParam);
            InitColorsPage(page, *reinterpret_cast<Settings*>(sheetPage->lParam));
            return TRUE;
        }
        case WM_COMMAND:
            if (state == nullptr) return FALSE;
            if (LOWORD(wParam) == IDC_COLORS_RESTORE && HIWORD(wParam) == BN_CLICKED) {
                WriteColours(page, *state, state->opened);
                RedrawPreview(page);
                return TRUE;
            }
            if (IsColourBox(LOWORD(wParam)) && HIWORD(wParam) == EN_CHANGE && !state->filling) {
                RedrawPreview(page);
                return TRUE;
            }
            return FALSE;
        case WM_PAINT: {
            PAINTSTRUCT paint;
            HDC dc = BeginPaint(page, &paint);
            DrawPreview(page, dc);
            EndPaint(page, &paint);
            return TRUE;
        }
        case WM_DESTROY:
            if (state != nullptr) {
                ReadColours(page).StoreInto(*state->settings);
                if (state->memory != nullptr) DeleteDC(state->memory);
                delete state;
                SetWindowLongPtrW(page, DWLP_USER, 0);
            }
            return FALSE;
        default:
            return FALSE;
    }
}

// ---- The sheet

// Puts OK and Cancel in the bottom right corner of the screen-sized sheet, where the sheet's
// own layout (made for a wider window) would leave them partly outside it.
void PlaceSheetButtons(HWND sheet) {
    RECT client{};
    GetClientRect(sheet, &client);
    int right = client.right - 4;
    for (int id : {IDCANCEL, IDOK}) {
        HWND button = GetDlgItem(sheet, id);
        if (button == nullptr) continue;
        RECT rect{};
        GetWindowRect(button, &rect);
        const int width = rect.right - rect.left;
        const int height = rect.bottom - rect.top;
        MoveWindow(button, right - width, client.bottom - 4 - height, width, height, TRUE);
        right -= width + 4;
    }
}

constexpr UINT_PTR kPlaceSheetTimer = 1;

// Covers the screen with the sheet once it is shown: the sheet's own start-up may still move
// it after its callback, so the placement is made again from the message loop.
void CALLBACK PlaceSheetLater(HWND sheet, UINT, UINT_PTR id, DWORD) {
    KillTimer(sheet, id);
    pocketpc::InitDialog(sheet, kSheetInitFlags);
    PlaceSheetButtons(sheet);
}

// Takes the caption bar away from the sheet's template, as the handheld's full-screen sheets
// have none; a window without one is also placed exactly where the screen is.
void DropCaption(void* dialogTemplate) {
    auto* words = static_cast<WORD*>(dialogTemplate);
    // An extended template starts with version 1 and 0xFFFF; its style follows two DWORDs.
    DWORD* style =
        words[1] == 0xFFFF ? reinterpret_cast<DWORD*>(words + 6) : reinterpret_cast<DWORD*>(words);
    *style = (*style & ~(WS_CAPTION | DS_MODALFRAME | WS_SYSMENU)) | WS_POPUP;
}

int CALLBACK SheetCallback(HWND sheet, UINT message, LPARAM lParam) {
    if (message == PSCB_PRECREATE && lParam != 0) DropCaption(reinterpret_cast<void*>(lParam));
    if (message == PSCB_INITIALIZED) {
        if (pocketpc::InitDialog(sheet, kSheetInitFlags)) DebugTrace(L"SHInitDialog => OK\n");
        PlaceSheetButtons(sheet);
        SetTimer(sheet, kPlaceSheetTimer, 0, PlaceSheetLater);
    }
    return 0;
}

PROPSHEETPAGEW Page(int templateId, DLGPROC procedure, Settings& settings) {
    PROPSHEETPAGEW page{};
    page.dwSize = sizeof(page);
    page.hInstance = App().programInstance;
    page.pszTemplate = MAKEINTRESOURCEW(templateId);
    page.pfnDlgProc = procedure;
    page.lParam = reinterpret_cast<LPARAM>(&settings);
    return page;
}

}  // namespace

bool RunOptionsSheet(HWND owner, Settings& settings) {
    PROPSHEETPAGEW pages[3] = {Page(IDD_OPTIONS_DISPLAY, DisplayPageProc, settings),
                               Page(IDD_OPTIONS_STARTUP, StartupPageProc, settings),
                               Page(IDD_OPTIONS_COLORS, ColorsPageProc, settings)};
    PROPSHEETHEADERW header{};
    header.dwSize = sizeof(header);
    // The handheld's sheet has no Apply button: OK and Cancel are the only ways out.
    header.dwFlags = PSH_PROPSHEETPAGE | PSH_USECALLBACK | PSH_NOAPPLYNOW;
    header.hwndParent = owner;
    header.hInstance = App().programInstance;
    header.pszCaption = L"Velmora options";
    header.nPages = 3;
    header.nStartPage = 0;
    header.ppsp = pages;
    header.pfnCallback = SheetCallback;
    const INT_PTR result = PropertySheetW(&header);
    if (result != 1) return false;
    if (App().drawing != nullptr) App().drawing->RebuildColours(settings);
    settings.Save(platform::SystemSettingsStore());
    return true;
}

}  // namespace velmora
