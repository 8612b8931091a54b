// Desktop equivalents of the Pocket PC shell calls, inside the device frame.
#include "shell/pocketpc.h"

#include <commctrl.h>

#include <algorithm>
#include <string>
#include <vector>

namespace velmora::pocketpc {
namespace {

constexpr wchar_t kMenuBarClass[] = L"VelmoraMenuBar";
constexpr wchar_t kDocListClass[] = L"VelmoraDocList";
constexpr int kMenuBarHeight = 26;
constexpr int kToolbarId = 1;
// Buttons that open a top-level popup carry these commands; they never reach the parent.
constexpr int kPopupButtonBase = 0xE000;

HWND frame = nullptr;

struct OpenDialog {
    HWND window;
    DWORD flags;
};
std::vector<OpenDialog> openDialogs;

// What a menu bar window keeps.
struct MenuBar {
    HWND toolbar = nullptr;  // the menu buttons
    HWND tools = nullptr;    // the image buttons, beside the menus or on a row of their own
    HMENU menu = nullptr;    // the loaded menu resource, destroyed with the bar
    HIMAGELIST images = nullptr;
    int popupCount = 0;
};

MenuBar* BarOf(HWND bar) {
    return reinterpret_cast<MenuBar*>(GetWindowLongPtrW(bar, 0));
}

void OpenPopup(HWND bar, MenuBar* data, int index) {
    HMENU popup = GetSubMenu(data->menu, index);
    if (popup == nullptr) return;
    RECT button{};
    SendMessageW(data->toolbar, TB_GETRECT, kPopupButtonBase + index,
                 reinterpret_cast<LPARAM>(&button));
    MapWindowPoints(data->toolbar, nullptr, reinterpret_cast<POINT*>(&button), 2);
    HWND owner = GetParent(bar);
    SendMessageW(data->toolbar, TB_PRESSBUTTON, kPopupButtonBase + index, TRUE);
    TrackPopupMenuEx(popup, TPM_LEFTALIGN | TPM_BOTTOMALIGN, button.left, button.top, owner,
                     nullptr);
    SendMessageW(data->toolbar, TB_PRESSBUTTON, kPopupButtonBase + index, FALSE);
}

LRESULT CALLBACK MenuBarProc(HWND bar, UINT message, WPARAM wParam, LPARAM lParam) {
    MenuBar* data = BarOf(bar);
    switch (message) {
        case WM_SIZE:
            return 0;
        case WM_COMMAND: {
            int id = LOWORD(wParam);
            if (data != nullptr && id >= kPopupButtonBase &&
                id < kPopupButtonBase + data->popupCount) {
                OpenPopup(bar, data, id - kPopupButtonBase);
                return 0;
            }
            // Toolbar buttons and plain menu items are commands of the window the bar serves.
            SendMessageW(GetParent(bar), WM_COMMAND, MAKEWPARAM(id, 0), 0);
            return 0;
        }
        case WM_DESTROY:
            if (data != nullptr) {
                if (data->menu != nullptr) DestroyMenu(data->menu);
                if (data->images != nullptr) ImageList_Destroy(data->images);
                delete data;
                SetWindowLongPtrW(bar, 0, 0);
            }
            return 0;
        default:
            return DefWindowProcW(bar, message, wParam, lParam);
    }
}

void RegisterClasses();

HWND CreateToolbar(HWND bar, int id) {
    HWND toolbar = CreateWindowExW(0, TOOLBARCLASSNAMEW, L"",
                                   WS_CHILD | WS_VISIBLE | TBSTYLE_FLAT | TBSTYLE_LIST |
                                       CCS_NORESIZE | CCS_NOPARENTALIGN | CCS_NODIVIDER,
                                   0, 0, kMenuBarHeight, kMenuBarHeight, bar,
                                   reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                   GetModuleHandleW(nullptr), nullptr);
    if (toolbar == nullptr) return nullptr;
    SendMessageW(toolbar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    SendMessageW(toolbar, TB_SETEXTENDEDSTYLE, 0, TBSTYLE_EX_MIXEDBUTTONS);
    SendMessageW(toolbar, TB_SETBITMAPSIZE, 0, MAKELPARAM(16, 16));
    // Narrow buttons, so that the bar fits a handheld's width.
    SendMessageW(toolbar, TB_SETPADDING, 0, MAKELPARAM(6, 6));
    return toolbar;
}

// The width the buttons of a toolbar take in one row.
int ButtonsWidth(HWND toolbar) {
    if (toolbar == nullptr) return 0;
    int count = static_cast<int>(SendMessageW(toolbar, TB_BUTTONCOUNT, 0, 0));
    RECT item{};
    if (count == 0 || !SendMessageW(toolbar, TB_GETITEMRECT, static_cast<WPARAM>(count - 1),
                                    reinterpret_cast<LPARAM>(&item))) {
        return 0;
    }
    return item.right + 2;
}

HWND CreateBar(HWND parent) {
    RegisterClasses();
    RECT client{};
    GetClientRect(parent, &client);
    HWND bar = CreateWindowExW(0, kMenuBarClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0,
                               client.bottom - kMenuBarHeight, client.right, kMenuBarHeight, parent,
                               nullptr, GetModuleHandleW(nullptr), nullptr);
    if (bar == nullptr) return nullptr;
    auto* data = new MenuBar;
    SetWindowLongPtrW(bar, 0, reinterpret_cast<LONG_PTR>(data));
    data->toolbar = CreateToolbar(bar, kToolbarId);
    if (data->toolbar == nullptr) {
        DestroyWindow(bar);
        return nullptr;
    }
    return bar;
}

void AddTextButton(MenuBar* data, int command, const wchar_t* text) {
    TBBUTTON button{};
    button.iBitmap = I_IMAGENONE;
    button.idCommand = command;
    button.fsState = TBSTATE_ENABLED;
    button.fsStyle = BTNS_BUTTON | BTNS_AUTOSIZE | BTNS_SHOWTEXT;
    button.iString = reinterpret_cast<INT_PTR>(text);
    SendMessageW(data->toolbar, TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&button));
}

// Document list ---------------------------------------------------------------------------

constexpr int kFolderComboId = 1;
constexpr int kFileListId = 2;
constexpr int kMaxDepth = 4;
constexpr size_t kMaxFiles = 4000;

struct DocList {
    HWND combo = nullptr;
    HWND list = nullptr;
    int controlId = 0;
    std::wstring root;    // documents root, with a trailing backslash
    std::wstring folder;  // "" = all folders
    std::wstring allFoldersText;
    std::wstring pattern;
    std::vector<std::wstring> folders;  // combo entries after "All Folders"
    std::vector<std::wstring> files;    // full paths, in list order
};

DocList* DocListOf(HWND window) {
    return reinterpret_cast<DocList*>(GetWindowLongPtrW(window, 0));
}

std::wstring WithSlash(std::wstring folder) {
    if (!folder.empty() && folder.back() != L'\\' && folder.back() != L'/') folder += L'\\';
    return folder;
}

bool NameLess(const std::wstring& a, const std::wstring& b) {
    return lstrcmpiW(a.c_str(), b.c_str()) < 0;
}

// Collects the files matching pattern in folder (and below it up to kMaxDepth levels when
// recursive), and the folders that hold any.
void Collect(const std::wstring& folder, const std::wstring& pattern, bool recursive, int depth,
             std::vector<std::wstring>& files, std::vector<std::wstring>* foldersWithFiles) {
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW((folder + pattern).c_str(), &found);
    bool any = false;
    if (search != INVALID_HANDLE_VALUE) {
        do {
            if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
                files.size() < kMaxFiles) {
                files.push_back(folder + found.cFileName);
                any = true;
            }
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
    if (any && foldersWithFiles != nullptr) foldersWithFiles->push_back(folder);
    if (!recursive || depth >= kMaxDepth) return;
    search = FindFirstFileW((folder + L"*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return;
    std::vector<std::wstring> subfolders;
    do {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 &&
            (found.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) == 0 && found.cFileName[0] != L'.') {
            subfolders.push_back(folder + found.cFileName + L"\\");
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::sort(subfolders.begin(), subfolders.end(), NameLess);
    for (const std::wstring& subfolder : subfolders) {
        Collect(subfolder, pattern, true, depth + 1, files, foldersWithFiles);
    }
}

std::wstring SizeText(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return L"";
    unsigned long long size =
        (static_cast<unsigned long long>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    wchar_t text[32];
    if (size < 1024) {
        wsprintfW(text, L"%u B", static_cast<unsigned>(size));
    } else if (size < 1024 * 1024) {
        wsprintfW(text, L"%u KB", static_cast<unsigned>((size + 1023) / 1024));
    } else {
        wsprintfW(text, L"%u.%u MB", static_cast<unsigned>(size / (1024 * 1024)),
                  static_cast<unsigned>(size % (1024 * 1024) * 10 / (1024 * 1024)));
    }
    return text;
}

// The name shown for a folder in the chooser: the root's own name, followed by the path below
// it for its subfolders; the full path for a folder outside the root.
std::wstring FolderLabel(const DocList& doc, const std::wstring& folder) {
    size_t rootLength = doc.root.size();
    bool inRoot = folder.size() >= rootLength &&
                  CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, folder.c_str(),
                                 static_cast<int>(rootLength), doc.root.c_str(),
                                 static_cast<int>(rootLength)) == CSTR_EQUAL;
    if (!inRoot) return folder;
    std::wstring trimmed = doc.root.substr(0, rootLength - 1);
    size_t slash = trimmed.find_last_of(L"\\/");
    std::wstring label = slash == std::wstring::npos ? trimmed : trimmed.substr(slash + 1);
    std::wstring below = folder.substr(rootLength);
    if (!below.empty()) label += L"\\" + below.substr(0, below.size() - 1);
    return label;
}

void FillFolders(HWND window, DocList& doc) {
    std::vector<std::wstring> files;
    std::vector<std::wstring> folders;
    Collect(doc.root, doc.pattern, true, 0, files, &folders);
    if (std::find(folders.begin(), folders.end(), doc.root) == folders.end()) {
        folders.insert(folders.begin(), doc.root);
    }
    if (!doc.folder.empty() &&
        std::find(folders.begin(), folders.end(), doc.folder) == folders.end()) {
        folders.push_back(doc.folder);
    }
    doc.folders = folders;
    SendMessageW(doc.combo, CB_RESETCONTENT, 0, 0);
    SendMessageW(doc.combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(doc.allFoldersText.c_str()));
    int selected = 0;
    for (size_t i = 0; i < folders.size(); ++i) {
        std::wstring label = FolderLabel(doc, folders[i]);
        SendMessageW(doc.combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(label.c_str()));
        if (!doc.folder.empty() && lstrcmpiW(folders[i].c_str(), doc.folder.c_str()) == 0) {
            selected = static_cast<int>(i) + 1;
        }
    }
    SendMessageW(doc.combo, CB_SETCURSEL, selected, 0);
}

void FillFiles(DocList& doc) {
    doc.files.clear();
    if (doc.folder.empty()) {
        Collect(doc.root, doc.pattern, true, 0, doc.files, nullptr);
    } else {
        Collect(doc.folder, doc.pattern, false, 0, doc.files, nullptr);
        std::sort(doc.files.begin(), doc.files.end(), NameLess);
    }
    SendMessageW(doc.list, WM_SETREDRAW, FALSE, 0);
    ListView_DeleteAllItems(doc.list);
    std::wstring base = doc.folder.empty() ? doc.root : doc.folder;
    for (size_t i = 0; i < doc.files.size(); ++i) {
        std::wstring name = doc.files[i].substr(base.size());
        LVITEMW item{};
        item.mask = LVIF_TEXT | LVIF_PARAM;
        item.iItem = static_cast<int>(i);
        item.pszText = name.data();
        item.lParam = static_cast<LPARAM>(i);
        int row = static_cast<int>(
            SendMessageW(doc.list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
        std::wstring size = SizeText(doc.files[i]);
        LVITEMW sub{};
        sub.iSubItem = 1;
        sub.pszText = size.data();
        SendMessageW(doc.list, LVM_SETITEMTEXTW, row, reinterpret_cast<LPARAM>(&sub));
    }
    SendMessageW(doc.list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(doc.list, nullptr, TRUE);
}

void Notify(HWND window, DocList& doc, UINT code, const std::wstring& path) {
    DocListNotify notify{};
    notify.header.hwndFrom = window;
    notify.header.idFrom = static_cast<UINT_PTR>(doc.controlId);
    notify.header.code = code;
    lstrcpynW(notify.path, path.c_str(), MAX_PATH);
    SendMessageW(GetParent(window), WM_NOTIFY, static_cast<WPARAM>(doc.controlId),
                 reinterpret_cast<LPARAM>(&notify));
}

void LayoutDocList(HWND window, DocList& doc) {
    RECT client{};
    GetClientRect(window, &client);
    RECT comboRect{};
    GetWindowRect(doc.combo, &comboRect);
    int comboHeight = comboRect.bottom - comboRect.top;
    MoveWindow(doc.combo, 2, 2, client.right - 4, 200, TRUE);
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
                FillFolders(window, *doc);
                FillFiles(*doc);
            }
            return 0;
        case WM_COMMAND:
            if (doc != nullptr && LOWORD(wParam) == kFolderComboId &&
                HIWORD(wParam) == CBN_SELCHANGE) {
                int selected = static_cast<int>(SendMessageW(doc->combo, CB_GETCURSEL, 0, 0));
                doc->folder = selected <= 0 || selected > static_cast<int>(doc->folders.size())
                                  ? std::wstring()
                                  : doc->folders[selected - 1];
                FillFiles(*doc);
                Notify(window, *doc, kDocListFolderChanged, doc->folder);
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
                if (activate->iItem >= 0 &&
                    SendMessageW(doc->list, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)) &&
                    item.lParam >= 0 && item.lParam < static_cast<LPARAM>(doc->files.size())) {
                    std::wstring path = doc->files[item.lParam];
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

void RegisterClasses() {
    static bool registered = false;
    if (registered) return;
    registered = true;
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = MenuBarProc;
    windowClass.cbWndExtra = sizeof(void*);
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = kMenuBarClass;
    RegisterClassW(&windowClass);
    windowClass.lpfnWndProc = DocListProc;
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = kDocListClass;
    RegisterClassW(&windowClass);
}

}  // namespace

void SetDeviceFrame(HWND window) {
    frame = window;
}
HWND DeviceFrame() {
    return frame;
}

RECT FrameScreenRect() {
    RECT rect{0, 0, kPortraitWidth, kPortraitHeight};
    if (frame != nullptr && IsWindow(frame)) {
        GetClientRect(frame, &rect);
        MapWindowPoints(frame, nullptr, reinterpret_cast<POINT*>(&rect), 2);
    }
    return rect;
}

bool ScreenIsPortrait() {
    RECT rect = FrameScreenRect();
    return rect.right - rect.left <= rect.bottom - rect.top;
}

void SetOrientation(bool portrait) {
    if (frame == nullptr) return;
    RECT rect{0, 0, portrait ? kPortraitWidth : kPortraitHeight,
              portrait ? kPortraitHeight : kPortraitWidth};
    AdjustWindowRectEx(&rect, static_cast<DWORD>(GetWindowLongPtrW(frame, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrW(frame, GWL_EXSTYLE)));
    SetWindowPos(frame, nullptr, 0, 0, rect.right - rect.left, rect.bottom - rect.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void FollowFrame() {
    RECT rect = FrameScreenRect();
    openDialogs.erase(std::remove_if(openDialogs.begin(), openDialogs.end(),
                                     [](const OpenDialog& open) { return !IsWindow(open.window); }),
                      openDialogs.end());
    for (const OpenDialog& open : openDialogs) {
        SetWindowPos(open.window, nullptr, rect.left, rect.top, rect.right - rect.left,
                     rect.bottom - rect.top, SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

BOOL InitDialog(HWND dialog, DWORD flags) {
    if (!IsWindow(dialog)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return FALSE;
    }
    ForgetDialog(dialog);
    openDialogs.push_back({dialog, flags});
    RECT rect = FrameScreenRect();
    // A dialog covers the whole frame; its menu bar (when it has one) lies inside it along the
    // bottom, where the device's menu bar would be.
    SetWindowPos(dialog, HWND_TOP, rect.left, rect.top, rect.right - rect.left,
                 rect.bottom - rect.top, 0);
    if ((flags & kDoneButton) != 0) CreateDoneBar(dialog);
    return TRUE;
}

void ForgetDialog(HWND dialog) {
    openDialogs.erase(
        std::remove_if(openDialogs.begin(), openDialogs.end(),
                       [dialog](const OpenDialog& open) { return open.window == dialog; }),
        openDialogs.end());
}

HWND CreateMenuBar(HWND parent, HINSTANCE module, int menuId) {
    HMENU menu = LoadMenuW(module, MAKEINTRESOURCEW(menuId));
    if (menu == nullptr) return nullptr;
    HWND bar = CreateBar(parent);
    if (bar == nullptr) {
        DestroyMenu(menu);
        return nullptr;
    }
    MenuBar* data = BarOf(bar);
    data->menu = menu;
    int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        wchar_t text[64] = {};
        MENUITEMINFOW info{};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_ID | MIIM_SUBMENU | MIIM_STRING;
        info.dwTypeData = text;
        info.cch = 63;
        GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
        // Accelerator marks are not shown on a touch screen's bar.
        std::wstring label;
        for (const wchar_t* c = text; *c != 0; ++c) {
            if (*c != L'&') label += *c;
        }
        if (info.hSubMenu != nullptr) {
            AddTextButton(data, kPopupButtonBase + i, label.c_str());
            data->popupCount = i + 1;
        } else {
            AddTextButton(data, static_cast<int>(info.wID), label.c_str());
        }
    }
    PlaceMenuBar(bar);
    return bar;
}

HWND CreateDoneBar(HWND parent) {
    HWND bar = CreateBar(parent);
    if (bar != nullptr) {
        AddTextButton(BarOf(bar), IDOK, L"OK");
        PlaceMenuBar(bar);
    }
    return bar;
}

BOOL AddToolButtons(HWND menuBar, HINSTANCE module, int bitmapId, int imageCount,
                    const ToolButton* buttons, int count) {
    MenuBar* data = menuBar != nullptr ? BarOf(menuBar) : nullptr;
    if (data == nullptr) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return FALSE;
    }
    HBITMAP bitmap = static_cast<HBITMAP>(
        LoadImageW(module, MAKEINTRESOURCEW(bitmapId), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
    if (bitmap == nullptr) return FALSE;
    if (data->tools == nullptr) data->tools = CreateToolbar(menuBar, kToolbarId + 1);
    if (data->tools == nullptr) {
        DeleteObject(bitmap);
        return FALSE;
    }
    if (data->images == nullptr) {
        data->images = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, imageCount, 1);
        SendMessageW(data->tools, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(data->images));
    }
    int first = ImageList_AddMasked(data->images, bitmap, RGB(255, 0, 0));
    DeleteObject(bitmap);
    if (first < 0) return FALSE;
    std::vector<TBBUTTON> added(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        added[i].iBitmap = first + buttons[i].image;
        added[i].idCommand = buttons[i].command;
        added[i].fsState = TBSTATE_ENABLED;
        added[i].fsStyle = BTNS_BUTTON | BTNS_AUTOSIZE;
        added[i].iString = -1;
    }
    BOOL addedAll = SendMessageW(data->tools, TB_ADDBUTTONSW, static_cast<WPARAM>(count),
                                 reinterpret_cast<LPARAM>(added.data())) != 0;
    PlaceMenuBar(menuBar);
    return addedAll;
}

int MenuBarHeight(HWND menuBar) {
    if (menuBar == nullptr) return 0;
    RECT rect{};
    GetWindowRect(menuBar, &rect);
    return rect.bottom - rect.top;
}

HMENU MenuBarMenu(HWND menuBar) {
    MenuBar* data = menuBar != nullptr ? BarOf(menuBar) : nullptr;
    return data != nullptr ? data->menu : nullptr;
}

void PlaceMenuBar(HWND menuBar) {
    MenuBar* data = menuBar != nullptr ? BarOf(menuBar) : nullptr;
    if (data == nullptr) return;
    RECT client{};
    GetClientRect(GetParent(menuBar), &client);
    // The image buttons go beside the menu buttons when both fit in the width, else on a row
    // of their own below them (the game window's bar on a handheld's screen).
    int menusWidth = ButtonsWidth(data->toolbar);
    int toolsWidth = ButtonsWidth(data->tools);
    bool oneRow = data->tools == nullptr || menusWidth + toolsWidth <= client.right;
    int height = oneRow ? kMenuBarHeight : 2 * kMenuBarHeight;
    SetWindowPos(menuBar, HWND_TOP, 0, client.bottom - height, client.right, height, 0);
    MoveWindow(data->toolbar, 0, 0, oneRow ? menusWidth : client.right, kMenuBarHeight, TRUE);
    if (data->tools != nullptr) {
        if (oneRow) {
            MoveWindow(data->tools, menusWidth, 0, client.right - menusWidth, kMenuBarHeight, TRUE);
        } else {
            MoveWindow(data->tools, 0, kMenuBarHeight, client.right, kMenuBarHeight, TRUE);
        }
    }
}

HWND FindMenuBar(HWND parent) {
    return FindWindowExW(parent, nullptr, kMenuBarClass, nullptr);
}

void HideInputPanel() {}

void ShellStartup() {
    InitCommonControls();
}

// Does nothing on the desktop: the navigation bar's place is the frame's caption, which is the
// main window's own text, and a second copy finds the running one by that text.
void SetNavigationTitle(HWND, const wchar_t*) {}

void MakeFullScreen(HWND window, DWORD) {
    RECT rect = FrameScreenRect();
    SetWindowPos(window, nullptr, rect.left, rect.top, rect.right - rect.left,
                 rect.bottom - rect.top, SWP_NOZORDER);
}

HWND CreateDocList(const DocListCreate& create) {
    RegisterClasses();
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
    doc->pattern = create.filterPattern != nullptr ? create.filterPattern : L"*.*";
    wchar_t current[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, current);
    doc->root = WithSlash(current);
    if (create.folder != nullptr && create.folder[0] != 0) {
        DWORD attributes = GetFileAttributesW(create.folder);
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY)) {
            doc->folder = WithSlash(create.folder);
        }
    }
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

}  // namespace velmora::pocketpc
