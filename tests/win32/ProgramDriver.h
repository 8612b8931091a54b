// ProgramDriver: starts Velmora20.exe as a separate process in a folder of its own and drives
// it as a person would. Every process started is killed at the end of a test.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "win32/Screenshot.h"

namespace velmora::e2e {

constexpr wchar_t kMain[] = L"Velmora20";  // the main window's class and title
constexpr wchar_t kDialogClass[] = L"#32770";
constexpr wchar_t kCaption[] = L"Velmora 2.0";
constexpr wchar_t kQuestion[] =
    L"Velmora is currently not the default PGN viewer ; do you want to register it as the "
    L"default PGN viewer ?";
constexpr int kDocListId = 100;
constexpr int kResultBox = 1001;
constexpr LANGID kFrench = 0x040C;

constexpr DWORD kStepMs = 100;
constexpr DWORD kWindowWaitMs = 20000;
constexpr DWORD kExitWaitMs = 15000;

// Turns a "Z:/..." path from the build into a Windows path.
inline std::wstring WindowsPath(const char* path) {
    std::wstring wide(path, path + std::strlen(path));
    std::replace(wide.begin(), wide.end(), L'/', L'\\');
    return wide;
}

inline std::wstring WindowText(HWND window) {
    wchar_t text[1024] = {};
    GetWindowTextW(window, text, 1024);
    return text;
}

inline DWORD ProcessOf(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process;
}

// Dispatches what this thread's windows have queued, then waits one polling step.
inline void Step() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    Sleep(kStepMs);
}

// Top-level windows of the given class, of one process or (processId 0) of any.
inline std::vector<HWND> TopLevelWindows(const wchar_t* className, DWORD processId) {
    std::vector<HWND> found;
    for (HWND window = FindWindowExW(nullptr, nullptr, className, nullptr); window != nullptr;
         window = FindWindowExW(nullptr, window, className, nullptr)) {
        if (processId == 0 || ProcessOf(window) == processId) found.push_back(window);
    }
    return found;
}

inline HWND VisibleWindow(const wchar_t* className, DWORD processId,
                          const std::function<bool(HWND)>& accept) {
    for (HWND window : TopLevelWindows(className, processId)) {
        if (IsWindowVisible(window) && accept(window)) return window;
    }
    return nullptr;
}

// The window of the given class and title, or the dialog holding a control of the given id.
inline HWND WindowTitled(const wchar_t* className, const wchar_t* title, DWORD processId) {
    return VisibleWindow(className, processId,
                         [&](HWND window) { return WindowText(window) == title; });
}
inline HWND DialogWithControl(DWORD processId, int id) {
    return VisibleWindow(kDialogClass, processId,
                         [&](HWND window) { return GetDlgItem(window, id) != nullptr; });
}
inline HWND MainWindowOf(DWORD processId) {
    return WindowTitled(kMain, kMain, processId);
}
inline HWND QuestionBoxOf(DWORD processId) {
    return WindowTitled(kDialogClass, kCaption, processId);
}
inline HWND GameListOf(DWORD processId) {
    return DialogWithControl(processId, kResultBox);
}

// The text of a message box: its "Static" child with the longest text (the icon has none).
inline std::wstring MessageText(HWND box) {
    std::wstring longest;
    for (HWND child = FindWindowExW(box, nullptr, L"Static", nullptr); child != nullptr;
         child = FindWindowExW(box, child, L"Static", nullptr)) {
        std::wstring text = WindowText(child);
        if (text.size() > longest.size()) longest = text;
    }
    return longest;
}

// Whether this process can open windows: under Wine without an X display it cannot.
inline bool CanCreateWindows() {
    if (GetSystemMetrics(SM_CXSCREEN) == 0) return false;  // no display: do not try a window
    HWND probe = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 4, 4, nullptr, nullptr,
                                 GetModuleHandleW(nullptr), nullptr);
    if (probe == nullptr) return false;
    DestroyWindow(probe);
    return true;
}

// Makes window the foreground window and waits until it has stayed there for a second: under
// Wine the program's own activation at start-up can arrive late and take the front back.
inline bool HoldInFront(HWND window) {
    int held = 0;
    for (int tries = 0; tries < 50 && held < 10; ++tries) {
        if (GetForegroundWindow() == window) {
            ++held;
        } else {
            held = 0;
            SetForegroundWindow(window);
        }
        Step();
    }
    return held >= 10;
}

struct Started {
    HANDLE handle = nullptr;
    DWORD id = 0;
};

