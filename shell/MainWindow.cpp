// The main window: document list, menu bar, and the road from a chosen file to the game window.
#include "shell/MainWindow.h"

#include "game/PgnParser.h"
#include "gamewindow/BoardView.h"
#include "gamewindow/OptionsSheet.h"
#include "gamewindow/SetupBoardDialog.h"
#include "models/Settings.h"
#include "resources/resource.h"
#include "shell/GameListDialog.h"
#include "shell/SearchDialog.h"
#include "shell/StarDiamondDialog.h"
#include "ui/AboutDialog.h"
#include "ui/Application.h"
#include "ui/DeviceFrame.h"
#include "ui/DocumentList.h"
#include "ui/MenuBar.h"
#include "ui/MessageBoxes.h"

namespace velmora {
namespace {

// Where the window keeps its MainWindow object, after 4 bytes of its own.
constexpr int kObjectOffset = 4;
constexpr UINT kFatalErrorMessage = WM_APP + 1;  // 32769
constexpr UINT kPlainMessage = WM_APP + 2;       // 32770
// The frame's own command that turns the screen between portrait and landscape.
constexpr UINT kRotateCommand = 0x7F00;

const wchar_t* AllFoldersText() {
    return App().french ? L"Tous les dossiers" : L"All Folders";
}

}  // namespace

MainWindow::~MainWindow() {
    // The game refers to its file: it goes first.
    game_.reset();
    file_.reset();
}

bool MainWindow::RegisterWindowClass(HINSTANCE instance) {
    WNDCLASSW windowClass{};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = WindowProc;
    windowClass.cbWndExtra = kObjectOffset + sizeof(MainWindow*);
    windowClass.hInstance = instance;
    windowClass.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(IDI_VELMORA));
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    windowClass.lpszClassName = kClassName;
    return RegisterClassW(&windowClass) != 0;
}

HWND MainWindow::Create(HINSTANCE instance) {
    DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_THICKFRAME |
                  WS_CLIPCHILDREN | WS_VISIBLE;
    RECT rect{0, 0, pocketpc::kPortraitWidth, pocketpc::kPortraitHeight};
    AdjustWindowRectEx(&rect, style, FALSE, 0);
    return CreateWindowExW(0, kClassName, kTitle, style, CW_USEDEFAULT, CW_USEDEFAULT,
                           rect.right - rect.left, rect.bottom - rect.top, nullptr, nullptr,
                           instance, this);
}

void MainWindow::OpenFile(const wchar_t* path) {
    game_.reset();
    index_ = 0;
    file_ = std::make_unique<GameIndex>(Utf16(path));
    PostMessageW(window_, WM_COMMAND, ID_REOPEN_FILE, 0);
}

LRESULT CALLBACK MainWindow::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<MainWindow*>(GetWindowLongPtrW(window, kObjectOffset));
    if (message == WM_CREATE) {
        self = static_cast<MainWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        SetWindowLongPtrW(window, kObjectOffset, reinterpret_cast<LONG_PTR>(self));
        self->window_ = window;
    }
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    return self->HandleMessage(message, wParam, lParam);
}

