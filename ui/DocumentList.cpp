// The document list window: a combo box of folders and a list view of files, filled from
// DocumentFolders and reporting taps to its parent.
#include "ui/DocumentList.h"

#include <commctrl.h>

#include <algorithm>
#include <memory>
#include <string>

#include "models/DocumentFolders.h"
#include "platform/File.h"
#include "platform/win32/WideText.h"

namespace velmora::pocketpc {
namespace {

using platform::win32::FromWin32;
using platform::win32::ToWin32;

constexpr wchar_t kDocListClass[] = L"VelmoraDocList";
constexpr int kFolderComboId = 1;
constexpr int kFileListId = 2;
constexpr int kFilterComboId = 3;
constexpr int kFilterComboWidth = 76;

struct Filter {
    std::wstring name;
    std::wstring pattern;
};

struct DocList {
    HWND combo = nullptr;
    HWND filterCombo = nullptr;  // only with a second filter
    HWND list = nullptr;
    std::vector<Filter> filters;
    int controlId = 0;
    std::wstring allFoldersText;
    std::unique_ptr<DocumentFolders> folders;
};

DocList* DocListOf(HWND window) {
    return reinterpret_cast<DocList*>(GetWindowLongPtrW(window, 0));
}

// Orders names as the system's own lists do (lstrcmpiW: the user's language, any case).
int CompareAsTheSystem(const std::u16string& a, const std::u16string& b) {
    return lstrcmpiW(ToWin32(a).c_str(), ToWin32(b).c_str());
}

void ShowFolders(DocList& doc) {
    SendMessageW(doc.combo, CB_RESETCONTENT, 0, 0);
    SendMessageW(doc.combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(doc.allFoldersText.c_str()));
    for (const std::u16string& folder : doc.folders->Folders()) {
        std::wstring label = ToWin32(doc.folders->Label(folder));
        SendMessageW(doc.combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(label.c_str()));
    }
    SendMessageW(doc.combo, CB_SETCURSEL, static_cast<WPARAM>(doc.folders->ChosenEntry()), 0);
}

void ShowRows(DocList& doc) {
    SendMessageW(doc.list, WM_SETREDRAW, FALSE, 0);
    ListView_DeleteAllItems(doc.list);
    const auto& rows = doc.folders->Rows();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::wstring name = ToWin32(rows[i].name);
        LVITEMW item{};
        item.mask = LVIF_TEXT | LVIF_PARAM;
        item.iItem = static_cast<int>(i);
        item.pszText = name.data();
        item.lParam = static_cast<LPARAM>(i);
        int row = static_cast<int>(
            SendMessageW(doc.list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
        std::wstring size = ToWin32(rows[i].sizeText);
        LVITEMW sub{};
        sub.iSubItem = 1;
        sub.pszText = size.data();
        SendMessageW(doc.list, LVM_SETITEMTEXTW, row, reinterpret_cast<LPARAM>(&sub));
    }
    SendMessageW(doc.list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(doc.list, nullptr, TRUE);
}

// Lists the files of filter entry (0 the first filter), names the list's column after it and
// searches the folders again.
void ChooseFilter(DocList& doc, int entry) {
    if (entry < 0 || entry >= static_cast<int>(doc.filters.size())) return;
    doc.folders->SetPattern(FromWin32(doc.filters[entry].pattern.c_str()));
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT;
    column.pszText = doc.filters[entry].name.data();
    SendMessageW(doc.list, LVM_SETCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    doc.folders->Refresh();
    ShowFolders(doc);
    ShowRows(doc);
}

void Notify(HWND window, DocList& doc, UINT code, const std::u16string& path) {
    DocListNotify notify{};
    notify.header.hwndFrom = window;
    notify.header.idFrom = static_cast<UINT_PTR>(doc.controlId);
    notify.header.code = code;
    lstrcpynW(notify.path, ToWin32(path).c_str(), MAX_PATH);
    SendMessageW(GetParent(window), WM_NOTIFY, static_cast<WPARAM>(doc.controlId),
                 reinterpret_cast<LPARAM>(&notify));
}

void LayoutDocList(HWND window, DocList& doc) {
    RECT client{};
    GetClientRect(window, &client);
    RECT comboRect{};
    GetWindowRect(doc.combo, &comboRect);
    int comboHeight = comboRect.bottom - comboRect.top;
    int filterWidth = doc.filterCombo != nullptr ? kFilterComboWidth + 2 : 0;
    MoveWindow(doc.combo, 2, 2, client.right - 4 - filterWidth, 200, TRUE);
    if (doc.filterCombo != nullptr) {
        MoveWindow(doc.filterCombo, client.right - 2 - kFilterComboWidth, 2, kFilterComboWidth, 120,
                   TRUE);
    }
    MoveWindow(doc.list, 0, comboHeight + 4, client.right,
               std::max<int>(0, client.bottom - comboHeight - 4), TRUE);
    int sizeWidth = 60;
    ListView_SetColumnWidth(doc.list, 1, sizeWidth);
    ListView_SetColumnWidth(
        doc.list, 0,
        std::max<int>(40, client.right - sizeWidth - GetSystemMetrics(SM_CXVSCROLL) - 4));
}

LRESULT CALLBACK DocListProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DocList* doc = DocListOf(window);
    switch (message) {
        case WM_SIZE:
            if (doc != nullptr) LayoutDocList(window, *doc);
            return 0;
        case kDocListRefresh:
            if (doc != nullptr) {
                doc->folders->Refresh();
                ShowFolders(*doc);
                ShowRows(*doc);
            }
            return 0;
        case WM_COMMAND:
            if (doc != nullptr && LOWORD(wParam) == kFilterComboId &&
                HIWORD(wParam) == CBN_SELCHANGE) {
                ChooseFilter(*doc,
                             static_cast<int>(SendMessageW(doc->filterCombo, CB_GETCURSEL, 0, 0)));
                return 0;
            }
            if (doc != nullptr && LOWORD(wParam) == kFolderComboId &&
                HIWORD(wParam) == CBN_SELCHANGE) {
                doc->folders->Choose(
                    static_cast<int>(SendMessageW(doc->combo, CB_GETCURSEL, 0, 0)));
                ShowRows(*doc);
                Notify(window, *doc, kDocListFolderChanged, doc->folders->Folder());
            }
            return 0;
        case WM_NOTIFY: {
            auto* header = reinterpret_cast<NMHDR*>(lParam);
            if (doc != nullptr && header->idFrom == kFileListId &&
                header->code == LVN_ITEMACTIVATE) {
                auto* activate = reinterpret_cast<NMITEMACTIVATE*>(lParam);
                LVITEMW item{};
                item.mask = LVIF_PARAM;
                item.iItem = activate->iItem;
                const auto& rows = doc->folders->Rows();
                if (activate->iItem >= 0 &&
                    SendMessageW(doc->list, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)) &&
                    item.lParam >= 0 && item.lParam < static_cast<LPARAM>(rows.size())) {
                    std::u16string path = rows[item.lParam].path;
                    Notify(window, *doc, kDocListFileChosen, path);
                }
            }
            return 0;
        }
        case WM_DESTROY:
            delete doc;
            SetWindowLongPtrW(window, 0, 0);
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

void RegisterDocListClass() {
    static bool registered = false;
    if (registered) return;
    registered = true;
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DocListProc;
    windowClass.cbWndExtra = sizeof(DocList*);
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = kDocListClass;
    RegisterClassW(&windowClass);
}

}  // namespace

HWND CreateDocList(const DocListCreate& create) {
    RegisterDocListClass();
    RECT client{};
    GetClientRect(create.parent, &client);
    HWND window = CreateWindowExW(0, kDocListClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0,
                                  0, client.right, client.bottom, create.parent,
                                  reinterpret_cast<HMENU>(static_cast<INT_PTR>(create.controlId)),
                                  GetModuleHandleW(nullptr), nullptr);
    if (window == nullptr) return nullptr;
    auto* doc = new DocList;
    SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(doc));
    doc->controlId = create.controlId;
    doc->allFoldersText = create.allFoldersText != nullptr ? create.allFoldersText : L"";
    wchar_t current[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, current);
    doc->folders = std::make_unique<DocumentFolders>(
        platform::SystemFileSystem(), FromWin32(current),
        FromWin32(create.filterPattern != nullptr ? create.filterPattern : L"*.*"),
        CompareAsTheSystem);
    doc->folders->StartIn(FromWin32(create.folder != nullptr ? create.folder : L""));
    HFONT font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    doc->combo = CreateWindowExW(
        0, WC_COMBOBOXW, L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL | CBS_DROPDOWNLIST, 2, 2,
        client.right - 4, 200, window, reinterpret_cast<HMENU>(kFolderComboId),
        GetModuleHandleW(nullptr), nullptr);
    doc->list = CreateWindowExW(
        0, WC_LISTVIEWW, L"",
        WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER,
        0, 24, client.right, client.bottom - 24, window, reinterpret_cast<HMENU>(kFileListId),
        GetModuleHandleW(nullptr), nullptr);
    doc->filters.push_back({create.filterName != nullptr ? create.filterName : L"",
                            create.filterPattern != nullptr ? create.filterPattern : L"*.*"});
    if (create.otherFilterName != nullptr && create.otherFilterPattern != nullptr) {
        doc->filters.push_back({create.otherFilterName, create.otherFilterPattern});
        doc->filterCombo = CreateWindowExW(
            0, WC_COMBOBOXW, L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL | CBS_DROPDOWNLIST, 0, 2,
            kFilterComboWidth, 120, window, reinterpret_cast<HMENU>(kFilterComboId),
            GetModuleHandleW(nullptr), nullptr);
        if (doc->filterCombo != nullptr) {
            SendMessageW(doc->filterCombo, WM_SETFONT,
                         reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
            for (const Filter& filter : doc->filters) {
                SendMessageW(doc->filterCombo, CB_ADDSTRING, 0,
                             reinterpret_cast<LPARAM>(filter.name.c_str()));
            }
            SendMessageW(doc->filterCombo, CB_SETCURSEL, 0, 0);
        }
    }
    if (doc->combo == nullptr || doc->list == nullptr) {
        DestroyWindow(window);
        return nullptr;
    }
    SendMessageW(doc->combo, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    SendMessageW(doc->list, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    ListView_SetExtendedListViewStyle(doc->list, LVS_EX_FULLROWSELECT | LVS_EX_ONECLICKACTIVATE);
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    column.fmt = LVCFMT_LEFT;
    column.cx = 150;
    column.pszText = const_cast<wchar_t*>(create.filterName != nullptr ? create.filterName : L"");
    SendMessageW(doc->list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    column.fmt = LVCFMT_RIGHT;
    column.cx = 60;
    column.pszText = const_cast<wchar_t*>(L"");
    SendMessageW(doc->list, LVM_INSERTCOLUMNW, 1, reinterpret_cast<LPARAM>(&column));
    LayoutDocList(window, *doc);
    return window;
}

std::vector<std::wstring> DocListFiles(HWND docList) {
    std::vector<std::wstring> files;
    DocList* doc = DocListOf(docList);
    if (doc == nullptr) return files;
    for (const DocumentRow& row : doc->folders->Rows())
        files.push_back(ToWin32(row.path));
    return files;
}

HWND DocListFilterChooser(HWND docList) {
    DocList* doc = DocListOf(docList);
    return doc != nullptr ? doc->filterCombo : nullptr;
}

HWND DocListFileList(HWND docList) {
    DocList* doc = DocListOf(docList);
    return doc != nullptr ? doc->list : nullptr;
}

}  // namespace velmora::pocketpc
