// The board editor: a small board drawn by the board renderer, twelve piece buttons, and the
// controls of the position's state.
#include "gamewindow/SetupBoardDialog.h"

#include <commctrl.h>

#include "core/PositionSetup.h"
#include "game/Game.h"
#include "models/Settings.h"
#include "resources/resource.h"
#include "ui/Application.h"
#include "ui/DrawingResources.h"

namespace velmora {
namespace {

constexpr int kSquare = DrawingResources::kSmallSquare;
constexpr int kCastlingBoxes[4] = {IDC_CASTLE_WHITE_KING, IDC_CASTLE_WHITE_QUEEN,
                                   IDC_CASTLE_BLACK_KING, IDC_CASTLE_BLACK_QUEEN};
// The controls that only the pieces stay editable without.
constexpr int kStateControls[] = {
    IDC_CASTLE_WHITE_KING, IDC_CASTLE_WHITE_QUEEN, IDC_CASTLE_BLACK_KING, IDC_CASTLE_BLACK_QUEEN,
    IDC_WHITE_TO_PLAY,     IDC_BLACK_TO_PLAY,      IDC_MOVE_NUMBER,       IDC_MOVE_NUMBER_SPIN};

// The piece of a piece button, or 0 for another control.
PieceCode PieceOfButton(int id) {
    switch (id) {
        case IDC_SETUP_WHITE_PAWN:
            return 1;
        case IDC_SETUP_BLACK_PAWN:
            return kBlack + 1;
        case IDC_SETUP_WHITE_ROOK:
            return 2;
        case IDC_SETUP_BLACK_ROOK:
            return kBlack + 2;
        case IDC_SETUP_WHITE_KNIGHT:
            return 3;
        case IDC_SETUP_BLACK_KNIGHT:
            return kBlack + 3;
        case IDC_SETUP_WHITE_BISHOP:
            return 4;
        case IDC_SETUP_BLACK_BISHOP:
            return kBlack + 4;
        case IDC_SETUP_WHITE_QUEEN:
            return 5;
        case IDC_SETUP_BLACK_QUEEN:
            return kBlack + 5;
        case IDC_SETUP_WHITE_KING:
            return 6;
        case IDC_SETUP_BLACK_KING:
            return kBlack + 6;
        default:
            return 0;
    }
}

HIMAGELIST SmallPieces() {
    const Settings* settings = App().settings;
    return App().drawing != nullptr
               ? App().drawing->Pieces(settings ? static_cast<int>(settings->bitmapIndex) : 0,
                                       kSquare)
               : nullptr;
}

}  // namespace

SetupBoardDialog::SetupBoardDialog(Game& game, const Position* source, bool fixedState)
    : DialogBase(IDD_SETUP, IDD_SETUP_LANDSCAPE, 0, 0),
      game_(game),
      edited_(game.StartPosition()),
      source_(source),
      fixedState_(fixedState) {}

BOOL SetupBoardDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    renderer_.Attach(window_, BoardPlacement{kSquare, 3, 3, false}, SmallPieces());
    ShowChoices(SetupChoices{});
    SendDlgItemMessageW(window_, IDC_MOVE_NUMBER_SPIN, UDM_SETRANGE32, 1, 255);
    EnableWindow(GetDlgItem(window_, IDC_SETUP_COPY), source_ != nullptr);
    if (fixedState_) {
        for (int id : kStateControls)
            EnableWindow(GetDlgItem(window_, id), FALSE);
    }
    return TRUE;
}

void SetupBoardDialog::ShowCastling(const bool castling[4]) {
    for (int i = 0; i < 4; ++i)
        CheckDlgButton(window_, kCastlingBoxes[i], castling[i] ? BST_CHECKED : BST_UNCHECKED);
}

