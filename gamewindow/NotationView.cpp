// The notation list box: rows built by NotationRows, kept in step with the game's cursor.
#include "gamewindow/NotationView.h"

#include "game/MoveTree.h"
#include "models/NotationRows.h"
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
    game_->AddObserver(this, 0);
}

int NotationView::Create(HWND parent, int controlId, const RECT& rect) {
    rect_ = rect;
    listBox_ = CreateWindowExW(WS_EX_CLIENTEDGE, L"LISTBOX", L"",
                               WS_CHILD | WS_CLIPSIBLINGS | WS_VSCROLL | LBS_NOINTEGRALHEIGHT |
                                   LBS_NOTIFY | (visible_ ? WS_VISIBLE : 0),
                               rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
                               parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(controlId)),
                               App().programInstance, nullptr);
    if (listBox_ == nullptr) return 0;
    if (App().drawing != nullptr) {
        SendMessageW(listBox_, WM_SETFONT, reinterpret_cast<WPARAM>(App().drawing->notationFont),
                     TRUE);
    }
    SetWindowLongPtrW(listBox_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    previousProc_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(listBox_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Subclass)));
    ComputeVisibleRows();
    return 1;
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
    visibleRows_ = itemHeight > 0 ? height / itemHeight : 20;
}

bool NotationView::IndicateComment() const {
    return App().settings == nullptr || App().settings->indicateComment != 0;
}

MoveNode* NotationView::NodeAt(int row) const {
    LRESULT data = SendMessageW(listBox_, LB_GETITEMDATA, static_cast<WPARAM>(row), 0);
    return data == LB_ERR ? nullptr : reinterpret_cast<MoveNode*>(data);
}

int NotationView::RowOf(MoveNode* node) const {
    if (node == nullptr || listBox_ == nullptr) return 0;
    int count = RowCount();
    for (int row = 0; row < count; ++row) {
        if (NodeAt(row) == node) return row;
    }
    return 0;
}

MoveNode* NotationView::SelectedNode() const {
    if (listBox_ == nullptr) return nullptr;
    LRESULT row = SendMessageW(listBox_, LB_GETCURSEL, 0, 0);
    return row == LB_ERR ? nullptr : NodeAt(static_cast<int>(row));
}

int NotationView::RowCount() const {
    return listBox_ == nullptr ? 0 : static_cast<int>(SendMessageW(listBox_, LB_GETCOUNT, 0, 0));
}

std::wstring NotationView::FormatRow(MoveNode* node, int rowBelow) const {
    MoveNode* below = rowBelow < RowCount() ? NodeAt(rowBelow) : nullptr;
    return platform::win32::ToWin32(RowText(node, IndicateComment(), ClosingParens(node, below)));
}

void NotationView::ReplaceRow(int row, const std::wstring& text, MoveNode* node) {
    SendMessageW(listBox_, LB_DELETESTRING, static_cast<WPARAM>(row), 0);
    SendMessageW(listBox_, LB_INSERTSTRING, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(text.c_str()));
    SendMessageW(listBox_, LB_SETITEMDATA, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(node));
}

void NotationView::RefreshRow(MoveNode* node, bool select) {
    if (listBox_ == nullptr || node == nullptr) return;
    LRESULT selected = SendMessageW(listBox_, LB_GETCURSEL, 0, 0);
    int row = selected != LB_ERR && NodeAt(static_cast<int>(selected)) == node
                  ? static_cast<int>(selected)
                  : RowOf(node);
    if (row == 0) return;
    ReplaceRow(row, FormatRow(node, row + 1), node);
    if (select) SendMessageW(listBox_, LB_SETCURSEL, static_cast<WPARAM>(row), 0);
}

void NotationView::Rebuild(MoveNode* node) {
    if (listBox_ == nullptr || game_ == nullptr) return;
    ShowWaitCursor(true);
    SendMessageW(listBox_, WM_SETREDRAW, FALSE, 0);
    SendMessageW(listBox_, LB_RESETCONTENT, 0, 0);
    for (const NotationRow& row : BuildRows(*game_, IndicateComment())) {
        std::wstring text = platform::win32::ToWin32(row.text);
        LRESULT index =
            SendMessageW(listBox_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
        SendMessageW(listBox_, LB_SETITEMDATA, static_cast<WPARAM>(index),
                     reinterpret_cast<LPARAM>(row.node));
    }
    SendMessageW(listBox_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(listBox_, nullptr, TRUE);
    ShowWaitCursor(false);
    SelectNode(node);
}

void NotationView::SelectNode(MoveNode* node) {
    if (listBox_ == nullptr) return;
    int row = RowOf(node);
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

void NotationView::OnMovePlayed(MoveNode* node, GameView*) {
    if (listBox_ == nullptr || node == nullptr) return;
    MoveNode* previous = node->PreviousInNotation();
    int row = previous != nullptr ? RowOf(previous) : 0;
    int at = row > 0 ? row + 1 : 1;
    std::wstring text = FormatRow(node, at);
    LRESULT inserted = SendMessageW(listBox_, LB_INSERTSTRING, static_cast<WPARAM>(at),
                                    reinterpret_cast<LPARAM>(text.c_str()));
    if (inserted == LB_ERR || inserted == LB_ERRSPACE) {
        DebugTrace(L"Err : %08x\n", GetLastError());
        return;
    }
    SendMessageW(listBox_, LB_SETITEMDATA, static_cast<WPARAM>(at), reinterpret_cast<LPARAM>(node));
    if (MoveNode* before = NodeAt(at - 1); before != nullptr) {
        ReplaceRow(at - 1, FormatRow(before, at), before);
    }
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
