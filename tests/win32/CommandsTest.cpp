// Every enabled command of the main and game windows' menus and toolbars is sent once and must
// be seen doing its work; a command added without a check here fails the test.
#include <windows.h>

#include <prsht.h>

#include <algorithm>
#include <map>
#include <set>

#include "engine/host/EngineHost.h"
#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/MoveTree.h"
#include "game/PgnParser.h"
#include "gamewindow/BoardView.h"
#include "platform/win32/WideText.h"
#include "resources/resource.h"
#include "ui/MenuBar.h"
#include "win32/GuiDriver.h"

namespace velmora::gui {
namespace {

struct Command {
    int id;
    bool enabled;
    std::wstring where;  // the menu path or "toolbar"
};

// Collects the items of menu and its submenus; a grayed submenu disables what it holds.
void CollectMenu(HMENU menu, const std::wstring& path, bool enabled, std::vector<Command>& out) {
    const int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        wchar_t text[128] = {};
        MENUITEMINFOW info{};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_ID | MIIM_SUBMENU | MIIM_STATE | MIIM_FTYPE | MIIM_STRING;
        info.dwTypeData = text;
        info.cch = 127;
        GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
        if ((info.fType & MFT_SEPARATOR) != 0) continue;
        const bool itemEnabled = enabled && (info.fState & (MFS_GRAYED | MFS_DISABLED)) == 0;
        const std::wstring where = path + L" > " + text;
        if (info.hSubMenu != nullptr) {
            CollectMenu(info.hSubMenu, where, itemEnabled, out);
        } else {
            out.push_back({static_cast<int>(info.wID), itemEnabled, where});
        }
    }
}

// The image buttons of a window's menu bar.
void CollectToolbar(HWND menuBar, std::vector<Command>& out) {
    for (HWND child = FindWindowExW(menuBar, nullptr, TOOLBARCLASSNAMEW, nullptr); child != nullptr;
         child = FindWindowExW(menuBar, child, TOOLBARCLASSNAMEW, nullptr)) {
        if (GetDlgCtrlID(child) != 2) continue;  // the bar's own buttons open its menus
        const int count = static_cast<int>(SendMessageW(child, TB_BUTTONCOUNT, 0, 0));
        for (int i = 0; i < count; ++i) {
            TBBUTTON button{};
            SendMessageW(child, TB_GETBUTTON, static_cast<WPARAM>(i),
                         reinterpret_cast<LPARAM>(&button));
            const bool enabled = SendMessageW(child, TB_ISBUTTONENABLED,
                                              static_cast<WPARAM>(button.idCommand), 0) != 0;
            out.push_back({button.idCommand, enabled, L"toolbar button " + std::to_wstring(i)});
        }
    }
}

// What a command is seen to do. Each part may be empty.
struct Expectation {
    std::function<void()> before;     // puts things where the command has work to do
    std::function<bool(HWND)> opens;  // the window it opens...
    std::function<void(HWND)> close;  // ...and how the test closes it
    std::function<bool()> after;      // what is true once it ran
};

// A command that opens the window accept takes, which close ends.
Expectation Opens(std::function<bool(HWND)> accept, std::function<void(HWND)> close) {
    return {{}, std::move(accept), std::move(close), {}};
}
// A command that, run where before puts the game, makes after true.
Expectation Does(std::function<void()> before, std::function<bool()> after) {
    return {std::move(before), {}, {}, std::move(after)};
}

std::function<void(HWND)> CloseWith(int command) {
    return [command](HWND window) { PostMessageW(window, WM_COMMAND, command, 0); };
}
void CloseWindow(HWND window) {
    PostMessageW(window, WM_CLOSE, 0, 0);
}
void CancelSheet(HWND sheet) {
    PropSheet_PressButton(sheet, PSBTN_CANCEL);
}

// Ends the popup menu that a command tracks, once it is on the screen.
bool menuSeen = false;
void CALLBACK EndTrackedMenu(HWND, UINT, UINT_PTR id, DWORD) {
    HWND menu = FindWindowW(L"#32768", nullptr);
    if (menu == nullptr || !IsWindowVisible(menu)) return;
    KillTimer(nullptr, id);
    menuSeen = true;
    EndMenu();
}

// Sends each enabled command to window, checks it; returns the commands without expectation.
std::vector<std::wstring> SendAll(HWND window, const std::vector<Command>& commands,
                                  const std::map<int, Expectation>& expected) {
    std::vector<std::wstring> unknown;
    for (const Command& command : commands) {
        if (!command.enabled) continue;
        auto found = expected.find(command.id);
        if (found == expected.end()) {
            unknown.push_back(command.where + L" (" + std::to_wstring(command.id) + L")");
            continue;
        }
        const Expectation& expectation = found->second;
        if (expectation.before) expectation.before();
        bool opened = false;
        if (expectation.opens) {
            WhenPopup(expectation.opens, [&](HWND popup) {
                opened = true;
                expectation.close(popup);
            });
        }
        SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(command.id), 0);
        // Checked before the queue is emptied: "Exit" leaves a quit message there.
        const bool seen = !expectation.after || expectation.after();
        Pump();
        if (expectation.opens) {
            EXPECT_TRUE(opened) << "no window from "
                                << std::string(command.where.begin(), command.where.end());
            popupActions.clear();
        }
        EXPECT_TRUE(seen) << "nothing seen from "
                          << std::string(command.where.begin(), command.where.end());
    }
    return unknown;
}

