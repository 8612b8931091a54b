// The game window: creation, layout, painting, navigation, the comment pane and the exit
// commands that the main window acts on.
#include "gamewindow/BoardView.h"

#include <cstdlib>
#include <span>

#include "core/MoveRules.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/PgnSave.h"
#include "gamewindow/ChooseMoveDialog.h"
#include "gamewindow/CommentDialog.h"
#include "gamewindow/CommentPane.h"
#include "gamewindow/GameHeadersDialog.h"
#include "gamewindow/MaterialDialog.h"
#include "gamewindow/NewLineDialog.h"
#include "gamewindow/OptionsSheet.h"
#include "gamewindow/PromotionDialog.h"
#include "gamewindow/SaveTargetDialog.h"
#include "gamewindow/SetupBoardDialog.h"
#include "models/OptionsForm.h"
#include "models/Settings.h"
#include "resources/resource.h"
#include "ui/AboutDialog.h"
#include "ui/Application.h"
#include "ui/DebugTrace.h"
#include "ui/DeviceFrame.h"
#include "ui/DrawingResources.h"
#include "ui/MenuBar.h"
#include "ui/MessageBoxes.h"

namespace velmora {
namespace {

constexpr DWORD kGameWindowFlags = pocketpc::kSizeFullScreen | pocketpc::kSipDown;  // 12
constexpr int kToolbarImages = 10;
// Navigation commands of the toolbar and the "Moves" menu.

// The toolbar, in button order; the engine button only when an engine folder was found.
constexpr pocketpc::ToolButton kToolbar[] = {{0, ID_SAVE_IF_MODIFIED}, {1, ID_EDIT_HEADERS},
                                             {9, ID_ENGINE_MENU},      {6, ID_NAG_POPUP},
                                             {7, ID_EDIT_COMMENT},     {8, ID_FLIP_BOARD},
                                             {2, ID_PREVIOUS_MOVE},    {3, ID_LEAVE_VARIATION},
                                             {4, ID_NEXT_MOVE},        {5, ID_LAST_MOVE_TOOLBAR}};

}  // namespace

BoardView::BoardView(Game& game)
    : DialogBase(IDD_GAME_WINDOW, 0, 0), game_(game), entry_(game, *this, this) {
    game_.AddObserver(this, true);
    notation_.Attach(&game_);
}

BoardView::~BoardView() {
    EndEngine();
    game_.RemoveObserver(this);
}

bool BoardView::Run(HWND parent, int initialMove) {
    initialMove_ = initialMove;
    exitCommand_ = 0;
    // Pawns reaching the last rank ask this window which piece they become.
    const PromotionChooser previousChooser = GetPromotionChooser();
    SetPromotionChooser(&ChoosePromotionPiece);
    INT_PTR result = DoModal(parent);
    SetPromotionChooser(previousChooser);
    if (exitCommand_ != 0) PostMessageW(parent, WM_COMMAND, static_cast<WPARAM>(exitCommand_), 0);
    return result != -1;
}

BOOL BoardView::OnInitDialog() {
    pocketpc::InitDialog(window_, kGameWindowFlags);
    menuBar_ = pocketpc::CreateMenuBar(window_, App().resourceInstance, IDM_GAME_WINDOW);
    if (menuBar_ == nullptr) {
        MessageBoxW(window_, L"SHCreateMenuBar failed", L"Debug", MB_OK);
    } else {
        menuBarHeight_ = pocketpc::MenuBarHeight(menuBar_);
        // The engine button only when there is an engine to start.
        const bool engineFound = App().engineHost != nullptr && App().engineHost->EngineCount() > 0;
        pocketpc::ToolButton shown[kToolbarImages];
        int count = 0;
        for (const pocketpc::ToolButton& button : kToolbar) {
            if (button.command == ID_ENGINE_MENU && !engineFound) continue;
            shown[count++] = button;
        }
        if (!pocketpc::AddToolButtons(menuBar_,
                                      {App().programInstance, IDB_GAME_TOOLBAR, kToolbarImages},
                                      std::span(shown, count))) {
            SystemErrorBoxFromString(GetLastError(), IDS_CANNOT_CREATE_TOOLBAR, window_);
        }
        MakeEvaluationItemsOwnerDrawn();
    }
    ComputeLayout();
    RECT notationRect{layout_.notation.left, layout_.notation.top, layout_.notation.right,
                      layout_.notation.bottom};
    notation_.Show(!layout_.notation.IsEmpty());
    notation_.Create(window_, kNotationId, notationRect);
    comment_ = CreateWindowExW(WS_EX_CLIENTEDGE, kCommentClass, L"", WS_CHILD | WS_VISIBLE,
                               layout_.comment.left, layout_.comment.top, layout_.comment.Width(),
                               layout_.comment.Height(), window_,
                               reinterpret_cast<HMENU>(kCommentId), App().programInstance, nullptr);
    const Settings* settings = App().settings;
    int pieceSet = settings != nullptr ? static_cast<int>(settings->bitmapIndex) : 0;
    board_.Attach(
        window_, layout_.Placement(false),
        App().drawing != nullptr ? App().drawing->Pieces(pieceSet, layout_.squareSize) : nullptr);
    clockWindow_.Create(window_, RECT{layout_.clock.left, layout_.clock.top, layout_.clock.right,
                                      layout_.clock.bottom});
    clockWindow_.Show(false);
    created_ = true;
    notation_.Rebuild(nullptr);
    ApplyInitialMove();
    if (App().drawing != nullptr && App().drawing->engineMenu != nullptr) {
        engineMenu_ = GetSubMenu(GetSubMenu(App().drawing->engineMenu, 0), 0);
    }
    pocketpc::MakeFullScreen(window_, pocketpc::kHideTaskBar);
    Refresh();
    notation_.SelectNode(game_.Current()->ArrivalNode());
    return TRUE;
}

void BoardView::MakeEvaluationItemsOwnerDrawn() {
    HMENU menu = pocketpc::MenuBarMenu(menuBar_);
    bool failed = menu == nullptr;
    for (int id = ID_EVAL_EQUAL; id <= ID_EVAL_BLACK_BETTER && !failed; ++id) {
        MENUITEMINFOW info{};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_FTYPE;
        info.fType = MFT_OWNERDRAW;
        failed = !SetMenuItemInfoW(menu, static_cast<UINT>(id), FALSE, &info);
    }
    if (failed) MessageFromStrings(IDS_CANNOT_CREATE_CUSTOM_MENU, IDS_CAPTION, MB_OK, window_);
}

// Walks the main line to the initial move; the first position when it is not there.
void BoardView::ApplyInitialMove() {
    if (initialMove_ == 0) return;
    int number = std::abs(initialMove_);
    Colour side = initialMove_ > 0 ? kWhite : kBlack;
    for (MoveNode* node = game_.StartPosition().FirstContinuation(); node != nullptr;
         node = node->positionAfter->FirstContinuation()) {
        if (node->moveNumber == number && node->positionBefore->SideToMove() == side) {
            game_.SetCurrent(node->positionAfter);
            return;
        }
    }
    game_.GoToStart();
}

void BoardView::ComputeLayout() {
    RECT client{};
    GetClientRect(window_, &client);
    HDC dc = GetDC(window_);
    HGDIOBJ font =
        SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(window_, WM_GETFONT, 0, 0)));
    SIZE text{};
    GetTextExtentPoint32W(dc, L"Ij", 2, &text);
    SelectObject(dc, font);
    ReleaseDC(window_, dc);
    BoardLayoutInput input;
    input.clientWidth = client.right;
    input.clientHeight = client.bottom;
    input.layoutCode = App().settings != nullptr ? App().settings->layout : 0;
    menuBarHeight_ = pocketpc::MenuBarHeight(menuBar_);
    input.menuBarHeight = menuBarHeight_;
    input.textHeight = text.cy > 0 ? text.cy : 13;
    input.largeClocks = largeClocks_;
    input.clockShown = clockShown_;
    layout_ = ComputeBoardLayout(input);
}

