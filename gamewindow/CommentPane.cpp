// The comment pane: a window of class "COMMENT" holding a read-only multi-line edit box.
#include "gamewindow/CommentPane.h"

#include <string>

#include "ui/Application.h"
#include "ui/DrawingResources.h"

namespace velmora {
namespace {

constexpr int kEditId = 1;

LRESULT CALLBACK CommentProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND edit = GetDlgItem(window, kEditId);
    switch (message) {
        case WM_CREATE: {
            RECT client{};
            GetClientRect(window, &client);
            edit = CreateWindowExW(
                0, L"EDIT", L"",
                WS_CHILD | WS_VISIBLE | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL, 0,
                0, client.right, client.bottom, window, reinterpret_cast<HMENU>(kEditId),
                reinterpret_cast<CREATESTRUCTW*>(lParam)->hInstance, nullptr);
            if (edit == nullptr) return -1;
            if (App().drawing != nullptr) {
                SendMessageW(edit, WM_SETFONT,
                             reinterpret_cast<WPARAM>(App().drawing->notationFont), TRUE);
            }
            return 0;
        }
        case WM_SIZE:
            if (edit != nullptr) MoveWindow(edit, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
            return 0;
        case WM_SETTEXT:
            return edit != nullptr ? SendMessageW(edit, WM_SETTEXT, wParam, lParam) : FALSE;
        case WM_GETTEXT:
            return edit != nullptr ? SendMessageW(edit, WM_GETTEXT, wParam, lParam) : 0;
        case WM_GETTEXTLENGTH:
            return edit != nullptr ? SendMessageW(edit, WM_GETTEXTLENGTH, wParam, lParam) : 0;
        case WM_CTLCOLORSTATIC:
            // A read-only edit box would be grey; the pane reads like paper.
            SetBkColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_WINDOW));
            return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

}  // namespace

bool RegisterCommentClass(HINSTANCE instance) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = CommentProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = kCommentClass;
    return RegisterClassW(&windowClass) != 0;
}

void UnregisterCommentClass(HINSTANCE instance) {
    UnregisterClassW(kCommentClass, instance);
}

void SetCommentText(HWND pane, const wchar_t* text) {
    std::wstring shown;
    for (const wchar_t* c = text != nullptr ? text : L""; *c != 0; ++c) {
        if (*c == L'\n' && (shown.empty() || shown.back() != L'\r')) shown += L'\r';
        shown += *c;
    }
    SetWindowTextW(pane, shown.c_str());
}

}  // namespace velmora