void MainWindow::OnCreate() {
    pocketpc::SetDeviceFrame(window_);
    menuBar_ = pocketpc::CreateMenuBar(window_, App().resourceInstance, IDM_MAIN_MENU);
    const pocketpc::ToolButton buttons[] = {{0, ID_NEW_GAME}, {1, ID_NEW_POSITION}, {2, ID_SEARCH}};
    if (!pocketpc::AddToolButtons(menuBar_, {App().programInstance, IDB_MAIN_TOOLBAR, 3},
                                  buttons)) {
        SystemErrorBoxFromString(GetLastError(), IDS_CANNOT_CREATE_TOOLBAR);
    }
    HMENU system = GetSystemMenu(window_, FALSE);
    if (system != nullptr) {
        AppendMenuW(system, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(system, MF_STRING, kRotateCommand,
                    App().french ? L"Tourner l'\u00E9cran" : L"Rotate screen");
    }
}

// Creates the document list on the first paint, on the stored folder or on all folders.
void MainWindow::CreateDocumentList() {
    const Settings* settings = App().settings;
    const char16_t* stored = settings != nullptr ? settings->openIn.Get() : nullptr;
    pocketpc::DocListCreate create{};
    create.parent = window_;
    create.folder = stored != nullptr ? Wide(stored) : nullptr;
    folder_ = stored != nullptr ? Wide(stored) : L"";
    create.allFoldersText = AllFoldersText();
    create.filterName = App().french ? L"Fichiers PGN" : L"PGN files";
    create.filterPattern = L"*.pgn";
    create.controlId = kDocListId;
    create.otherFilterName = App().french ? L"Tous les fichiers" : L"All files";
    create.otherFilterPattern = L"*.*";
    docList_ = pocketpc::CreateDocList(create);
    if (docList_ == nullptr) {
        MessageBoxW(window_, L"Unable to create document list", L"Fatal error", MB_ICONERROR);
        PostQuitMessage(0);
        return;
    }
    LayoutChildren();
    SendMessageW(docList_, pocketpc::kDocListRefresh, 0, 0);
}

void MainWindow::LayoutChildren() {
    pocketpc::PlaceMenuBar(menuBar_);
    if (docList_ == nullptr) return;
    RECT client{};
    GetClientRect(window_, &client);
    SetWindowPos(docList_, nullptr, 0, 0, client.right,
                 client.bottom - pocketpc::MenuBarHeight(menuBar_) - 2, SWP_NOMOVE | SWP_NOZORDER);
}

LRESULT MainWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            OnCreate();
            return 0;
        case WM_DESTROY:
            if (menuBar_ != nullptr) DestroyWindow(menuBar_);
            menuBar_ = nullptr;
            PostQuitMessage(0);
            return 0;
        case WM_SIZE:
            LayoutChildren();
            pocketpc::FollowFrame();
            return 0;
        case WM_MOVE:
            pocketpc::FollowFrame();
            return 0;
        case WM_ACTIVATE:
            if (LOWORD(wParam) == WA_ACTIVE || LOWORD(wParam) == WA_CLICKACTIVE) {
                pocketpc::SetNavigationTitle(window_, L"Velmora");
            }
            pocketpc::HandleActivate(window_, wParam, lParam);
            return 0;
        case WM_SETTINGCHANGE:
            pocketpc::HandleSettingChange(window_, wParam, lParam);
            return 0;
        case WM_PAINT: {
            LRESULT result = DefWindowProcW(window_, message, wParam, lParam);
            if (!docListTried_) {
                docListTried_ = true;
                CreateDocumentList();
            }
            return result;
        }
        case WM_NOTIFY: {
            auto* notify = reinterpret_cast<pocketpc::DocListNotify*>(lParam);
            if (notify->header.idFrom != kDocListId) break;
            if (notify->header.code == pocketpc::kDocListFileChosen) {
                std::wstring path = notify->path;
                OnFileChosen(path.c_str());
            } else if (notify->header.code == pocketpc::kDocListFolderChanged) {
                folder_ = notify->path;
            }
            return 0;
        }
        case WM_SYSCOMMAND:
            if ((wParam & 0xFFF0) == kRotateCommand) {
                pocketpc::SetOrientation(!pocketpc::ScreenIsPortrait());
                return 0;
            }
            break;
        case WM_COMMAND:
            OnCommand(LOWORD(wParam));
            return 0;
        case WM_INITMENUPOPUP:
            return 0;
        case kFatalErrorMessage:
            MessageBoxW(window_, reinterpret_cast<const wchar_t*>(lParam), L"Fatal error",
                        MB_ICONERROR);
            return 0;
        case kPlainMessage:
            MessageBoxW(window_, reinterpret_cast<const wchar_t*>(lParam), L"Velmora 2.0", MB_OK);
            return 0;
        default:
            break;
    }
    return DefWindowProcW(window_, message, wParam, lParam);
}

std::unique_ptr<Game> MainWindow::ChooseAndLoad(GameIndex& file, int* number, bool reportFailure) {
    std::uint32_t offset = 0;
    int count = 0;
    GameListDialog list(file);
    if (list.Run(window_, &offset, &count) != 1) return nullptr;
    *number = list.Chosen() + 1;
    auto game = std::make_unique<Game>(&file);
    PgnOutcome outcome = LoadGame(*game, OwnerOf(window_), offset, count);
    if (!outcome.Ok()) {
        if (reportFailure) ShowLoadError(outcome, u"Unable to load game", OwnerOf(window_));
        return nullptr;
    }
    return game;
}