void BoardView::PlaceChildren() {
    const Rect& list = layout_.notation;
    RECT notationRect{list.left, list.top, list.right, list.bottom};
    notation_.Move(notationRect);
    notation_.Show(!list.IsEmpty());
    MoveWindow(comment_, layout_.comment.left, layout_.comment.top, layout_.comment.Width(),
               layout_.comment.Height(), TRUE);
    int pieceSet = App().settings != nullptr ? static_cast<int>(App().settings->bitmapIndex) : 0;
    board_.SetLayout(
        layout_.squareSize, layout_.boardLeft,
        App().drawing != nullptr ? App().drawing->Pieces(pieceSet, layout_.squareSize) : nullptr);
    board_.SetTop(layout_.boardTop);
    clockWindow_.Move(
        RECT{layout_.clock.left, layout_.clock.top, layout_.clock.right, layout_.clock.bottom});
    engineInfo_.SetRectangle(RECT{layout_.comment.left, layout_.comment.top, layout_.comment.right,
                                  layout_.comment.bottom});
    InvalidateRect(window_, nullptr, TRUE);
}

// The sheet leaves its edits in the settings even when cancelled, so the window follows them
// either way.
void BoardView::RunOptions() {
    Settings* settings = App().settings;
    if (settings == nullptr) return;
    const std::uint32_t layoutBefore = settings->layout;
    const std::uint32_t piecesBefore = settings->bitmapIndex;
    RunOptionsSheet(window_, *settings);
    switch (EffectOfOptions(layoutBefore, piecesBefore, *settings)) {
        case OptionsEffect::kRelayout:
            ComputeLayout();
            PlaceChildren();
            break;
        case OptionsEffect::kNewPieceImages:
            board_.SetLayout(layout_.squareSize, layout_.boardLeft,
                             App().drawing != nullptr
                                 ? App().drawing->Pieces(static_cast<int>(settings->bitmapIndex),
                                                         layout_.squareSize)
                                 : nullptr);
            break;
        case OptionsEffect::kNone:
            break;
    }
    // The comment marks of the move list may have been turned on or off.
    notation_.Rebuild(nullptr);
    notation_.SelectNode(game_.Current()->ArrivalNode());
    InvalidateRect(window_, nullptr, TRUE);
}

