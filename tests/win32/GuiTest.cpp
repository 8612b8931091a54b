// The main window, the game list and the game window, run for real under Wine.
#include <algorithm>

#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/MoveTree.h"
#include "game/PgnParser.h"
#include "gamewindow/BoardView.h"
#include "platform/win32/WideText.h"
#include "resources/resource.h"
#include "shell/GameListDialog.h"
#include "ui/DocumentList.h"
#include "win32/GuiDriver.h"

namespace velmora::gui {
namespace {

TEST_F(GuiTest, MainWindowListsThePgnFilesOfAllFoldersAndOfOneFolder) {
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    std::wstring root = std::wstring(temp) + L"velmora-gui-files\\";
    CreateDirectoryW(root.c_str(), nullptr);
    CreateDirectoryW((root + L"club").c_str(), nullptr);
    CopyFileW(DataPath(L"three-games.pgn").c_str(), (root + L"three-games.pgn").c_str(), FALSE);
    CopyFileW(DataPath(L"game-list-sorting.pgn").c_str(), (root + L"club\\sorting.pgn").c_str(),
              FALSE);
    CopyFileW(DataPath(L"three-games.pgn").c_str(), (root + L"notes.txt").c_str(), FALSE);
    // Only "*.pgn" is listed, from the root and its subfolders.

    MainWindowIn shown(root);
    MainWindow& main = shown.main;
    HWND window = shown.window;
    ASSERT_NE(window, nullptr);
    ASSERT_NE(main.DocList(), nullptr);
    HWND list = FindWindowExW(main.DocList(), nullptr, WC_LISTVIEWW, nullptr);
    HWND folders = FindWindowExW(main.DocList(), nullptr, WC_COMBOBOXW, nullptr);
    ASSERT_NE(list, nullptr);
    ASSERT_NE(folders, nullptr);
    EXPECT_EQ(ListViewColumn(list, 0),
              (std::vector<std::wstring>{L"three-games.pgn", L"club\\sorting.pgn"}));
    Repaint(window);
    EXPECT_TRUE(test::SaveWindowShot(window, L"main-window"));

    // Choosing the "club" folder lists its files only and tells the main window the folder.
    int club = static_cast<int>(SendMessageW(folders, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                             reinterpret_cast<LPARAM>(L"velmora-gui-files\\club")));
    ASSERT_GT(club, 0);
    SendMessageW(folders, CB_SETCURSEL, static_cast<WPARAM>(club), 0);
    SendMessageW(main.DocList(), WM_COMMAND, MAKEWPARAM(1, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(folders));
    EXPECT_EQ(ListViewColumn(list, 0), (std::vector<std::wstring>{L"sorting.pgn"}));
    EXPECT_EQ(main.CurrentFolder(), root + L"club\\");

    // The frame's rotate command turns the screen; the list follows.
    SendMessageW(window, WM_SYSCOMMAND, 0x7F00, 0);
    RECT listRect{};
    GetWindowRect(main.DocList(), &listRect);
    EXPECT_EQ(listRect.right - listRect.left, 320);
    Repaint(window);
    EXPECT_TRUE(test::SaveWindowShot(window, L"main-window-landscape"));
}

TEST_F(GuiTest, GameListSortsByTwoColumnsAndATapChoosesTheGame) {
    std::u16string path = platform::win32::FromWin32(DataPath(L"game-list-sorting.pgn"));
    GameIndex index(path.c_str());
    GameListDialog dialog(index);
    WhenModal([&] {
        HWND list = dialog.List();
        HWND window = dialog.Window();
        // Rounds are numbers: "?" counts as 0, and 10 comes after 2.
        TapGameList(window, list, -1, 5);
        EXPECT_EQ(ListViewColumn(list, 0),
                  (std::vector<std::wstring>{L"Dubois, Eve", L"Bernard, Anne", L"Adam, Paul",
                                             L"Carre, Louis"}));
        SendDlgItemMessageW(window, IDC_SHOW_ROUND, BM_CLICK, 0, 0);
        EXPECT_GT(ListView_GetColumnWidth(list, 5), 0) << "the round column is shown";
        // Intended: ascending by result runs from "*" down to "1-0", the reverse of the codes.
        TapGameList(window, list, -1, 2);
        EXPECT_EQ(ListViewColumn(list, 2),
                  (std::vector<std::wstring>{L"*", L"0-1", L"\u00BD-\u00BD", L"1-0"}));
        // The second row after that sort is Bernard's 0-1 game; its offset comes back.
        const std::vector<std::wstring> whites = ListViewColumn(list, 0);
        EXPECT_TRUE(whites.size() == 4 && whites[1] == L"Bernard, Anne");
        Repaint(window);
        test::SaveWindowShot(window, L"game-list-sorted");
        TapGameList(window, list, 1);
    });
    std::uint32_t offset = 0;
    int count = 0;
    EXPECT_EQ(dialog.Run(frame, &offset, &count), 1);
    const GameRow chosen = index.At(dialog.Chosen());
    ASSERT_TRUE(chosen);
    EXPECT_EQ(offset, chosen.Offset());
    EXPECT_EQ(chosen.Text(RowField::White).View(), u"Bernard, Anne");
    EXPECT_EQ(count, 4);
}

class GameWindowTest : public GuiTest {
  protected:
    void LoadAnnotatedGame() {
        std::u16string path = platform::win32::FromWin32(DataPath(L"variations-and-comments.pgn"));
        index = std::make_unique<GameIndex>(path.c_str());
        ASSERT_EQ(index->Load(), 1);
        game = std::make_unique<Game>(index.get());
        ASSERT_TRUE(LoadGame(*game, nullptr, index->At(0).Offset(), index->Count()).Ok());
    }
    std::unique_ptr<GameIndex> index;
    std::unique_ptr<Game> game;
};

TEST_F(GameWindowTest, ShowsVariationsAndCommentsAndFollowsTheCommandsInBothOrientations) {
    LoadAnnotatedGame();
    BoardView view(*game);
    std::vector<std::wstring> selected;  // the rows the navigation commands select
    WhenModal([&] {
        HWND window = view.Window();
        HWND notation = view.Notation().Window();
        EXPECT_EQ(ListBoxRows(notation),
                  (std::vector<std::wstring>{
                      L"   ", L"1. e4 [...]", L"  (1. d4 [...]", L"  1... d5", L"  2. c4",
                      L"    (2. Nf3", L"    2... Nf6))", L"1... e5", L"2. Nf3", L"2... Nc6",
                      L"3. Bb5! [...]", L"3... a6", L"4. Ba4", L"4... Nf6", L"5. O-O"}));
        EXPECT_EQ(WindowText(view.CommentPane()),
                  L"A short game with two ideas for White on the first move.");
        // Forward from the start meets the variation: "Choose move" offers both first moves.
        WhenModal([&] {
            HWND chooser = GetLastActivePopup(frame);
            EXPECT_EQ(WindowText(chooser), L"Choose move");
            SendDlgItemMessageW(chooser, IDC_MOVE_LIST, LB_SETCURSEL, 1, 0);
            SendMessageW(chooser, WM_COMMAND, IDOK, 0);
        });
        SendMessageW(window, WM_COMMAND, ID_NEXT_MOVE, 0);
        MoveNode* afterChoice = game->Current()->ArrivalNode();
        EXPECT_TRUE(afterChoice != nullptr && afterChoice->IsVariation());
        EXPECT_EQ(WindowText(view.CommentPane()), L"The queen's pawn.");
        Repaint(window);
        // a1 is a dark square, bottom left.
        const BoardPlacement& placement = view.Board().Placement();
        POINT a1{placement.left + 1, placement.top + 7 * placement.squareSize + 1};
        ClientToScreen(window, &a1);
        HDC screen = GetDC(nullptr);
        EXPECT_EQ(GetPixel(screen, a1.x, a1.y), settings->blackColor);
        ReleaseDC(nullptr, screen);
        EXPECT_TRUE(test::SaveWindowShot(window, L"game-window-portrait"));
        SendMessageW(window, WM_COMMAND, ID_FLIP_BOARD, 0);
        EXPECT_TRUE(view.Board().Flipped());

        pocketpc::SetOrientation(false);
        RECT list{};
        GetWindowRect(notation, &list);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&list), 2);
        EXPECT_GT(list.left, view.Layout().Frame().right);  // the list is right of the board
        // Selecting a row moves the game there: the tenth row is 3. Bb5.
        TapNotationRow(window, notation, 10);
        MoveNode* afterTap = game->Current()->ArrivalNode();
        EXPECT_EQ(afterTap != nullptr ? afterTap->moveNumber : 0, 3);
        Repaint(window);
        EXPECT_TRUE(test::SaveWindowShot(window, L"game-window-landscape"));
        pocketpc::SetOrientation(true);
        // In the variation 2. Nf3, "leave variation" goes back to the move it stands beside.
        for (int command : {ID_LAST_MOVE_TOOLBAR, ID_PREVIOUS_MOVE, ID_FIRST_MOVE, ID_LAST_MOVE}) {
            SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
            selected.push_back(SelectedRow(notation));
        }
        TapNotationRow(window, notation, 6);
        SendMessageW(window, WM_COMMAND, ID_LEAVE_VARIATION, 0);
        selected.push_back(SelectedRow(notation));
        // Escape must not end the window: that would skip the question about saving.
        SendMessageW(window, WM_COMMAND, IDCANCEL, 0);
        EXPECT_TRUE(IsWindowVisible(window));
        SendMessageW(window, WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    EXPECT_TRUE(view.Run(frame, 0));
    EXPECT_EQ(selected,
              (std::vector<std::wstring>{L"5. O-O", L"4... Nf6", L"   ", L"5. O-O", L"  2. c4"}));
}

}  // namespace
}  // namespace velmora::gui
