// The notation list box: it shows the rows NotationRows builds and keeps, and follows the
// game's cursor.
#include "gamewindow/NotationView.h"

#include "game/MoveTree.h"
#include "models/Settings.h"
#include "platform/win32/WideText.h"
#include "ui/Application.h"
#include "ui/DebugTrace.h"
#include "ui/DialogBase.h"
#include "ui/DrawingResources.h"

namespace velmora {

NotationView::~NotationView() {
    if (game_ != nullptr) game_->RemoveObserver(this);
    if (listBox_ != nullptr && IsWindow(listBox_)) {
        SetWindowLongPtrW(listBox_, GWLP_USERDATA, 0);
        SetWindowLongPtrW(listBox_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previousProc_));
    }
}

void NotationView::Attach(Game* game) {
    game_ = game;
    game_->AddObserver(this, false);
}

bool NotationView::Create(HWND parent, int controlId, const RECT& rect) {
    rect_ = rect;
    listBox_ = CreateWindowExW(WS_EX_CLIENTEDGE, L"LISTBOX", L"",
                               WS_CHILD | WS_CLIPSIBLINGS | WS_VSCROLL | LBS_NOINTEGRALHEIGHT |
                                   LBS_NOTIFY | (visible_ ? WS_VISIBLE : 0),
                               rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
                               parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(controlId)),
                               App().programInstance, nullptr);
    if (listBox_ == nullptr) return false;
    if (App().drawing != nullptr) {
        SendMessageW(listBox_, WM_SETFONT, reinterpret_cast<WPARAM>(App().drawing->notationFont),
                     TRUE);
    }
    SetWindowLongPtrW(listBox_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    previousProc_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(listBox_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Subclass)));
    ComputeVisibleRows();
    return true;
}

void NotationView::Move(const RECT& rect) {
    rect_ = rect;
    if (listBox_ == nullptr) return;
    MoveWindow(listBox_, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, TRUE);
    ComputeVisibleRows();
}

void NotationView::Show(bool visible) {
    visible_ = visible;
    if (listBox_ != nullptr) ShowWindow(listBox_, visible ? SW_SHOW : SW_HIDE);
}

// Works out how many rows fit, measuring a temporary row when the list is empty.
void NotationView::ComputeVisibleRows() {
    if (listBox_ == nullptr) return;
    int height = rect_.bottom - rect_.top;
    int itemHeight;
    if (SendMessageW(listBox_, LB_GETCOUNT, 0, 0) == 0) {
        SendMessageW(listBox_, WM_SETREDRAW, FALSE, 0);
        SendMessageW(listBox_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"e4"));
        itemHeight = static_cast<int>(SendMessageW(listBox_, LB_GETITEMHEIGHT, 0, 0));
        SendMessageW(listBox_, LB_DELETESTRING, 0, 0);
        SendMessageW(listBox_, WM_SETREDRAW, TRUE, 0);
    } else {
        itemHeight = static_cast<int>(SendMessageW(listBox_, LB_GETITEMHEIGHT, 0, 0));
    }
    visibleRows_ = VisibleRowCount(height, itemHeight);
}

bool NotationView::IndicateComment() const {
    return App().settings == nullptr || App().settings->indicateComment != 0;
}

MoveNode* NotationView::SelectedNode() const {
    if (listBox_ == nullptr) return nullptr;
    LRESULT row = SendMessageW(listBox_, LB_GETCURSEL, 0, 0);
    return row >= 0 && row < RowCount() ? rows_[static_cast<std::size_t>(row)].node : nullptr;
}

void NotationView::ReplaceListRow(int row) {
    SendMessageW(listBox_, LB_DELETESTRING, static_cast<WPARAM>(row), 0);
    InsertListRow(row);
}

bool NotationView::InsertListRow(int row) {
    std::wstring text = platform::win32::ToWin32(rows_[static_cast<std::size_t>(row)].text);
    LRESULT inserted = SendMessageW(listBox_, LB_INSERTSTRING, static_cast<WPARAM>(row),
                                    reinterpret_cast<LPARAM>(text.c_str()));
    return inserted != LB_ERR && inserted != LB_ERRSPACE;
}