void BoardView::DrawIndicator(HDC dc) {
    if (App().drawing == nullptr || App().drawing->indicators == nullptr) return;
    bool whiteToMove = game_.Current()->SideToMove() == kWhite;
    int image =
        whiteToMove ? (userPlaysWhite_ ? 0 : blinkPhase_) : (userPlaysBlack_ ? 6 : 6 + blinkPhase_);
    ImageList_Draw(App().drawing->indicators, image, dc, layout_.indicator.x, layout_.indicator.y,
                   ILD_NORMAL);
}

void BoardView::Paint() {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window_, &paint);
    Position* current = game_.Current();
    board_.DrawBoard(dc, *current, true);
    MoveNode* arrival = current->ArrivalNode();
    if (arrival != nullptr && (App().settings == nullptr || App().settings->displayArrow != 0)) {
        board_.DrawArrow(dc, arrival->from, arrival->to);
    }
    DrawIndicator(dc);
    engineInfo_.Draw(dc);
    EndPaint(window_, &paint);
}

INT_PTR BoardView::DialogProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (OnEngineMessage(message, wParam)) return TRUE;
    switch (message) {
        case WM_TIMER:
            if (wParam == 1) ClockTick();
            return TRUE;
        case WM_DESTROY:
            EndEngine();
            CloseBoardLink();
            break;
        case kBoardLineMessage:
            OnBoardLine(reinterpret_cast<const char*>(lParam));
            return TRUE;
        case WM_SIZE: {
            DialogBase::DialogProc(message, wParam, lParam);
            if (created_) {
                ComputeLayout();
                PlaceChildren();
            }
            return TRUE;
        }
        case WM_PAINT:
            Paint();
            return TRUE;
        case WM_LBUTTONDOWN:
            DialogBase::DialogProc(message, wParam, lParam);
            Tap(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
            return TRUE;
        case WM_MEASUREITEM: {
            auto* item = reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
            if (wParam != 0) break;
            item->itemWidth = 15;
            item->itemHeight = 14;
            return TRUE;
        }
        case WM_DRAWITEM: {
            auto* item = reinterpret_cast<DRAWITEMSTRUCT*>(lParam);
            if (wParam != 0) break;
            COLORREF background = GetSysColor(COLOR_MENU);
            COLORREF previous = SetBkColor(item->hDC, background);
            ExtTextOutW(item->hDC, item->rcItem.left, item->rcItem.top, ETO_OPAQUE, &item->rcItem,
                        L" ", 1, nullptr);
            SetBkColor(item->hDC, previous);
            if (App().drawing != nullptr) {
                ImageList_Draw(App().drawing->evaluationSymbols,
                               static_cast<int>(item->itemID) - ID_EVAL_EQUAL, item->hDC,
                               item->rcItem.left + 13, item->rcItem.top, ILD_TRANSPARENT);
            }
            return TRUE;
        }
        case WM_CHAR:
            DebugTrace(L"%08X %08X\n", static_cast<unsigned>(wParam),
                       static_cast<unsigned>(lParam));
            return TRUE;
        default:
            break;
    }
    return DialogBase::DialogProc(message, wParam, lParam);
}

