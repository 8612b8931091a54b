// The comment editor: the comment in a text box sized to the dialog, and its menu.
#include "gamewindow/CommentDialog.h"

#include "game/Position.h"
#include "resources/resource.h"
#include "ui/MenuBar.h"

namespace velmora {

namespace {

// The text of the editor as a comment: line breaks become blanks, as a comment read from a
// file has them.
std::u16string CommentFromEditor(const std::u16string& text) {
    std::u16string comment;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') continue;
        comment += text[i] == u'\r' || text[i] == u'\n' ? u' ' : text[i];
    }
    return comment;
}

}  // namespace

CommentDialog::CommentDialog(Position& position)
    : DialogBase(IDD_COMMENT, IDM_COMMENT, 0), position_(position) {}

BOOL CommentDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    const char16_t* comment = position_.Comment();
    original_ = comment != nullptr ? reinterpret_cast<const wchar_t*>(comment) : L"";
    HWND text = GetDlgItem(window_, IDC_COMMENT_TEXT);
    SetWindowTextW(text, original_.c_str());
    FitText();
    SetFocus(text);
    SendMessageW(text, EM_SETSEL, original_.size(), original_.size());
    return FALSE;
}

// Gives the text box the whole dialog above the menu bar.
void CommentDialog::FitText() {
    RECT client{};
    GetClientRect(window_, &client);
    const int bar = pocketpc::MenuBarHeight(menuBar_);
    MoveWindow(GetDlgItem(window_, IDC_COMMENT_TEXT), 2, 2, client.right - 4,
               client.bottom - bar - 4, TRUE);
}

void CommentDialog::Store() {
    const std::u16string comment = CommentFromEditor(ControlText(window_, IDC_COMMENT_TEXT));
    if (comment.empty()) {
        position_.SetComment(static_cast<const char16_t*>(nullptr));
    } else {
        position_.SetComment(std::u16string_view(comment));
    }
}

INT_PTR CommentDialog::DialogProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SIZE) {
        DialogBase::DialogProc(message, wParam, lParam);
        if (GetDlgItem(window_, IDC_COMMENT_TEXT) != nullptr) FitText();
        return TRUE;
    }
    return DialogBase::DialogProc(message, wParam, lParam);
}

BOOL CommentDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case ID_COMMENT_RESET:
            SetDlgItemTextW(window_, IDC_COMMENT_TEXT, original_.c_str());
            return TRUE;
        case ID_COMMENT_CLEAR:
            SetDlgItemTextW(window_, IDC_COMMENT_TEXT, L"");
            return TRUE;
        case ID_COMMENT_CLOSE:
        case IDOK:
            Store();
            EndDialog(window_, 1);
            return TRUE;
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
}

}  // namespace velmora
