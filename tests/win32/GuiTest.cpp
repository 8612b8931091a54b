// The program's windows and dialogs, run for real under Wine (Xvfb on Linux): driven with the
// messages a tap or a command sends, read back, and photographed under build/screenshots/.
#include <algorithm>

#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/MoveTree.h"
#include "game/PgnParser.h"
#include "gamewindow/BoardView.h"
#include "platform/win32/WideText.h"
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

    MainWindowIn shown(root);
    MainWindow& main = shown.main;
    HWND window = shown.window;
    ASSERT_NE(window, nullptr);
    RECT client{};
    GetClientRect(window, &client);
    EXPECT_EQ(client.right, 240);
    EXPECT_EQ(client.bottom, 320);
    ASSERT_NE(main.DocList(), nullptr);
    HWND list = FindWindowExW(main.DocList(), nullptr, WC_LISTVIEWW, nullptr);
    HWND folders = FindWindowExW(main.DocList(), nullptr, WC_COMBOBOXW, nullptr);
    ASSERT_NE(list, nullptr);
    ASSERT_NE(folders, nullptr);
    // All folders: the files of the root and of its subfolders, and nothing but "*.pgn".
    EXPECT_EQ(ListViewColumn(list, 0),
              (std::vector<std::wstring>{L"three-games.pgn", L"club\\sorting.pgn"}));
    wchar_t first[64] = {};
    SendMessageW(folders, CB_GETLBTEXT, 0, reinterpret_cast<LPARAM>(first));
    EXPECT_STREQ(first, L"All Folders");
    Repaint(window);
    EXPECT_TRUE(test::SaveWindowShot(window, L"main-window"));

    // "All files" lists the other files too; "PGN files" goes back.
    HWND filter = pocketpc::DocListFilterChooser(main.DocList());
    ASSERT_NE(filter, nullptr);
    auto chooseFilter = [&](int entry) {
        SendMessageW(filter, CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
        SendMessageW(main.DocList(), WM_COMMAND, MAKEWPARAM(3, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(filter));
    };
    chooseFilter(1);
    EXPECT_EQ(WindowText(filter), L"All files");
    std::vector<std::wstring> allFiles = ListViewColumn(list, 0);
    std::sort(allFiles.begin(), allFiles.end());
    EXPECT_EQ(allFiles,
              (std::vector<std::wstring>{L"club\\sorting.pgn", L"notes.txt", L"three-games.pgn"}));
    chooseFilter(0);
    EXPECT_EQ(ListViewColumn(list, 0),
              (std::vector<std::wstring>{L"three-games.pgn", L"club\\sorting.pgn"}));

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
    GetClientRect(window, &client);
    EXPECT_EQ(client.right, 320);
    EXPECT_EQ(client.bottom, 240);
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
    std::vector<std::wstring> byRound, byResult, whiteByResult;
    bool roundShown = false;
    WhenModal([&] {
        HWND list = dialog.List();
        HWND window = dialog.Window();
        TapGameList(window, list, -1, 5);
        byRound = ListViewColumn(list, 0);
        SendDlgItemMessageW(window, 1004, BM_CLICK, 0, 0);
        roundShown = ListView_GetColumnWidth(list, 5) > 0;
        TapGameList(window, list, -1, 2);
        byResult = ListViewColumn(list, 2);
        whiteByResult = ListViewColumn(list, 0);
        Repaint(window);
        test::SaveWindowShot(window, L"game-list-sorted");
        TapGameList(window, list, 1);
    });
    std::uint32_t offset = 0;
    int count = 0;
    EXPECT_EQ(dialog.Run(frame, &offset, &count), 1);
    // Rounds are numbers: "?" counts as 0, and 10 comes after 2.
    EXPECT_EQ(byRound, (std::vector<std::wstring>{L"Dubois, Eve", L"Bernard, Anne", L"Adam, Paul",
                                                  L"Carre, Louis"}));
    EXPECT_TRUE(roundShown);
    // Intended: ascending by result runs from "*" down to "1-0", the reverse of the codes.
    EXPECT_EQ(byResult, (std::vector<std::wstring>{L"*", L"0-1", L"\u00BD-\u00BD", L"1-0"}));
    // The second row after that sort is Bernard's 0-1 game; its offset comes back.
    ASSERT_EQ(whiteByResult.size(), 4u);
    EXPECT_EQ(whiteByResult[1], L"Bernard, Anne");
    const GameRow chosen = index.At(dialog.Chosen());
    ASSERT_TRUE(chosen);
    EXPECT_EQ(offset, chosen.Offset());
    EXPECT_EQ(chosen.Text(RowField::White).View(), u"Bernard, Anne");
    EXPECT_EQ(count, 4);
}

TEST_F(GuiTest, GameListOfAnEmptyFileCanOnlyBeCancelled) {
    GameIndex empty(u"Z:/nonexistent-velmora-folder/none.pgn");
    GameListDialog dialog(empty);
    int rows = -1;
    WhenModal([&] {
        rows = ListView_GetItemCount(dialog.List());
        TapGameList(dialog.Window(), dialog.List(), 0);  // no row: nothing happens
        SendMessageW(dialog.Window(), WM_COMMAND, IDOK, 0);
    });
    std::uint32_t offset = 77;
    int count = 77;
    EXPECT_EQ(dialog.Run(frame, &offset, &count), 2);
    EXPECT_EQ(rows, 0);
    EXPECT_EQ(offset, 77u);
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
    std::vector<std::wstring> rows;
    std::wstring startComment, chooserTitle, variationComment;
    MoveNode* afterChoice = nullptr;
    bool flipped = false;
    RECT landscapeList{};
    bool openAfterEscape = false;
    int landscapeBoardRight = 0;
    int tappedMove = 0;
    std::vector<std::wstring> selected;  // the rows the navigation commands select
    COLORREF a1Pixel = 0;
    WhenModal([&] {
        HWND window = view.Window();
        rows = ListBoxRows(view.Notation().Window());
        startComment = WindowText(view.CommentPane());
        // Forward from the start meets the variation: "Choose move" offers both first moves.
        WhenModal([&] {
            HWND chooser = GetLastActivePopup(frame);
            chooserTitle = WindowText(chooser);
            HWND moves = GetDlgItem(chooser, 1010);
            SendMessageW(moves, LB_SETCURSEL, 1, 0);
            SendMessageW(chooser, WM_COMMAND, IDOK, 0);
        });
        SendMessageW(window, WM_COMMAND, 32773, 0);
        afterChoice = game->Current()->ArrivalNode();
        variationComment = WindowText(view.CommentPane());
        Repaint(window);
        const BoardPlacement& placement = view.Board().Placement();
        POINT a1{placement.left + 1, placement.top + 7 * placement.squareSize + 1};
        ClientToScreen(window, &a1);
        HDC screen = GetDC(nullptr);
        a1Pixel = GetPixel(screen, a1.x, a1.y);
        ReleaseDC(nullptr, screen);
        EXPECT_TRUE(test::SaveWindowShot(window, L"game-window-portrait"));
        SendMessageW(window, WM_COMMAND, 1062, 0);
        flipped = view.Board().Flipped();
        Repaint(window);
        EXPECT_TRUE(test::SaveWindowShot(window, L"game-window-portrait-flipped"));

        pocketpc::SetOrientation(false);
        landscapeBoardRight = view.Layout().Frame().right;
        GetWindowRect(view.Notation().Window(), &landscapeList);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&landscapeList), 2);
        // Selecting a row moves the game there.
        HWND notation = view.Notation().Window();
        TapNotationRow(window, notation, 10);
        MoveNode* afterTap = game->Current()->ArrivalNode();
        tappedMove = afterTap != nullptr ? afterTap->moveNumber : 0;
        Repaint(window);
        EXPECT_TRUE(test::SaveWindowShot(window, L"game-window-landscape"));
        pocketpc::SetOrientation(true);
        // Last move, back, first move, last move from the menu; then from inside the variation
        // 2. Nf3, "leave variation" goes back to the move the variation stands beside.
        for (int command : {1063, 32772, 40081, 40082}) {
            SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
            selected.push_back(SelectedRow(notation));
        }
        TapNotationRow(window, notation, 6);
        SendMessageW(window, WM_COMMAND, 40040, 0);
        selected.push_back(SelectedRow(notation));
        // Escape must not end the window: that would skip the question about saving.
        SendMessageW(window, WM_COMMAND, IDCANCEL, 0);
        openAfterEscape = IsWindowVisible(window) != FALSE;
        SendMessageW(window, WM_COMMAND, 40111, 0);  // "Open Next"
    });
    EXPECT_TRUE(view.Run(frame, 0));
    EXPECT_EQ(rows, (std::vector<std::wstring>{
                        L"   ", L"1. e4 [...]", L"  (1. d4 [...]", L"  1... d5", L"  2. c4",
                        L"    (2. Nf3", L"    2... Nf6))", L"1... e5", L"2. Nf3", L"2... Nc6",
                        L"3. Bb5! [...]", L"3... a6", L"4. Ba4", L"4... Nf6", L"5. O-O"}));
    EXPECT_EQ(startComment, L"A short game with two ideas for White on the first move.");
    ASSERT_NE(afterChoice, nullptr);
    EXPECT_TRUE(afterChoice->IsVariation());
    EXPECT_EQ(chooserTitle, L"Choose move");
    EXPECT_EQ(variationComment, L"The queen's pawn.");
    EXPECT_EQ(a1Pixel, settings->blackColor);  // a1 is a dark square, bottom left
    EXPECT_TRUE(flipped);
    EXPECT_TRUE(openAfterEscape);
    EXPECT_GT(landscapeList.left, landscapeBoardRight);  // the list is right of the board
    EXPECT_EQ(tappedMove, 3);                            // the tenth row is 3. Bb5
    EXPECT_EQ(selected,
              (std::vector<std::wstring>{L"5. O-O", L"4... Nf6", L"   ", L"5. O-O", L"  2. c4"}));
    // "Open Next" ends the window and hands its command to the parent.
    EXPECT_EQ(view.ExitCommand(), 40111);
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, frame, WM_COMMAND, WM_COMMAND, PM_REMOVE));
    EXPECT_EQ(LOWORD(message.wParam), 40111);
}

TEST_F(GameWindowTest, InitialMoveOpensAtBlacksMoveOrAtTheStartWhenBeyondTheGame) {
    struct Case {
        int initialMove;
        int expectedNumber;  // 0: the start position
    };
    for (const Case& c : {Case{-2, 2}, Case{4, 4}, Case{40, 0}}) {
        LoadAnnotatedGame();
        BoardView view(*game);
        WhenModal([&] { SendMessageW(view.Window(), WM_COMMAND, 40072, 0); });  // "Close"
        EXPECT_TRUE(view.Run(frame, c.initialMove));
        EXPECT_EQ(view.ExitCommand(), 0);  // "Close" hands nothing on
        MoveNode* arrival = game->Current()->ArrivalNode();
        if (c.expectedNumber == 0) {
            EXPECT_EQ(arrival, nullptr) << c.initialMove;
        } else {
            ASSERT_NE(arrival, nullptr) << c.initialMove;
            EXPECT_EQ(arrival->moveNumber, c.expectedNumber);
            EXPECT_EQ(arrival->positionBefore->SideToMove(), c.initialMove > 0 ? kWhite : kBlack);
        }
    }
}

}  // namespace
}  // namespace velmora::gui