void BoardView::EndWith(int exitCommand) {
    if (!QueryClose()) return;
    exitCommand_ = exitCommand;
    EndDialog(window_, 1);
}

BOOL BoardView::OnCommand(WPARAM wParam, LPARAM lParam) {
    int id = LOWORD(wParam);
    switch (id) {
        case ID_GAME_NEW_GAME:
            EndWith(ID_NEW_GAME);
            return TRUE;
        case ID_OPEN_NEXT:
            EndWith(ID_OPEN_NEXT);
            return TRUE;
        case ID_REOPEN_FILE:
            EndWith(ID_REOPEN_FILE);
            return TRUE;
        case ID_CLOSE_GAME:
            EndWith(0);
            return TRUE;
        case ID_SAVE:
        case ID_SAVE_IF_MODIFIED:
            if (game_.modified) Save(game_, OwnerOf(window_));
            return TRUE;
        case ID_SAVE_AS:
            SaveAs(game_, OwnerOf(window_));
            return TRUE;
        case ID_GAME_NEW_POSITION:
            NewPosition();
            return TRUE;
        case ID_EDIT_HEADERS:
            EditHeaders();
            return TRUE;
        case ID_NAG_POPUP:
            ShowNagPopup();
            return TRUE;
        case ID_EDIT_COMMENT:
            EditComment();
            return TRUE;
        case ID_PROMOTE_LINE:
            PromoteLine();
            return TRUE;
        case ID_DELETE_MOVE:
            DeleteMove();
            return TRUE;
        case ID_MATERIAL_BALANCE: {
            MaterialDialog dialog(game_.Current()->Value());
            dialog.DoModal(window_);
            return TRUE;
        }
        case ID_ABOUT:
            ShowAboutDialog(window_);
            return TRUE;
        case ID_OPTIONS:
            RunOptions();
            return TRUE;
        case ID_FLIP_BOARD:
            board_.SetFlipped(!board_.Flipped());
            InvalidateRect(window_, nullptr, FALSE);
            return TRUE;
        case ID_FIRST_MOVE:
            game_.GoToStart();
            return TRUE;
        case ID_PREVIOUS_MOVE:
            game_.GoBack();
            return TRUE;
        case ID_LEAVE_VARIATION:
            game_.LeaveVariation();
            return TRUE;
        case ID_NEXT_MOVE:
            game_.GoForward();
            return TRUE;
        case ID_LAST_MOVE:
        case ID_LAST_MOVE_TOOLBAR:
            game_.GoToEnd();
            return TRUE;
        case kNotationId:
            notation_.OnNotify(HIWORD(wParam));
            return TRUE;
        case ID_ENGINE_START:
            StartEngine();
            return TRUE;
        case ID_ENGINE_MENU:
            ShowEngineMenu();
            return TRUE;
        case ID_LARGE_CLOCKS:
            ToggleLargeClocks();
            return TRUE;
        case ID_CONNECT_UCB:
            ConnectUcb();
            return TRUE;
        case IDCANCEL:
            // Escape: the game window ends only through its exit commands, which ask about
            // saving first, or through closing it.
            return TRUE;
        default:
            if (id >= ID_NAG_NONE && id <= ID_NAG_DUBIOUS) {
                SetGlyph((id + 188) & 255);
                return TRUE;
            }
            if (id >= ID_EVAL_NONE && id <= ID_EVAL_BLACK_BETTER) {
                SetEvaluation((id + 175) & 255);
                return TRUE;
            }
            // The items of the engine's own menu.
            if (engineActive_ && App().engineHost != nullptr &&
                App().engineHost->ForwardCommand(window_, wParam, lParam) != 0) {
                // A time control chosen in the engine's menu shows at once.
                FollowTimeControl();
                return TRUE;
            }
            return DialogBase::OnCommand(wParam, lParam);
    }
}

