// Times the game list of a large PGN file and the stop button of a search over it, in the
// program's real dialogs under Win32 (Wine on Linux): how long the list takes to be shown, to
// be sorted by a tap on a header, and how soon a search answers its stop button.
//
// Usage: velmora-bench-game-list FILE.pgn
#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <string>

#include "game/GameIndex.h"
#include "models/Settings.h"
#include "platform/win32/WideText.h"
#include "resources/resource.h"
#include "shell/GameListDialog.h"
#include "shell/SearchDialog.h"
#include "ui/Application.h"
#include "ui/DeviceFrame.h"
#include "ui/DrawingResources.h"

namespace velmora {
namespace {

double Now() {
    LARGE_INTEGER count, frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

HWND frame = nullptr;

HWND ActivePopup() {
    HWND popup = GetLastActivePopup(frame);
    return popup != frame && IsWindowVisible(popup) ? popup : nullptr;
}

// ---- The game list

GameListDialog* listDialog = nullptr;
double listStart = 0;
double listShown = 0;
struct SortTiming {
    int column;
    const char* what;
    double seconds;
};
SortTiming sorts[] = {{0, "White", 0},
                      {0, "White again (descending)", 0},
                      {5, "Round (numbers)", 0},
                      {2, "Result", 0},
                      {6, "Date", 0}};

void TapHeader(int column) {
    NMLISTVIEW notify{};
    notify.hdr.hwndFrom = listDialog->List();
    notify.hdr.idFrom = IDC_GAME_LIST;
    notify.hdr.code = LVN_COLUMNCLICK;
    notify.iItem = -1;
    notify.iSubItem = column;
    SendMessageW(listDialog->Window(), WM_NOTIFY, IDC_GAME_LIST, reinterpret_cast<LPARAM>(&notify));
}

// Once the list is on the screen: paints it, then sorts it by a tap on each header in turn,
// repainting after each, and closes it.
void CALLBACK OnListTimer(HWND, UINT, UINT_PTR id, DWORD) {
    if (ActivePopup() == nullptr || listDialog->Window() == nullptr) return;
    KillTimer(nullptr, id);
    UpdateWindow(listDialog->List());
    listShown = Now() - listStart;
    for (SortTiming& sort : sorts) {
        const double start = Now();
        TapHeader(sort.column);
        UpdateWindow(listDialog->List());
        sort.seconds = Now() - start;
    }
    SendMessageW(listDialog->Window(), WM_COMMAND, IDOK, 0);
}

// ---- The search and its stop button

SearchDialog* searchDialog = nullptr;
HHOOK hook = nullptr;
// Two searches: the first runs to its end, the second is stopped at 40% of that time.
int phase = 0;
double searchStarted = 0;
double searchEnded = 0;  // the results or "No game found" appear
double fullSearch = 0;
double stopPressed = 0;
double stopAnswered = 0;
enum class Step { kOpenMaterial, kSetMaterial, kSearch, kClose, kDone } step = Step::kOpenMaterial;

// Notes when the first dialog or message box appears after a search began: the search has
// ended and shows what it found.
LRESULT CALLBACK WatchCreation(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_CREATEWND && searchStarted > 0 && searchEnded == 0) {
        auto* create = reinterpret_cast<CBT_CREATEWNDW*>(lParam);
        if (create->lpcs->lpszClass == MAKEINTRESOURCEW(32770)) searchEnded = Now();
    }
    return CallNextHookEx(hook, code, wParam, lParam);
}

// Presses the stop button from another thread after a delay, as a person would: the press
// waits in the window's queue until the search looks at it.
DWORD WINAPI PressStopLater(void* delay) {
    Sleep(static_cast<DWORD>(reinterpret_cast<UINT_PTR>(delay)));
    stopPressed = Now();
    PostMessageW(GetDlgItem(searchDialog->Window(), IDC_SEARCH_RUN), BM_CLICK, 0, 0);
    return 0;
}

// Drives the search dialog as a person would: a material balance (king and rook against king),
// Search, and in the second search the stop button; closes what each search shows.
void CALLBACK OnSearchTimer(HWND, UINT, UINT_PTR id, DWORD) {
    HWND popup = ActivePopup();
    if (popup == nullptr) return;
    switch (step) {
        case Step::kOpenMaterial:
            step = Step::kSetMaterial;
            PostMessageW(popup, WM_COMMAND, IDC_EDIT_MATERIAL, 0);
            break;
        case Step::kSetMaterial:
            if (GetDlgItem(popup, IDC_WANTED_FIRST) == nullptr) return;
            // King and rook against king: no game can be ruled out before its end, so every
            // game is replayed whole, the slowest search there is.
            for (int box = 0; box < 10; ++box)
                SetDlgItemInt(popup, IDC_WANTED_FIRST + box, box == 1 ? 1 : 0, FALSE);
            step = Step::kSearch;
            PostMessageW(popup, WM_COMMAND, IDOK, 0);
            break;
        case Step::kSearch:
            if (popup != searchDialog->Window()) return;
            step = Step::kClose;
            searchStarted = Now();
            searchEnded = 0;
            if (phase == 1) {
                const auto delay = static_cast<UINT_PTR>(fullSearch * 400);
                CloseHandle(CreateThread(nullptr, 0, PressStopLater, reinterpret_cast<void*>(delay),
                                         0, nullptr));
            }
            PostMessageW(popup, WM_COMMAND, IDC_SEARCH_RUN, 0);
            break;
        case Step::kClose:
            // The results or a "No game found" box, then back to the search dialog.
            if (searchDialog->Running() || searchEnded == 0) return;
            if (popup != searchDialog->Window()) {
                PostMessageW(popup, WM_COMMAND, IDOK, 0);
                return;
            }
            if (phase == 0) {
                fullSearch = searchEnded - searchStarted;
                phase = 1;
                step = Step::kSearch;
            } else {
                if (stopPressed > 0) stopAnswered = searchEnded;
                step = Step::kDone;
                KillTimer(nullptr, id);
                PostMessageW(popup, WM_COMMAND, IDOK, 0);
            }
            break;
        case Step::kDone:
            break;
    }
}

}  // namespace
}  // namespace velmora