TEST_F(GuiTest, EveryCommandOfTheMainWindowDoesItsWorkOrIsDisabled) {
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    const std::wstring root = std::wstring(temp) + L"velmora-commands\\";
    CreateDirectoryW(root.c_str(), nullptr);
    CopyFileW(DataPath(L"three-games.pgn").c_str(), (root + L"three-games.pgn").c_str(), FALSE);
    MainWindowIn shown(root);
    HWND window = shown.window;
    ASSERT_NE(window, nullptr);
    HWND bar = pocketpc::FindMenuBar(window);
    ASSERT_NE(bar, nullptr);
    std::vector<Command> commands;
    CollectMenu(pocketpc::MenuBarMenu(bar), L"Menu", true, commands);
    CollectToolbar(bar, commands);
    ASSERT_GE(commands.size(), 10u);

    const std::map<int, Expectation> expected = {
        {ID_NEW_GAME, Opens(HasControl(BoardView::kNotationId), CloseWith(ID_CLOSE_GAME))},
        {ID_NEW_POSITION, Opens(Titled(L"Setup board"), CloseWith(IDCANCEL))},
        {ID_SEARCH, Opens(Titled(L"Game search"), CloseWith(IDOK))},
        {ID_IMPORT_STAR_DIAMOND, Opens(Titled(L"Import Star Diamond Game"), CloseWith(IDOK))},
        {ID_OPTIONS, Opens(Titled(L"Velmora options"), CancelSheet)},
        {ID_ABOUT, Opens(Titled(L"About Velmora"), CloseWindow)},
        {ID_EXIT, Does({},
                       [] {
                           MSG message;
                           return PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != 0;
                       })},
    };
    const std::vector<std::wstring> unknown = SendAll(window, commands, expected);
    EXPECT_EQ(unknown, std::vector<std::wstring>{}) << "commands without a check";
}

class GameWindowCommandsTest : public GuiTest {
  protected:
    void SetUp() override {
        GuiTest::SetUp();
        wchar_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, temp);
        path_ = std::wstring(temp) + L"velmora-commands-game.pgn";
        CopyFileW(DataPath(L"variations-and-comments.pgn").c_str(), path_.c_str(), FALSE);
        // The program's engine host, over a folder without engines: "Start..." still opens its
        // dialog, with nothing to choose.
        host_ = std::make_unique<EngineHost>(platform::win32::FromWin32(temp));
        App().engineHost = host_.get();
    }
    void TearDown() override {
        App().engineHost = nullptr;
        host_.reset();
        GuiTest::TearDown();
    }
    // A fresh game from the file, standing at its start.
    void Load() {
        game.reset();
        index = std::make_unique<GameIndex>(platform::win32::FromWin32(path_).c_str());
        ASSERT_EQ(index->Load(), 1);
        game = std::make_unique<Game>(index.get());
        ASSERT_TRUE(LoadGame(*game, nullptr, index->At(0).Offset(), index->Count()).Ok());
        game->GoToStart();
    }
    // The position after the main line's move of the given number and side.
    Position* MainLine(int plies) {
        Position* position = &game->StartPosition();
        for (int i = 0; i < plies && position->FirstContinuation() != nullptr; ++i)
            position = position->FirstContinuation()->positionAfter;
        return position;
    }
    // The position after 1.d4 in the variation.
    Position* InVariation() {
        MoveNode* d4 = game->StartPosition().FirstContinuation()->nextAlternative;
        return d4 != nullptr ? d4->positionAfter : nullptr;
    }

    std::wstring path_;
    std::unique_ptr<EngineHost> host_;
    std::unique_ptr<GameIndex> index;
    std::unique_ptr<Game> game;
};

