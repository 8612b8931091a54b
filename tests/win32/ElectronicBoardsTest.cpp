// The electronic boards end to end against the simulators that with-simulators.sh links to Wine
// COM ports, naming them in the environment; without it these tests are skipped.
#include <cstdlib>
#include <string>

#include "TestFiles.h"
#include "game/GameIndex.h"
#include "game/MoveTree.h"
#include "game/PgnParser.h"
#include "gamewindow/BoardView.h"
#include "resources/resource.h"
#include "shell/StarDiamondDialog.h"
#include "ui/MenuBar.h"
#include "win32/GuiDriver.h"

namespace velmora::gui {
namespace {

// The COM port number the driver gave a simulator, or 0 when there is none.
int SimulatorPort(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr ? std::atoi(value) : 0;
}

std::wstring PortText(int number) {
    return L"COM" + std::to_wstring(number);
}

// The moves of the main line in coordinates: "e2e4 e7e5".
std::string MainLine(Game& game) {
    std::string line;
    for (MoveNode* node = game.StartPosition().FirstContinuation(); node != nullptr;
         node = node->positionAfter->FirstContinuation()) {
        if (!line.empty()) line += ' ';
        line += static_cast<char>('a' + node->from % 8);
        line += static_cast<char>('1' + node->from / 8);
        line += static_cast<char>('a' + node->to % 8);
        line += static_cast<char>('1' + node->to / 8);
    }
    return line;
}

class ElectronicBoardsTest : public GuiTest {
  protected:
    // Chooses "Connect UCB" and answers "Select serial port" with the port typed in its box,
    // photographing the dialog once; then answers the message box titled boxCaption, if given.
    void ConnectBoard(BoardView& view, int port, bool photograph,
                      const std::wstring& boxCaption = L"",
                      std::function<void(HWND)> onBox = nullptr) {
        WhenPopup(Titled(L"Select serial port"), [=](HWND dialog) {
            HWND combo = GetDlgItem(dialog, IDC_PORT_LIST);
            SetWindowTextW(combo, PortText(port).c_str());
            if (photograph) PhotographBothWays(dialog, L"select-serial-port");
            PressButton(dialog, IDOK);
        });
        if (onBox) {
            WhenPopup(Titled(boxCaption), onBox);
        } else {
            // A port that does not open fails the test instead of leaving its box up.
            WhenPopup(Titled(L"Unable to connect UCB"), [](HWND box) {
                ADD_FAILURE() << "the port did not open";
                SendMessageW(box, WM_COMMAND, IDOK, 0);
            });
        }
        SendMessageW(view.Window(), WM_COMMAND, ID_CONNECT_UCB, 0);
        popupActions.clear();
    }
    test::TempFolder root;
};

// A port that is not there: the user is told, and the game window goes on without a link.
TEST_F(ElectronicBoardsTest, APortThatCannotBeOpenedIsReported) {
    Game game;
    BoardView view(game);
    std::wstring told;
    WhenModal([&] {
        ConnectBoard(view, 199, false, L"Unable to connect UCB", [&](HWND box) {
            told = MessageText(box);
            PhotographBothWays(box, L"unable-to-open-port");
            SendMessageW(box, WM_COMMAND, IDOK, 0);
        });
        EXPECT_FALSE(view.ChessboardConnected());
        MoveByTaps(view, "e2", "e4");
        game.modified = 0;
        SendMessageW(view.Window(), WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    EXPECT_TRUE(view.Run(frame, 0));
    EXPECT_EQ(told, L"Unable to open port");
    EXPECT_EQ(MainLine(game), "e2e4");
}

// The board (ucb-play.txt) sends 1. e4 and 2. Nf3, asks for the transmit mode and the position;
// the user's 1... e5 and 2... Nc6 go to the board with the hyphen; the clock runs with the link.
TEST_F(ElectronicBoardsTest, PlaysMovesBothWaysWithTheSimulatedBoard) {
    const int port = SimulatorPort("VELMORA_SIM_UCB_PLAY");
    if (port == 0) GTEST_SKIP() << "no simulated board (run through with-simulators.sh)";
    Game game;
    BoardView view(game);
    WhenModal([&] {
        HWND window = view.Window();
        ConnectBoard(view, port, true);
        EXPECT_TRUE(view.ChessboardConnected());
        HMENU menu = pocketpc::MenuBarMenu(view.MenuBar());
        EXPECT_TRUE(menu != nullptr &&
                    (GetMenuState(menu, ID_LARGE_CLOCKS, MF_BYCOMMAND) & MF_GRAYED) == 0);
        EXPECT_TRUE(PumpUntil([&] { return MainLine(game) == "e2e4"; }, 20)) << MainLine(game);
        MoveByTaps(view, "e7", "e5");
        EXPECT_TRUE(PumpUntil([&] { return MainLine(game) == "e2e4 e7e5 g1f3"; }, 20))
            << MainLine(game);
        MoveByTaps(view, "b8", "c6");
        // The board asks for the position after 2... Nc6 and then says goodbye with "X".
        EXPECT_TRUE(PumpUntil([&] { return WindowText(view.CommentPane()) == L"X"; }, 20));
        // The clock runs with the link, for the side to move: White after 2... Nc6.
        SendMessageW(window, WM_TIMER, 1, 0);
        EXPECT_TRUE(view.Clock().IsRunning(kClockWhite));
        PhotographBothWays(window, L"board-connected");
        game.modified = 0;
        SendMessageW(window, WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    EXPECT_TRUE(view.Run(frame, 0));
    EXPECT_EQ(MainLine(game), "e2e4 e7e5 g1f3 b8c6");
}

// The board sends 1. e4, hears 1... e5 and vanishes: the next move cannot be sent, the user is
// told, the link is dropped, and the game with every move is saved.
TEST_F(ElectronicBoardsTest, ABoardThatVanishesIsReportedAndTheGameIsKept) {
    const int port = SimulatorPort("VELMORA_SIM_UCB_VANISH");
    if (port == 0) GTEST_SKIP() << "no simulated board (run through with-simulators.sh)";
    const std::u16string path = root.Path("kept.pgn");
    test::WriteBytes(path,
                     "[Event \"Kept\"]\n[White \"Me\"]\n[Black \"?\"]\n[Result \"*\"]\n\n*\n");
    GameIndex index(path.c_str());
    ASSERT_EQ(index.Load(), 1);
    Game game(&index);
    ASSERT_TRUE(LoadGame(game, nullptr, index.At(0).Offset(), index.Count()).Ok());
    BoardView view(game);
    std::wstring boxText;
    WhenModal([&] {
        HWND window = view.Window();
        ConnectBoard(view, port, false);
        PumpUntil([&] { return MainLine(game) == "e2e4"; }, 20);
        MoveByTaps(view, "e7", "e5");
        // The simulator ends once it has the move; its end of the line closes with it.
        Sleep(1500);
        Pump();
        WhenPopup(Titled(L"Communication error"), [&](HWND box) {
            boxText = MessageText(box);
            SendMessageW(box, WM_COMMAND, IDOK, 0);
        });
        PumpUntil([&] { return !popupActions.empty(); }, 1);
        MoveByTaps(view, "g1", "f3");
        popupActions.clear();
        EXPECT_FALSE(view.ChessboardConnected());
        SendMessageW(window, WM_COMMAND, ID_SAVE, 0);
        SendMessageW(window, WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    EXPECT_TRUE(view.Run(frame, 0));
    EXPECT_EQ(boxText, L"Unable to send move to Chessboard");
    const std::string saved = test::ReadBytes(path);
    EXPECT_NE(saved.find("1. e4 e5 2. Nf3"), std::string::npos) << saved;
}

// Runs the import dialog on port (Connect, Import) and reads and closes the box that ends it.
struct ImportRun {
    std::unique_ptr<Game> game;
    std::wstring boxText, boxCaption;
    std::vector<std::wstring> messages;
    bool importEnabledAfter = false;
};
ImportRun RunImport(HWND frame, int port, const std::wstring& shotName) {
    ImportRun run;
    StarDiamondDialog dialog;
    WhenModal([&] {
        HWND window = dialog.Window();
        SetWindowTextW(GetDlgItem(window, IDC_PORT_LIST), PortText(port).c_str());
        PressButton(window, IDC_STAR_DIAMOND_CONNECT);
        PressButton(window, IDC_STAR_DIAMOND_IMPORT);
        WhenPopup([&](HWND popup) { return popup != window; },
                  [&](HWND box) {
                      run.boxText = MessageText(box);
                      run.boxCaption = WindowText(box);
                      SendMessageW(box, WM_COMMAND, IDOK, 0);
                  });
        PumpUntil([&] { return !run.boxText.empty(); }, 40);
        popupActions.clear();
        PhotographBothWays(window, shotName);
        run.messages = ListBoxRows(GetDlgItem(window, IDC_STAR_DIAMOND_MESSAGES));
        run.importEnabledAfter = IsWindowEnabled(GetDlgItem(window, IDC_STAR_DIAMOND_IMPORT));
        PressButton(window, IDOK);
    });
    if (dialog.DoModal(frame) == 1) run.game = dialog.TakeGame();
    return run;
}

// The stored game comes over whole, with "N moves" in the list.
TEST_F(ElectronicBoardsTest, ImportsTheGameOfTheSimulatedStarDiamond) {
    const int port = SimulatorPort("VELMORA_SIM_STAR_DIAMOND");
    if (port == 0) GTEST_SKIP() << "no simulated Star Diamond (run through with-simulators.sh)";
    ImportRun run = RunImport(frame, port, L"star-diamond-imported");
    EXPECT_EQ(run.boxText, L"All moves received");
    EXPECT_EQ(run.boxCaption, L"Import finished");
    ASSERT_NE(run.game, nullptr);
    EXPECT_TRUE(run.game->modified) << "an imported game is offered for saving";
    EXPECT_EQ(run.game->SetUpFlag(), 0u);
    const std::string line = MainLine(*run.game);
    const std::size_t moves = (line.size() + 1) / 5;
    EXPECT_TRUE(line.starts_with("e2e4")) << line;
    EXPECT_GE(moves, 10u);
    EXPECT_NE(
        std::find(run.messages.begin(), run.messages.end(), std::to_wstring(moves) + L" moves"),
        run.messages.end());
}

// An illegal move stops the import: a message, no game, and "Import" can be pressed again.
TEST_F(ElectronicBoardsTest, AnIllegalMoveFromTheStarDiamondStopsTheImport) {
    const int port = SimulatorPort("VELMORA_SIM_STAR_DIAMOND_ILLEGAL");
    if (port == 0) GTEST_SKIP() << "no simulated Star Diamond (run through with-simulators.sh)";
    ImportRun run = RunImport(frame, port, L"star-diamond-bad-move");
    EXPECT_EQ(run.boxText, L"Unable to understand Star Diamond move");
    EXPECT_EQ(run.boxCaption, L"Error");
    EXPECT_EQ(run.game, nullptr);
    EXPECT_TRUE(run.importEnabledAfter);
}

}  // namespace
}  // namespace velmora::gui
