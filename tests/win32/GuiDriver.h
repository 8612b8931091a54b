// GuiDriver: runs the program's windows in the test process under a handheld-sized frame and
// drives them with the messages a tap or a command sends.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "gamewindow/BoardView.h"
#include "gamewindow/ClockWindow.h"
#include "gamewindow/CommentPane.h"
#include "models/BoardGeometry.h"
#include "models/Settings.h"
#include "shell/MainWindow.h"
#include "ui/Application.h"
#include "ui/DeviceFrame.h"
#include "ui/DrawingResources.h"
#include "win32/ProgramDriver.h"
#include "win32/Screenshot.h"

namespace velmora::gui {

using e2e::MessageText;
using e2e::WindowText;

inline std::wstring DataPath(const wchar_t* name) {
    std::string folder = VELMORA_TEST_DATA_DIR;
    return std::wstring(folder.begin(), folder.end()) + L"/" + name;
}

// Runs each action, in order, once the frame's last active popup is visible and its accept
// says it is the window the action waits for (a dialog, a message box over it, ...).
struct PopupAction {
    std::function<bool(HWND)> accept;
    std::function<void(HWND)> action;
};
inline std::vector<PopupAction> popupActions;
inline void CALLBACK FirePopupAction(HWND, UINT, UINT_PTR id, DWORD) {
    HWND frame = pocketpc::DeviceFrame();
    HWND popup = frame != nullptr ? GetLastActivePopup(frame) : nullptr;
    if (popupActions.empty()) {
        KillTimer(nullptr, id);
        return;
    }
    if (popup == nullptr || popup == frame || !IsWindowVisible(popup)) return;
    if (!popupActions.front().accept(popup)) return;
    PopupAction next = std::move(popupActions.front());
    popupActions.erase(popupActions.begin());
    if (popupActions.empty()) KillTimer(nullptr, id);
    next.action(popup);
}
inline void WhenPopup(std::function<bool(HWND)> accept, std::function<void(HWND)> action) {
    popupActions.push_back({std::move(accept), std::move(action)});
    if (popupActions.size() == 1) SetTimer(nullptr, 0, 50, FirePopupAction);
}
// Runs action from inside the next modal loop, once its window shows.
inline void WhenModal(std::function<void()> action) {
    WhenPopup([](HWND) { return true; }, [action = std::move(action)](HWND) { action(); });
}
// Accepts the window whose title is caption.
inline std::function<bool(HWND)> Titled(std::wstring caption) {
    return [caption](HWND window) {
        wchar_t text[256] = {};
        GetWindowTextW(window, text, 256);
        return caption == text;
    };
}

// Accepts the window that holds a control of the given id.
inline std::function<bool(HWND)> HasControl(int id) {
    return [id](HWND window) { return GetDlgItem(window, id) != nullptr; };
}

inline void Pump() {
    MSG message;
    for (int i = 0; i < 20; ++i) {
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        Sleep(5);
    }
}

// Pumps messages until done() or about the given number of seconds have passed.
inline bool PumpUntil(const std::function<bool()>& done, int seconds = 3) {
    for (int i = 0; i < 10 * seconds && !done(); ++i)
        Pump();
    return done();
}

// Presses a button of the dialog as a tap would.
inline void PressButton(HWND dialog, int id) {
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
}

// Taps two squares of the game window's board ("e2", "e4"), as a finger does.
inline void MoveByTaps(BoardView& view, const char* from, const char* to) {
    for (const char* square : {from, to}) {
        const Point at = SquareCentre(view.Board().Placement(), square[0] - 'a', square[1] - '1');
        SendMessageW(view.Window(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(at.x, at.y));
        SendMessageW(view.Window(), WM_LBUTTONUP, 0, MAKELPARAM(at.x, at.y));
    }
}

// Shows the window (a modal dialog becomes visible only once its loop is idle) and paints it.
inline void Repaint(HWND window) {
    if (!IsWindowVisible(window)) ShowWindow(window, SW_SHOW);
    RedrawWindow(window, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    Pump();
}

inline std::vector<std::wstring> ListViewColumn(HWND list, int column) {
    std::vector<std::wstring> texts;
    int count = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row) {
        wchar_t text[256] = {};
        LVITEMW item{};
        item.iSubItem = column;
        item.pszText = text;
        item.cchTextMax = 256;
        SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&item));
        texts.push_back(text);
    }
    return texts;
}

inline std::vector<std::wstring> ListBoxRows(HWND list) {
    std::vector<std::wstring> rows;
    int count = static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0));
    for (int row = 0; row < count; ++row) {
        wchar_t text[256] = {};
        SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text));
        rows.push_back(text);
    }
    return rows;
}

