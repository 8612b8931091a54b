// The "New line" dialog: the other moves of the position, and Add, Replace or Cancel.
#include "gamewindow/NewLineDialog.h"

#include <string>

#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/Position.h"
#include "resources/resource.h"

namespace velmora {

NewLineDialog::NewLineDialog(Position& position)
    : DialogBase(IDD_NEW_LINE, 0, 0), position_(position) {}

// Returns FALSE: the focus goes to the list.
BOOL NewLineDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    HWND list = GetDlgItem(window_, IDC_OTHER_MOVES);
    for (MoveNode* node = position_.FirstContinuation(); node != nullptr;
         node = node->nextAlternative) {
        char16_t text[kSanBufferSize];
        const int length = WriteSan(node, text, {.withNumber = true});
        const std::wstring shown(text, text + length);
        LRESULT row = SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(shown.c_str()));
        SendMessageW(list, LB_SETITEMDATA, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(node));
    }
    SendMessageW(list, LB_SETCURSEL, 0, 0);
    SetFocus(list);
    return FALSE;
}

BOOL NewLineDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case IDC_NEW_LINE_ADD:
            choice_ = NewLineChoice::Add;
            break;
        case IDC_NEW_LINE_REPLACE: {
            HWND list = GetDlgItem(window_, IDC_OTHER_MOVES);
            LRESULT row = SendMessageW(list, LB_GETCURSEL, 0, 0);
            if (row != LB_ERR) {
                replaced_ = reinterpret_cast<MoveNode*>(
                    SendMessageW(list, LB_GETITEMDATA, static_cast<WPARAM>(row), 0));
            }
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
