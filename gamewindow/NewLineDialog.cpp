// The "New line" dialog: the other moves of the position, and Add, Replace or Cancel.
#include "gamewindow/NewLineDialog.h"

#include <string>

#include "game/MoveTree.h"
#include "game/Position.h"
#include "gamewindow/ChooseMoveDialog.h"
#include "resources/resource.h"

namespace velmora {

NewLineDialog::NewLineDialog(Position& position)
    : DialogBase(IDD_NEW_LINE, 0, 0), position_(position) {}

// Returns FALSE: the focus goes to the list.
BOOL NewLineDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    HWND list = GetDlgItem(window_, IDC_OTHER_MOVES);
    FillMoveList(list, position_.FirstContinuation());
    SetFocus(list);
    return FALSE;
}

BOOL NewLineDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case IDC_NEW_LINE_ADD:
            choice_ = NewLineChoice::Add;
            break;
        case IDC_NEW_LINE_REPLACE: {
            replaced_ = SelectedMove(GetDlgItem(window_, IDC_OTHER_MOVES));
            choice_ = NewLineChoice::Replace;
            break;
        }
        case IDCANCEL:
            choice_ = NewLineChoice::Cancel;
            break;
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
    EndDialog(window_, choice_ == NewLineChoice::Cancel ? 2 : 1);
    return TRUE;
}

}  // namespace velmora
