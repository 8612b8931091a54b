// The menu bar: a window holding a toolbar of menu buttons and one of image buttons.
#include "ui/MenuBar.h"

#include <commctrl.h>

#include <string>
#include <vector>

namespace velmora::pocketpc {
namespace {

constexpr wchar_t kMenuBarClass[] = L"VelmoraMenuBar";
constexpr int kMenuBarHeight = 26;
constexpr int kToolbarId = 1;
// Buttons that open a top-level popup carry these commands; they never reach the parent.
constexpr int kPopupButtonBase = 0xE000;

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

void RegisterMenuBarClass() {
    static bool registered = false;
    if (registered) return;
    registered = true;
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = MenuBarProc;
    windowClass.cbWndExtra = sizeof(MenuBar*);
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = kMenuBarClass;
    RegisterClassW(&windowClass);
}

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
    RegisterMenuBarClass();
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

}  // namespace

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

bool AddToolButtons(HWND menuBar, const ToolImages& images, std::span<const ToolButton> buttons) {
    MenuBar* data = menuBar != nullptr ? BarOf(menuBar) : nullptr;
    if (data == nullptr) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return false;
    }
    HBITMAP bitmap = static_cast<HBITMAP>(LoadImageW(
        images.module, MAKEINTRESOURCEW(images.bitmapId), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
    if (bitmap == nullptr) return false;
    if (data->tools == nullptr) data->tools = CreateToolbar(menuBar, kToolbarId + 1);
    if (data->tools == nullptr) {
        DeleteObject(bitmap);
        return false;
    }
    if (data->images == nullptr) {
        data->images = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, images.count, 1);
        SendMessageW(data->tools, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(data->images));
    }
    int first = ImageList_AddMasked(data->images, bitmap, RGB(255, 0, 0));
    DeleteObject(bitmap);
    if (first < 0) return false;
    std::vector<TBBUTTON> added(buttons.size());
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        added[i].iBitmap = first + buttons[i].image;
        added[i].idCommand = buttons[i].command;
        added[i].fsState = TBSTATE_ENABLED;
        added[i].fsStyle = BTNS_BUTTON | BTNS_AUTOSIZE;
        added[i].iString = -1;
    }
    bool addedAll = SendMessageW(data->tools, TB_ADDBUTTONSW, static_cast<WPARAM>(added.size()),
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

}  // namespace velmora::pocketpc
