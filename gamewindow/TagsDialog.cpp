// The tags dialog: the list view of the game's other tags and the controls that change them.
#include "gamewindow/TagsDialog.h"

#include <commctrl.h>

#include <string>

#include "game/Game.h"
#include "game/TagDictionary.h"
#include "resources/resource.h"
#include "ui/DeviceFrame.h"
#include "ui/MenuBar.h"

namespace velmora {
namespace {

const wchar_t* Shown(const OwnedText& text) {
    return text.Get() != nullptr ? reinterpret_cast<const wchar_t*>(text.Get()) : L"";
}

constexpr wchar_t kNoNameText[] = L"Type the name of a tag or choose one from the list first.";

}  // namespace

void TagsDialog::Warn(const std::wstring& text) {
    MessageBoxW(window_, text.c_str(), L"Tags", MB_OK | MB_ICONWARNING);
}

TagsDialog::TagsDialog(Game& game)
    : DialogBase(IDD_TAGS, 0, pocketpc::kDoneButton), editor_(game) {}

BOOL TagsDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    HWND names = GetDlgItem(window_, IDC_TAG_NAME);
    const TagDictionary& dictionary = GlobalTagDictionary();
    for (int i = 0; i < dictionary.Count(); ++i) {
        SendMessageW(names, CB_ADDSTRING, 0,
                     reinterpret_cast<LPARAM>(reinterpret_cast<const wchar_t*>(dictionary.Get(i))));
    }
    HWND list = GetDlgItem(window_, IDC_TAG_LIST);
    ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT);
    const wchar_t* titles[2] = {L"Tag", L"Value"};
    RECT client{};
    GetClientRect(list, &client);
    const int tagWidth = client.right * 2 / 5;
    for (int column = 0; column < 2; ++column) {
        LVCOLUMNW description{};
        description.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        description.fmt = LVCFMT_LEFT;
        description.cx = column == 0 ? tagWidth : client.right - tagWidth;
        description.pszText = const_cast<wchar_t*>(titles[column]);
        description.iSubItem = column;
        SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column),
                     reinterpret_cast<LPARAM>(&description));
    }
    for (int row = 0; row < editor_.RowCount(); ++row)
        ShowRow(row, true);
    FitList();
    return TRUE;
}

// Puts the editor's row into the list view, as a new row or over the one there.
void TagsDialog::ShowRow(int row, bool insert) {
    HWND list = GetDlgItem(window_, IDC_TAG_LIST);
    const ExtraTag* tag = editor_.Row(row);
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.pszText = const_cast<wchar_t*>(Shown(tag->name));
    if (insert) {
        SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    } else {
        SendMessageW(list, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    item.iSubItem = 1;
    item.pszText = const_cast<wchar_t*>(Shown(tag->value));
    SendMessageW(list, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void TagsDialog::SelectRow(int row) {
    HWND list = GetDlgItem(window_, IDC_TAG_LIST);
    ListView_SetItemState(list, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    if (row < 0) return;
    ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(list, row, FALSE);
}

// Gives the list the rest of the dialog's height above the menu bar.
void TagsDialog::FitList() {
    HWND list = GetDlgItem(window_, IDC_TAG_LIST);
    RECT client{};
    GetClientRect(window_, &client);
    RECT rect{};
    GetWindowRect(list, &rect);
    MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&rect), 2);
    const int bottom = client.bottom - pocketpc::MenuBarHeight(menuBar_) - 3;
    MoveWindow(list, rect.left, rect.top, client.right - 2 * rect.left,
               bottom > rect.top ? bottom - rect.top : 0, TRUE);
}

void TagsDialog::SetTag() {
    const std::u16string name = ControlText(window_, IDC_TAG_NAME);
    const int before = editor_.RowCount();
    switch (editor_.Set(name, ControlText(window_, IDC_TAG_VALUE))) {
        case TagEditor::Change::Added:
            ShowRow(before, true);
            SelectRow(before);
            break;
        case TagEditor::Change::Replaced:
            ShowRow(editor_.RowOf(name), false);
            SelectRow(editor_.RowOf(name));
            break;
        case TagEditor::Change::HeaderTag:
            Warn(L"\"" + std::wstring(name.begin(), name.end()) +
                 L"\" is written by the program itself: change it in the game headers.");
            break;
        default:
            Warn(kNoNameText);
            break;
    }
}

void TagsDialog::DeleteTag() {
    const std::u16string name = ControlText(window_, IDC_TAG_NAME);
    const int row = editor_.RowOf(name);
    switch (editor_.Remove(name)) {
        case TagEditor::Change::Removed:
            SendDlgItemMessageW(window_, IDC_TAG_LIST, LVM_DELETEITEM, static_cast<WPARAM>(row), 0);
            SelectRow(-1);
            break;
        case TagEditor::Change::NoSuchTag:
            Warn(L"The game has no tag \"" + std::wstring(name.begin(), name.end()) + L"\".");
            break;
        default:
            Warn(kNoNameText);
            break;
    }
}

INT_PTR TagsDialog::DialogProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NOTIFY) {
        const auto* header = reinterpret_cast<const NMHDR*>(lParam);
        if (header->idFrom == IDC_TAG_LIST && header->code == LVN_ITEMCHANGED) {
            // A tapped row fills the name and value boxes.
            const auto* change = reinterpret_cast<const NMLISTVIEW*>(lParam);
            if ((change->uNewState & LVIS_SELECTED) != 0 && change->iItem >= 0 &&
                change->iItem < editor_.RowCount()) {
                const ExtraTag* tag = editor_.Row(change->iItem);
                SetDlgItemTextW(window_, IDC_TAG_NAME, Shown(tag->name));
                SetDlgItemTextW(window_, IDC_TAG_VALUE, Shown(tag->value));
            }
            return TRUE;
        }
    } else if (message == WM_SIZE) {
        DialogBase::DialogProc(message, wParam, lParam);
        if (GetDlgItem(window_, IDC_TAG_LIST) != nullptr) FitList();
        return TRUE;
    }
    return DialogBase::DialogProc(message, wParam, lParam);
}

BOOL TagsDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case IDC_TAG_SET:
            SetTag();
            return TRUE;
        case IDC_TAG_DELETE:
            DeleteTag();
            return TRUE;
        case IDC_TAG_NAME:
            if (HIWORD(wParam) == CBN_SELCHANGE) {
                HWND names = GetDlgItem(window_, IDC_TAG_NAME);
                const LRESULT index = SendMessageW(names, CB_GETCURSEL, 0, 0);
                wchar_t text[256] = {};
                if (index != CB_ERR &&
                    SendMessageW(names, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0) < 256) {
                    SendMessageW(names, CB_GETLBTEXT, static_cast<WPARAM>(index),
                                 reinterpret_cast<LPARAM>(text));
                    SelectRow(editor_.RowOf(reinterpret_cast<const char16_t*>(text)));
                }
            }
            return TRUE;
        case IDOK:
            EndDialog(window_, 1);
            return TRUE;
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
}

}  // namespace velmora