class EndToEnd : public testing::Test {
  protected:
    void SetUp() override {
        if (!CanCreateWindows()) {
            GTEST_SKIP() << "no display: set DISPLAY to an X server (Xvfb) to start the program";
        }
        for (HWND window : TopLevelWindows(kMain, 0)) {
            // The program would hand over to it instead of opening its own.
            if (ProcessOf(window) == GetCurrentProcessId()) {
                FAIL() << "a test of this program left a main window open";
            }
            KillProcessOf(window);  // left by an earlier run that was stopped
        }
        // A folder of its own as the program's working folder: the document list's root.
        wchar_t temp[MAX_PATH] = {};
        GetTempPathW(MAX_PATH, temp);
        folder_ = std::wstring(temp) + L"velmora-e2e-" + std::to_wstring(GetCurrentProcessId());
        CreateDirectoryW(folder_.c_str(), nullptr);
        pgnPath_ = folder_ + L"\\three-games.pgn";
        const std::wstring source = WindowsPath(VELMORA_TEST_DATA_DIR "/three-games.pgn");
        ASSERT_TRUE(CopyFileW(source.c_str(), pgnPath_.c_str(), FALSE))
            << "cannot copy the PGN file";
        // Each start opens the document list on all folders.
        RegDeleteKeyValueW(HKEY_CURRENT_USER, L"Software\\Trelvik\\Velmora", L"Open in");
    }

    void TearDown() override {
        for (HANDLE process : started_) {
            TerminateProcess(process, 1);  // fails, harmlessly, when it has ended
            WaitForSingleObject(process, 5000);
            CloseHandle(process);
        }
        started_.clear();
        if (!pgnPath_.empty()) DeleteFileW(pgnPath_.c_str());
        if (!folder_.empty()) RemoveDirectoryW(folder_.c_str());
    }

    static void KillProcessOf(HWND window) {
        HANDLE process = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, ProcessOf(window));
        if (process == nullptr) return;
        TerminateProcess(process, 1);
        WaitForSingleObject(process, 5000);
        CloseHandle(process);
    }

    // Starts the program in the test folder with the given command-line arguments.
    Started Start(const std::wstring& arguments = L"") {
        const std::wstring program = WindowsPath(VELMORA_PROGRAM);
        std::wstring commandLine = L"\"" + program + L"\"";
        if (!arguments.empty()) commandLine += L" " + arguments;
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        PROCESS_INFORMATION info{};
        if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0,
                            nullptr, folder_.c_str(), &startup, &info)) {
            ADD_FAILURE() << "cannot start the program, error " << GetLastError();
            return {};
        }
        CloseHandle(info.hThread);
        started_.push_back(info.hProcess);
        return {info.hProcess, info.dwProcessId};
    }

    // Polls find until it returns a window, the time is up or the process has ended.
    static HWND WaitFor(const Started& process, const std::function<HWND()>& find) {
        for (DWORD waited = 0; waited < kWindowWaitMs; waited += kStepMs) {
            if (HWND window = find(); window != nullptr) return window;
            if (WaitForSingleObject(process.handle, 0) != WAIT_TIMEOUT) return find();
            Step();
        }
        return find();
    }

    // Waits for the main window. With answerNo, a question box shown meanwhile is answered No,
    // so that the wait goes on.
    static HWND WaitForMainWindow(const Started& process, bool answerNo) {
        return WaitFor(process, [&] {
            if (HWND box = QuestionBoxOf(process.id); answerNo && box != nullptr) {
                PostMessageW(box, WM_COMMAND, IDNO, 0);
            }
            return MainWindowOf(process.id);
        });
    }

    // Waits for the process to end; its exit code, or STILL_ACTIVE when it did not end.
    static DWORD ExitCode(const Started& process, DWORD timeoutMs = kExitWaitMs) {
        DWORD code = STILL_ACTIVE;
        if (process.handle != nullptr && WaitForSingleObject(process.handle, timeoutMs) == 0) {
            GetExitCodeProcess(process.handle, &code);
        }
        return code;
    }

    // Closes the main window as the title bar's close box does; the program must end with 0.
    static void Close(const Started& process, HWND main) {
        PostMessageW(main, WM_CLOSE, 0, 0);
        EXPECT_EQ(ExitCode(process), 0u) << "the program did not end with 0 after WM_CLOSE";
    }

    // Lets a window of the program finish painting, then saves a screenshot of it.
    static void Photograph(HWND window, const wchar_t* name) {
        RedrawWindow(window, nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
        DWORD_PTR ignored = 0;
        SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, &ignored);
        for (int i = 0; i < 4; ++i)
            Step();
        EXPECT_TRUE(test::SaveWindowShot(window, name)) << "screenshot " << name;
    }

    std::wstring folder_;
    std::wstring pgnPath_;
    std::vector<HANDLE> started_;
};

}  // namespace velmora::e2e