// Selects a row of the notation list as a tap does.
inline void TapNotationRow(HWND window, HWND notation, int row) {
    SendMessageW(notation, LB_SETCURSEL, static_cast<WPARAM>(row), 0);
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(2000, LBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(notation));
}

inline std::wstring SelectedRow(HWND list) {
    const LRESULT row = SendMessageW(list, LB_GETCURSEL, 0, 0);
    return row >= 0 ? ListBoxRows(list).at(row) : L"<none>";
}

// Sends the game list dialog what a tap on a column header (row -1) or on a row sends.
inline void TapGameList(HWND dialog, HWND list, int row, int column = 0) {
    NMITEMACTIVATE notify{};
    notify.hdr.hwndFrom = list;
    notify.hdr.idFrom = 1000;
    notify.hdr.code = row < 0 ? LVN_COLUMNCLICK : LVN_ITEMACTIVATE;
    notify.iItem = row;
    notify.iSubItem = column;
    SendMessageW(dialog, WM_NOTIFY, 1000, reinterpret_cast<LPARAM>(&notify));
}

// Photographs a dialog as it is, then turned to landscape, and turns it back.
inline void PhotographBothWays(HWND dialog, const std::wstring& name) {
    Repaint(dialog);
    EXPECT_TRUE(test::SaveWindowShot(dialog, (name + L"-portrait").c_str()));
    pocketpc::SetOrientation(false);
    Repaint(dialog);
    EXPECT_TRUE(test::SaveWindowShot(dialog, (name + L"-landscape").c_str()));
    pocketpc::SetOrientation(true);
    Repaint(dialog);
}

// The main window shown over folder, the current folder while this object lives.
class MainWindowIn {
  public:
    explicit MainWindowIn(const std::wstring& folder) {
        GetCurrentDirectoryW(MAX_PATH, previous_);
        SetCurrentDirectoryW(folder.c_str());
        window = main.Create(App().programInstance);
        if (window == nullptr) return;
        App().mainWindow = window;
        UpdateWindow(window);
        Pump();
    }
    ~MainWindowIn() {
        if (window != nullptr) DestroyWindow(window);
        Pump();
        SetCurrentDirectoryW(previous_);
    }
    MainWindowIn(const MainWindowIn&) = delete;
    MainWindowIn& operator=(const MainWindowIn&) = delete;

    MainWindow main;
    HWND window = nullptr;

  private:
    wchar_t previous_[MAX_PATH] = {};
};

inline LRESULT CALLBACK FrameProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SIZE || message == WM_MOVE) pocketpc::FollowFrame();
    return DefWindowProcW(window, message, wParam, lParam);
}

class GuiTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        Application& app = App();
        app.programInstance = GetModuleHandleW(nullptr);
        app.resourceInstance = app.programInstance;
        settings = new Settings;
        app.settings = settings;
        drawing = new DrawingResources(*settings);
        app.drawing = drawing;
        RegisterCommentClass(app.programInstance);
        RegisterClockClass(app.programInstance);
        WNDCLASSW frameClass{};
        frameClass.lpfnWndProc = FrameProc;
        frameClass.hInstance = app.programInstance;
        frameClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
        frameClass.lpszClassName = L"VelmoraTestFrame";
        RegisterClassW(&frameClass);
        MainWindow::RegisterWindowClass(app.programInstance);
    }
    static void TearDownTestSuite() {
        App().drawing = nullptr;
        delete drawing;
        App().settings = nullptr;
        delete settings;
    }

    void SetUp() override {
        // A frame the size of a handheld's screen, as the main window would be.
        DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_VISIBLE;
        RECT rect{0, 0, 240, 320};
        AdjustWindowRectEx(&rect, style, FALSE, 0);
        frame = CreateWindowExW(0, L"VelmoraTestFrame", L"Velmora test", style, 0, 0,
                                rect.right - rect.left, rect.bottom - rect.top, nullptr, nullptr,
                                App().programInstance, nullptr);
        if (frame == nullptr) GTEST_SKIP() << "no display: windows cannot be created";
        pocketpc::SetDeviceFrame(frame);
        App().mainWindow = frame;
    }
    void TearDown() override {
        if (frame != nullptr) DestroyWindow(frame);
        pocketpc::SetDeviceFrame(nullptr);
        Pump();
    }

    static inline Settings* settings = nullptr;
    static inline DrawingResources* drawing = nullptr;
    HWND frame = nullptr;
};

}  // namespace velmora::gui