TEST_F(GameWindowCommandsTest, EveryCommandOfTheGameWindowDoesItsWorkOrIsDisabled) {
    Load();
    std::vector<Command> commands;
    std::vector<std::wstring> unknown;
    // The commands that end the window are left out; other tests run Close and New game.
    const std::set<int> exitCommands = {ID_GAME_NEW_GAME, ID_OPEN_NEXT, ID_REOPEN_FILE,
                                        ID_CLOSE_GAME};
    BoardView* view = nullptr;
    Position* remembered = nullptr;
    bool flippedBefore = false;
    auto at = [&](Position* position) {
        return [&, position] {
            remembered = position;
            game->SetCurrent(position);
        };
    };
    const auto atEnd = [&] { return game->Current()->FirstContinuation() == nullptr; };
    std::map<int, Expectation> expected = {
        {ID_GAME_NEW_POSITION,
         {[&] { game->modified = 0; }, Titled(L"Setup board"), CloseWith(IDCANCEL), {}}},
        {ID_SAVE, Does([&] { game->modified = 1; }, [&] { return game->modified == 0; })},
        {ID_SAVE_IF_MODIFIED,
         Does([&] { game->modified = 1; }, [&] { return game->modified == 0; })},
        {ID_SAVE_AS, Opens(Titled(L"Save game"), CloseWith(IDCANCEL))},
        {ID_FIRST_MOVE,
         Does([&] { game->GoToEnd(); }, [&] { return game->Current() == &game->StartPosition(); })},
        {ID_LAST_MOVE, Does([&] { game->GoToStart(); }, atEnd)},
        {ID_LAST_MOVE_TOOLBAR, Does([&] { game->GoToStart(); }, atEnd)},
        {ID_PREVIOUS_MOVE, Does(at(MainLine(4)), [&] { return game->Current() == MainLine(3); })},
        {ID_NEXT_MOVE, Does(at(MainLine(3)), [&] { return game->Current() == MainLine(4); })},
        {ID_LEAVE_VARIATION, Does([&] { at(InVariation()->FirstContinuation()->positionAfter)(); },
                                  [&] { return game->Current() != remembered; })},
        {ID_PROMOTE_LINE,
         Does([&] { at(InVariation())(); },
              [&] {
                  return game->StartPosition().FirstContinuation()->positionAfter == remembered;
              })},
        {ID_DELETE_MOVE, Does(
                             [&] {
                                 game->GoToEnd();
                                 remembered = game->Current()->ArrivalNode()->positionBefore;
                             },
                             [&] {
                                 return game->Current() == remembered &&
                                        remembered->FirstContinuation() == nullptr;
                             })},
        {ID_MATERIAL_BALANCE, Opens(Titled(L"Material Balance"), CloseWindow)},
        {ID_ENGINE_START, Opens(Titled(L"Start game"), CloseWith(IDC_START_CANCEL))},
        {ID_CONNECT_UCB, Opens(Titled(L"Select serial port"), CloseWith(IDCANCEL))},
        {ID_OPTIONS, Opens(Titled(L"Velmora options"), CancelSheet)},
        {ID_ABOUT, Opens(Titled(L"About Velmora"), CloseWindow)},
        {ID_EDIT_HEADERS, Opens(Titled(L"Game headers"), CloseWindow)},
        {ID_EDIT_COMMENT, Opens(Titled(L"Comment"), CloseWindow)},
        {ID_FLIP_BOARD, Does([&] { flippedBefore = view->Board().Flipped(); },
                             [&] { return view->Board().Flipped() != flippedBefore; })},
        {ID_NAG_POPUP, Does(
                           [&] {
                               menuSeen = false;
                               SetTimer(nullptr, 0, 50, EndTrackedMenu);
                           },
                           [&] { return menuSeen; })},
    };
    for (int id = ID_EVAL_NONE; id <= ID_EVAL_BLACK_BETTER; ++id) {
        expected[id] = Does(at(MainLine(3)), [&, id] {
            return game->Current()->Value().evaluation == ((id + 175) & 255);
        });
    }
    for (int id = ID_NAG_NONE; id <= ID_NAG_DUBIOUS; ++id) {
        expected[id] = Does(
            [&] {
                at(MainLine(3))();
                MainLine(3)->ArrivalNode()->nag = 9;
            },
            [&, id] { return MainLine(3)->ArrivalNode()->nag == ((id + 188) & 255); });
    }

    BoardView first(*game);
    view = &first;
    WhenPopup(HasControl(BoardView::kNotationId), [&](HWND window) {
        HWND bar = pocketpc::FindMenuBar(window);
        CollectMenu(pocketpc::MenuBarMenu(bar), L"Game window", true, commands);
        CollectToolbar(bar, commands);
        HMENU nag = LoadMenuW(App().resourceInstance, MAKEINTRESOURCEW(IDM_NAG));
        CollectMenu(nag, L"Annotation popup", true, commands);
        DestroyMenu(nag);
        // Promoting and deleting change the main line the other checks walk: they go last.
        std::vector<Command> staying, reshaping;
        for (const Command& command : commands) {
            if (exitCommands.count(command.id) != 0) continue;
            const bool reshapes = command.id == ID_PROMOTE_LINE || command.id == ID_DELETE_MOVE;
            (reshapes ? reshaping : staying).push_back(command);
        }
        staying.insert(staying.end(), reshaping.begin(), reshaping.end());
        unknown = SendAll(window, staying, expected);
        SendMessageW(window, WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    first.Run(frame, 0);
    popupActions.clear();
    EXPECT_EQ(unknown, std::vector<std::wstring>{}) << "commands without a check";
    ASSERT_GE(commands.size(), 30u);

    // The large clocks wait for a clock to run.
    EXPECT_TRUE(std::any_of(commands.begin(), commands.end(), [](const Command& command) {
        return command.id == ID_LARGE_CLOCKS && !command.enabled;
    }));
}

}  // namespace
}  // namespace velmora::gui
