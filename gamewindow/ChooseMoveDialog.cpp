// The "Choose move" dialog: a list box of moves; OK or a double tap takes the selected one.
#include "gamewindow/ChooseMoveDialog.h"

#include <string>

#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "resources/resource.h"

namespace velmora {

void FillMoveList(HWND list, MoveNode* first) {
    for (MoveNode* node = first; node != nullptr; node = node->nextAlternative) {
        char16_t text[kSanBufferSize];
        const int length = WriteSan(node, text, {.withNumber = true});
        const std::wstring shown(text, text + length);
        LRESULT row = SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(shown.c_str()));
        SendMessageW(list, LB_SETITEMDATA, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(node));
    }
    SendMessageW(list, LB_SETCURSEL, 0, 0);
}

MoveNode* SelectedMove(HWND list) {
    const LRESULT row = SendMessageW(list, LB_GETCURSEL, 0, 0);
    if (row == LB_ERR) return nullptr;
    return reinterpret_cast<MoveNode*>(
        SendMessageW(list, LB_GETITEMDATA, static_cast<WPARAM>(row), 0));
}

ChooseMoveDialog::ChooseMoveDialog(MoveNode* first)
    : DialogBase(IDD_CHOOSE_MOVE, 0, 0), first_(first) {}

// Returns FALSE: the focus goes to the list, not where the system would put it.
BOOL ChooseMoveDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    HWND list = GetDlgItem(window_, IDC_MOVE_LIST);
    FillMoveList(list, first_);
    SetFocus(list);
    return FALSE;
}

BOOL ChooseMoveDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    int id = LOWORD(wParam);
    bool doubleTap = id == IDC_MOVE_LIST && HIWORD(wParam) == LBN_DBLCLK;
    if (id == IDOK || doubleTap) {
        chosen_ = SelectedMove(GetDlgItem(window_, IDC_MOVE_LIST));
        EndDialog(window_, 1);
        return TRUE;
    }
    return DialogBase::OnCommand(wParam, lParam);
}

}  // namespace velmora