void BoardView::OnMovePlayed(MoveNode* node, GameView*) {
    OnPositionChanged(node->positionAfter);
    SendMoveToBoard(*node);
    blinkPhase_ = 0;
}

void BoardView::OnPositionChanged(Position* position) {
    if (!created_ || position == nullptr) return;
    // A square selected on one position means nothing on another.
    entry_.ClearSelection();
    board_.ClearSelection();
    const char16_t* comment = position->Comment();
    SetCommentText(comment_, comment != nullptr ? Wide(comment) : nullptr);
    engineInfo_.ClearMove();
    blinkPhase_ = 0;
    UpdateClockMoveText();
    InvalidateRect(window_, nullptr, FALSE);
}

void BoardView::Refresh() {
    OnPositionChanged(game_.Current());
    blinkPhase_ = 0;
}

MoveNode* BoardView::ChooseContinuation(MoveNode* first) {
    ChooseMoveDialog dialog(first);
    if (dialog.DoModal(window_) != 1) return nullptr;
    return dialog.Chosen();
}

int BoardView::QueryClose() {
    if (!PromptSave(game_, OwnerOf(window_))) return 0;
    StopEngineOnClose();
    return 1;
}

int BoardView::EditHeaders() {
    GameHeadersDialog dialog(game_);
    return dialog.DoModal(window_) == 1 ? 1 : 0;
}

int BoardView::ChooseSaveTarget(std::u16string* path) {
    SaveTargetDialog dialog;
    return dialog.Run(window_, path) ? 1 : 0;
}

NewLineChoice BoardView::AskNewLine(Position& position, Move, MoveNode** replaced) {
    NewLineDialog dialog(position);
    dialog.DoModal(window_);
    if (dialog.Choice() == NewLineChoice::Replace && dialog.Replaced() != nullptr) {
        *replaced = dialog.Replaced();
    }
    return dialog.Choice();
}