void MainWindow::OnFileChosen(const wchar_t* path) {
    auto file = std::make_unique<GameIndex>(Utf16(path));
    int number = 0;
    std::unique_ptr<Game> game = ChooseAndLoad(*file, &number, true);
    if (game == nullptr) return;
    game_ = std::move(game);
    file_ = std::move(file);
    index_ = number;
    if (App().settings != nullptr) App().settings->recentFiles.Add(Utf16(path));
    ShowGameWindow();
}

// Runs the game window on the current game. A game it hands over ("New Position...")
// becomes the current one once the window is gone; its exit command shows it.
void MainWindow::ShowGameWindow() {
    if (game_ == nullptr) return;
    std::unique_ptr<Game> handedOver;
    {
        BoardView view(*game_);
        view.Run(window_, 0);
        handedOver = view.TakeNewGame();
    }
    if (handedOver != nullptr) {
        game_ = std::move(handedOver);
        index_ = 0;
    }
}

// Searches the files the document list shows; a found game that is chosen opens in the game
// window with its file, which is read again for the game's number (for "Open Next") and for
// how many games it holds (which decides how saving writes the game back).
void MainWindow::Search() {
    std::vector<std::u16string> paths;
    if (docList_ != nullptr) {
        for (const std::wstring& path : pocketpc::DocListFiles(docList_))
            paths.push_back(Utf16(path.c_str()));
    }
    SearchDialog dialog(std::move(paths));
    if (dialog.Run(window_) != 1) return;
    auto file = std::make_unique<GameIndex>(dialog.ChosenPath().c_str());
    if (file->Load() == 0) return;
    int number = 0;
    for (GameRow row : *file) {
        if (row.Offset() == dialog.ChosenOffset()) {
            number = row.Position() + 1;
            break;
        }
    }
    auto game = std::make_unique<Game>(file.get());
    PgnOutcome outcome = LoadGame(*game, OwnerOf(window_), dialog.ChosenOffset(), file->Count());
    if (!outcome.Ok()) {
        ShowLoadError(outcome, u"Unable to load game", OwnerOf(window_));
        return;
    }
    game_ = std::move(game);
    file_ = std::move(file);
    index_ = number;
    ShowGameWindow();
}

void MainWindow::OnCommand(int id) {
    switch (id) {
        case ID_NEW_GAME:
            game_ = std::make_unique<Game>();
            index_ = 0;
            ShowGameWindow();
            break;
        case ID_NEW_POSITION: {
            auto game = std::make_unique<Game>();
            SetupBoardDialog setup(*game, nullptr, false);
            if (setup.DoModal(window_) == 1) {
                game_ = std::move(game);
                index_ = 0;
                ShowGameWindow();
            }
            break;
        }
        case ID_SHOW_GAME_AGAIN:
            ShowGameWindow();
            break;
        case ID_IMPORT_STAR_DIAMOND: {
            std::unique_ptr<Game> game;
            if (RunStarDiamondImport(window_, &game)) {
                game_ = std::move(game);
                index_ = 0;
                ShowGameWindow();
            }
            break;
        }
        case ID_SEARCH:
            Search();
            break;
        case ID_OPTIONS:
            if (App().settings != nullptr) RunOptionsSheet(window_, *App().settings);
            break;
        case ID_ABOUT:
            ShowAboutDialog(window_);
            break;
        case ID_EXIT:
            PostQuitMessage(0);
            break;
        case IDOK:
            SendMessageW(window_, WM_ACTIVATE, WA_INACTIVE, 0);
            SendMessageW(window_, WM_CLOSE, 0, 0);
            break;
        case ID_REOPEN_FILE:
            if (file_ != nullptr) {
                int number = 0;
                std::unique_ptr<Game> game = ChooseAndLoad(*file_, &number, false);
                if (game != nullptr) {
                    game_ = std::move(game);
                    index_ = number;
                    ShowGameWindow();
                }
            }
            break;
        case ID_OPEN_NEXT:
            if (game_ != nullptr && file_ != nullptr) {
                const GameRow next = file_->At(index_);
                if (!next) break;
                auto game = std::make_unique<Game>(file_.get());
                if (!LoadGame(*game, OwnerOf(window_), next.Offset(), file_->Count()).Ok()) break;
                game_ = std::move(game);
                ++index_;
                ShowGameWindow();
            }
            break;
        default:
            break;
    }
}

}  // namespace velmora