void NotationView::RefreshRow(MoveNode* node, bool select) {
    if (listBox_ == nullptr || node == nullptr) return;
    const int row = RowOfNode(rows_, node);
    if (row == 0) return;
    MoveNode* below = row + 1 < RowCount() ? rows_[row + 1].node : nullptr;
    rows_[row].text = FormatRow(node, below, IndicateComment());
    ReplaceListRow(row);
    if (select) SendMessageW(listBox_, LB_SETCURSEL, static_cast<WPARAM>(row), 0);
}

void NotationView::Rebuild(MoveNode* node) {
    if (listBox_ == nullptr || game_ == nullptr) return;
    ShowWaitCursor(true);
    SendMessageW(listBox_, WM_SETREDRAW, FALSE, 0);
    SendMessageW(listBox_, LB_RESETCONTENT, 0, 0);
    rows_ = BuildRows(*game_, IndicateComment());
    for (const NotationRow& row : rows_) {
        std::wstring text = platform::win32::ToWin32(row.text);
        SendMessageW(listBox_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
    }
    SendMessageW(listBox_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(listBox_, nullptr, TRUE);
    ShowWaitCursor(false);
    SelectNode(node);
}

void NotationView::SelectNode(MoveNode* node) {
    if (listBox_ == nullptr) return;
    int row = RowOfNode(rows_, node);
    SendMessageW(listBox_, LB_SETCURSEL, static_cast<WPARAM>(row), 0);
    int top = static_cast<int>(SendMessageW(listBox_, LB_GETTOPINDEX, 0, 0));
    int newTop = TopRowToShow(row, top, visibleRows_);
    if (newTop != top) SendMessageW(listBox_, LB_SETTOPINDEX, static_cast<WPARAM>(newTop), 0);
}

void NotationView::OnNotify(int code) {
    if (code != LBN_SELCHANGE || game_ == nullptr) return;
    MoveNode* node = SelectedNode();
    if (node != nullptr) {
        game_->SetCurrent(node->positionAfter);
    } else {
        game_->GoToStart();
    }
}

// Inserts the new move's row in the rows and the list box alike; if the list box refuses it,
// the rows go back to what the list box shows.
void NotationView::OnMovePlayed(MoveNode* node, GameView*) {
    if (listBox_ == nullptr || node == nullptr || rows_.empty()) return;
    const bool indicateComment = IndicateComment();
    const int row = InsertRow(rows_, node, indicateComment);
    if (!InsertListRow(row)) {
        DebugTrace(L"Err : %08x\n", GetLastError());
        rows_.erase(rows_.begin() + row);
        if (MoveNode* before = rows_[row - 1].node; before != nullptr) {
            MoveNode* below = row < RowCount() ? rows_[row].node : nullptr;
            rows_[row - 1].text = FormatRow(before, below, indicateComment);
        }
        return;
    }
    if (rows_[row - 1].node != nullptr) ReplaceListRow(row - 1);
    SelectNode(node);
}

void NotationView::OnPositionChanged(Position* position) {
    SelectNode(position != nullptr ? position->ArrivalNode() : nullptr);
}

void NotationView::Refresh() {
    Rebuild(nullptr);
}

// Handles the arrow keys as moves through the game before the list box sees them.
LRESULT CALLBACK NotationView::Subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* view = reinterpret_cast<NotationView*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (view == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    if (message == WM_KEYDOWN && view->game_ != nullptr) {
        switch (wParam) {
            case VK_LEFT:
                view->game_->GoBack();
                return 0;
            case VK_UP:
                view->game_->LeaveVariation();
                return 0;
            case VK_RIGHT:
            case VK_DOWN:
                view->game_->GoForward();
                return 0;
            default:
                break;
        }
    }
    return CallWindowProcW(view->previousProc_, window, message, wParam, lParam);
}

}  // namespace velmora
