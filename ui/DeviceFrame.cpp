// The device frame and the full-screen dialogs that follow it when it moves or turns.
#include "ui/DeviceFrame.h"

#include <commctrl.h>

#include <algorithm>
#include <vector>

#include "ui/MenuBar.h"

namespace velmora::pocketpc {
namespace {

HWND frame = nullptr;

struct OpenDialog {
    HWND window;
    DWORD flags;
};
std::vector<OpenDialog> openDialogs;

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

bool InitDialog(HWND dialog, DWORD flags) {
    if (!IsWindow(dialog)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return false;
    }
    ForgetDialog(dialog);
    openDialogs.push_back({dialog, flags});
    RECT rect = FrameScreenRect();
    // A dialog covers the whole frame; its menu bar (when it has one) lies inside it along the
    // bottom, where the device's menu bar would be.
    SetWindowPos(dialog, HWND_TOP, rect.left, rect.top, rect.right - rect.left,
                 rect.bottom - rect.top, 0);
    if ((flags & kDoneButton) != 0) CreateDoneBar(dialog);
    return true;
}

void ForgetDialog(HWND dialog) {
    openDialogs.erase(
        std::remove_if(openDialogs.begin(), openDialogs.end(),
                       [dialog](const OpenDialog& open) { return open.window == dialog; }),
        openDialogs.end());
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

}  // namespace velmora::pocketpc