int wmain(int argc, wchar_t** argv) {
    using namespace velmora;
    if (argc < 2) {
        std::fprintf(stderr, "usage: velmora-bench-game-list FILE.pgn\n");
        return 2;
    }
    // Each figure is printed as soon as it is known.
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    InitCommonControls();
    Application& app = App();
    app.programInstance = GetModuleHandleW(nullptr);
    app.resourceInstance = app.programInstance;
    Settings settings;
    app.settings = &settings;
    DrawingResources drawing(settings);
    app.drawing = &drawing;
    WNDCLASSW frameClass{};
    frameClass.lpfnWndProc = DefWindowProcW;
    frameClass.hInstance = app.programInstance;
    frameClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    frameClass.lpszClassName = L"VelmoraBenchFrame";
    RegisterClassW(&frameClass);
    RECT rect{0, 0, pocketpc::kPortraitWidth, pocketpc::kPortraitHeight};
    AdjustWindowRectEx(&rect, WS_OVERLAPPEDWINDOW, FALSE, 0);
    frame = CreateWindowExW(0, L"VelmoraBenchFrame", L"Velmora bench",
                            WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, rect.right - rect.left,
                            rect.bottom - rect.top, nullptr, nullptr, app.programInstance, nullptr);
    if (frame == nullptr) {
        std::fprintf(stderr, "no window could be made (no display?)\n");
        return 1;
    }
    pocketpc::SetDeviceFrame(frame);
    app.mainWindow = frame;

    const std::u16string path = platform::win32::FromWin32(argv[1]);
    GameIndex index(path.c_str());
    GameListDialog list(index);
    listDialog = &list;
    std::uint32_t offset = 0;
    int count = 0;
    SetTimer(nullptr, 0, 1, OnListTimer);
    listStart = Now();
    list.Run(frame, &offset, &count);
    std::printf("games listed:             %d\n", index.Size());
    std::printf("list shown:               %.3f s (file scanned, first rows painted)\n", listShown);
    for (const auto& sort : sorts)
        std::printf("sorted by %-26s %.3f s\n", (std::string(sort.what) + ":").c_str(),
                    sort.seconds);

    SearchDialog search({path});
    searchDialog = &search;
    hook = SetWindowsHookExW(WH_CBT, WatchCreation, nullptr, GetCurrentThreadId());
    SetTimer(nullptr, 0, 10, OnSearchTimer);
    search.Run(frame);
    UnhookWindowsHookEx(hook);
    const int found = search.Results() != nullptr ? search.Results()->Size() : 0;
    std::printf("material search (KR-K), whole file: %.3f s\n", fullSearch);
    if (stopAnswered > 0 && stopAnswered > stopPressed) {
        std::printf("stop pressed at %.3f s:       answered in %.3f s (%d games found by then)\n",
                    stopPressed - searchStarted, stopAnswered - stopPressed, found);
    } else {
        std::printf("the second search ended before its stop button was pressed\n");
    }
    DestroyWindow(frame);
    return 0;
}
