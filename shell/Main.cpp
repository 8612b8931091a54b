// The program's entry point: start-up in its fixed order, the message loop, and shut-down.
#include <windows.h>

#include <commctrl.h>

#include <memory>

#include "engine/host/EngineHost.h"
#include "game/TagDictionary.h"
#include "game/UserMessages.h"
#include "gamewindow/ClockWindow.h"
#include "gamewindow/CommentPane.h"
#include "models/Settings.h"
#include "platform/Paths.h"
#include "platform/SettingsStore.h"
#include "resources/resource.h"
#include "shell/MainWindow.h"
#include "ui/Application.h"
#include "ui/DeviceFrame.h"
#include "ui/DrawingResources.h"
#include "ui/MessageBoxes.h"

namespace velmora {
namespace {

constexpr LANGID kFrench = 0x040C;

// Brings the running copy to the front, with the dialog it shows when it has one open.
void BringToFront(HWND running) {
    if (IsIconic(running)) ShowWindow(running, SW_RESTORE);
    HWND popup = GetLastActivePopup(running);
    SetForegroundWindow(popup != nullptr ? popup : running);
}

int Run(HINSTANCE instance, const wchar_t* commandLine) {
    Application& app = App();
    INITCOMMONCONTROLSEX controls{sizeof(controls),
                                  ICC_LISTVIEW_CLASSES | ICC_DATE_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
    pocketpc::ShellStartup();

    app.programInstance = instance;
    app.resourceInstance = instance;
    // The texts built into the program follow the system language even when the language
    // module is missing; the resources then stay English.
    app.french = GetSystemDefaultLangID() == kFrench;
    if (app.french) {
        if (HMODULE french = LoadLibraryW(L"Velmora20FR.dll"); french != nullptr) {
            app.resourceInstance = french;
        }
    }
    static MessageBoxMessages messageBoxes;
    SetUserMessages(&messageBoxes);

    auto settings = std::make_unique<Settings>();
    app.settings = settings.get();
    settings->associationQuestion = [] {
        return MessageFromStrings(IDS_ASK_DEFAULT_VIEWER, IDS_CAPTION, MB_YESNO | MB_ICONQUESTION);
    };
    settings->Load(platform::SystemSettingsStore());
    GlobalTagDictionary().Load();

    if (HWND running = FindWindowW(MainWindow::kClassName, MainWindow::kTitle);
        running != nullptr) {
        BringToFront(running);
        app.settings = nullptr;
        return 0;
    }

    auto drawing = std::make_unique<DrawingResources>(*settings);
    app.drawing = drawing.get();
    RegisterCommentClass(instance);
    RegisterClockClass(instance);
    MainWindow::RegisterWindowClass(instance);
    // The engine folders are listed once; an engine loaded later stays until the end.
    auto engineHost = std::make_unique<EngineHost>(platform::ProgramFolder());
    app.engineHost = engineHost.get();
    auto mainWindow = std::make_unique<MainWindow>();

    bool looped = false;
    HWND window = mainWindow->Create(instance);
    app.mainWindow = window;
    if (window == nullptr) {
        MessageFromStrings(IDS_CANNOT_CREATE_MAIN_WINDOW, IDS_CAPTION, MB_ICONERROR);
    } else {
        ShowWindow(window, SW_SHOW);
        UpdateWindow(window);
        SetForegroundWindow(window);
        HACCEL accelerators = LoadAcceleratorsW(instance, MAKEINTRESOURCEW(IDA_MAIN));
        if (commandLine != nullptr && commandLine[0] != 0) mainWindow->OpenFile(commandLine);
        looped = true;
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            if (!TranslateAcceleratorW(message.hwnd, accelerators, &message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
    }

    if (looped) settings->SetOpenIn(Utf16(mainWindow->CurrentFolder().c_str()));
    settings->Save(platform::SystemSettingsStore());
    GlobalTagDictionary().Free();
    UnregisterCommentClass(instance);
    UnregisterClockClass(instance);
    app.engineHost = nullptr;
    engineHost.reset();
    app.mainWindow = nullptr;
    mainWindow.reset();
    app.drawing = nullptr;
    drawing.reset();
    app.settings = nullptr;
    settings.reset();
    SetUserMessages(nullptr);
    return 0;
}

// The command line without the program's own name, and without the quotes a shell puts
// around a path with blanks.
std::wstring FileArgument() {
    const wchar_t* line = GetCommandLineW();
    bool quoted = false;
    while (*line != 0 && (quoted || (*line != L' ' && *line != L'\t'))) {
        if (*line == L'"') quoted = !quoted;
        ++line;
    }
    while (*line == L' ' || *line == L'\t')
        ++line;
    std::wstring argument = line;
    while (!argument.empty() && (argument.back() == L' ' || argument.back() == L'\t')) {
        argument.pop_back();
    }
    if (argument.size() >= 2 && argument.front() == L'"' && argument.back() == L'"') {
        argument = argument.substr(1, argument.size() - 2);
    }
    return argument;
}

}  // namespace
}  // namespace velmora

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
    std::wstring argument = velmora::FileArgument();
    return velmora::Run(instance, argument.c_str());
}