void SetupBoardDialog::ShowChoices(const SetupChoices& choices) {
    ShowCastling(choices.castling);
    CheckDlgButton(window_, IDC_WHITE_TO_PLAY, choices.whiteToPlay ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(window_, IDC_BLACK_TO_PLAY, choices.whiteToPlay ? BST_UNCHECKED : BST_CHECKED);
    SetDlgItemInt(window_, IDC_MOVE_NUMBER, choices.moveNumber, FALSE);
}

// Places the selected piece on the tapped square, or takes it away when it stands there.
void SetupBoardDialog::Tap(int x, int y) {
    int file = 0;
    int rank = 0;
    if (!renderer_.SquareFromPoint(x, y, &file, &rank)) return;
    TapSetupSquare(edited_.Value(), file + 8 * rank, selected_);
    const DrawingResources* drawing = App().drawing;
    if (drawing == nullptr) return;
    HDC dc = GetDC(window_);
    const bool dark = (file + rank) % 2 == 0;
    renderer_.DrawSquare(edited_, file, rank, dc,
                         dark ? drawing->darkColour : drawing->lightColour);
    ReleaseDC(window_, dc);
}

void SetupBoardDialog::DrawPieceButton(const DRAWITEMSTRUCT& item) {
    RECT frame = item.rcItem;
    const bool pressed = (item.itemState & ODS_SELECTED) != 0;
    DrawFrameControl(item.hDC, &frame, DFC_BUTTON, DFCS_BUTTONPUSH | (pressed ? DFCS_PUSHED : 0));
    const PieceCode piece = PieceOfButton(static_cast<int>(item.CtlID));
    // The piece a tap places stands on yellow, the others on light grey.
    const COLORREF background = piece == selected_ ? 0x0000FFFF : 0x00C0C0C0;
    BoardRenderer::DrawPieceAt(piece, item.rcItem.left + 2, item.rcItem.top + 2, kSquare,
                               SmallPieces(), item.hDC, background);
}

// Runs the set-up rules on the editor's board and controls; shows what they found.
bool SetupBoardDialog::Accept() {
    SetupChoices choices;
    for (int i = 0; i < 4; ++i)
        choices.castling[i] = IsDlgButtonChecked(window_, kCastlingBoxes[i]) == BST_CHECKED;
    choices.whiteToPlay = IsDlgButtonChecked(window_, IDC_WHITE_TO_PLAY) == BST_CHECKED;
    choices.moveNumber = GetDlgItemInt(window_, IDC_MOVE_NUMBER, nullptr, FALSE);
    const SetupVerdict verdict = ValidateSetup(edited_.Value(), choices);
    // A board without its kings fails before the castling rights are looked at: the boxes
    // come back as they were and there is no warning.
    ShowCastling(verdict.castling);
    if (!verdict.castlingWarning.empty()) {
        MessageBoxW(window_, reinterpret_cast<const wchar_t*>(verdict.castlingWarning.c_str()),
                    L"Setup board", MB_OK | MB_ICONWARNING);
    }
    if (!verdict.accepted) {
        MessageBoxW(window_, reinterpret_cast<const wchar_t*>(verdict.error.c_str()),
                    L"Invalid position", MB_OK | MB_ICONSTOP);
        return false;
    }
    edited_.setUp = true;
    game_.modified = 1;
    return true;
}

INT_PTR SetupBoardDialog::DialogProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT: {
            PAINTSTRUCT paint;
            HDC dc = BeginPaint(window_, &paint);
            renderer_.DrawBoard(dc, edited_, false);
            EndPaint(window_, &paint);
            return TRUE;
        }
        case WM_LBUTTONDOWN:
            Tap(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
            return TRUE;
        case WM_DRAWITEM:
            if (PieceOfButton(static_cast<int>(wParam)) == 0) break;
            DrawPieceButton(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return TRUE;
        default:
            break;
    }
    return DialogBase::DialogProc(message, wParam, lParam);
}

BOOL SetupBoardDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    const int id = LOWORD(wParam);
    if (const PieceCode piece = PieceOfButton(id)) {
        selected_ = piece;
        // Every button shows whether its piece is now the one placed.
        for (int button = IDC_SETUP_WHITE_PAWN; button <= IDC_SETUP_BLACK_KING; ++button) {
            if (PieceOfButton(button) != 0)
                InvalidateRect(GetDlgItem(window_, button), nullptr, FALSE);
        }
        return TRUE;
    }
    switch (id) {
        case IDC_SETUP_CLEAR:
            edited_.Clear();
            InvalidateRect(window_, nullptr, FALSE);
            return TRUE;
        case IDC_SETUP_COPY:
            if (source_ == nullptr) return TRUE;
            edited_.CopyFrom(*source_);
            ShowChoices(ChoicesShowing(edited_.Value()));
            InvalidateRect(window_, nullptr, TRUE);
            return TRUE;
        case IDOK:
            if (Accept()) EndDialog(window_, 1);
            return TRUE;
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
}

}  // namespace velmora