// A tap on the board: selects a piece, or enters the move from the selected one.
void BoardView::Tap(int x, int y) {
    // While the engine computes the board is its own.
    if (engineActive_ && App().engineHost != nullptr && App().engineHost->Thinking()) return;
    int file = 0;
    int rank = 0;
    if (!board_.SquareFromPoint(x, y, &file, &rank)) return;
    const TapOutcome outcome = entry_.Tap(file + 8 * rank, window_);
    switch (outcome) {
        case TapOutcome::Selected:
            board_.Select(file, rank);
            board_.RefreshSelected(true, *game_.Current());
            break;
        case TapOutcome::Deselected:
            board_.RefreshSelected(false, *game_.Current());
            board_.ClearSelection();
            break;
        case TapOutcome::Ignored:
        case TapOutcome::KeptSelection:
            break;
        case TapOutcome::FollowedLine:
        case TapOutcome::Played:
            board_.ClearSelection();
            InvalidateRect(window_, nullptr, FALSE);
            break;
        case TapOutcome::AddedLine:
        case TapOutcome::ReplacedLine:
        case TapOutcome::Cancelled:
            board_.ClearSelection();
            InvalidateRect(window_, nullptr, FALSE);
            SetForegroundWindow(window_);
            break;
    }
}

// Sets the glyph of the move that led to the current position; the start has none.
void BoardView::SetGlyph(int nag) {
    MoveNode* node = game_.Current()->ArrivalNode();
    if (node == nullptr) return;
    node->nag = static_cast<std::uint8_t>(nag);
    game_.modified = 1;
    InvalidateRect(window_, nullptr, FALSE);
    notation_.RefreshRow(node, true);
}

// Stores the evaluation symbol of the current position: "(none)" stores 11, kept as it is
// although a position read from a file without a symbol holds 0.
void BoardView::SetEvaluation(int evaluation) {
    game_.Current()->Value().evaluation = static_cast<std::uint8_t>(evaluation);
    game_.modified = 1;
    InvalidateRect(window_, nullptr, FALSE);
}

// Opens the glyph menu where the tap that asked for it was, above and centred on it.
void BoardView::ShowNagPopup() {
    if (App().drawing == nullptr || App().drawing->nagPopup == nullptr) return;
    const DWORD where = GetMessagePos();
    TrackPopupMenu(App().drawing->nagPopup, TPM_BOTTOMALIGN | TPM_CENTERALIGN,
                   static_cast<short>(LOWORD(where)), static_cast<short>(HIWORD(where)), 0, window_,
                   nullptr);
}

void BoardView::PromoteLine() {
    MoveNode* node = game_.Current()->ArrivalNode();
    if (node == nullptr) return;
    node->PromoteLine();
    notation_.Rebuild(node);
    game_.modified = 1;
    InvalidateRect(window_, nullptr, FALSE);
}

// Deletes the move that led to the current position with all that follows it, and goes to
// the position before it.
void BoardView::DeleteMove() {
    EngineHost* host = engineActive_ ? App().engineHost : nullptr;
    if (host != nullptr && host->Thinking()) return;
    MoveNode* node = game_.Current()->ArrivalNode();
    if (node == nullptr) return;
    Position* before = node->positionBefore;
    node->UnlinkNode();
    // The engine hears of the position again when the game goes back to it.
    if (host != nullptr) host->SetResend();
    game_.SetCurrent(before);
    notation_.Rebuild(before->ArrivalNode());
    delete node;
    game_.modified = 1;
    InvalidateRect(window_, nullptr, FALSE);
}

void BoardView::EditComment() {
    Position* position = game_.Current();
    CommentDialog dialog(*position);
    if (dialog.DoModal(window_) != 1) return;
    game_.modified = 1;
    const char16_t* comment = position->Comment();
    SetCommentText(comment_, comment != nullptr ? Wide(comment) : nullptr);
    if (MoveNode* node = position->ArrivalNode()) notation_.RefreshRow(node, true);
}

// Sets up a new game on the board editor; on OK the window ends and hands it over.
void BoardView::NewPosition() {
    // The engine is stopped only once the window really ends: after a cancelled set-up it
    // goes on playing this game.
    if (!PromptSave(game_, OwnerOf(window_))) return;
    auto game = std::make_unique<Game>();
    SetupBoardDialog dialog(*game, game_.Current(), false);
    if (dialog.DoModal(window_) != 1) return;
    StopEngineOnClose();
    newGame_ = std::move(game);
    exitCommand_ = ID_SHOW_GAME_AGAIN;
    EndDialog(window_, 1);
}

}  // namespace velmora
