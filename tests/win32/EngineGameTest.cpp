// The game window against the scripted test engine, loaded from an "Engines" folder by the
// engine host as the program does.
#include <filesystem>

#include "TestFiles.h"
#include "engine/host/EngineHost.h"
#include "game/GameIndex.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/PgnParser.h"
#include "gamewindow/BoardView.h"
#include "resources/resource.h"
#include "ui/MenuBar.h"
#include "win32/GuiDriver.h"

namespace velmora::gui {
namespace {

class EngineGameTest : public GuiTest {
  protected:
    void SetUp() override {
        GuiTest::SetUp();
        const std::filesystem::path folder = root.dir / "Engines" / "Scripted";
        std::filesystem::create_directories(folder);
        std::filesystem::copy_file(
            std::string(VELMORA_TEST_ENGINES_DIR) + "/TestEngine/TestEngine.dll",
            folder / "Scripted.dll");
        scriptPath = (folder / "Scripted.txt").u16string();
        logPath = (folder / "Scripted.log").u16string();
    }
    void TearDown() override {
        App().engineHost = nullptr;
        host.reset();
        GuiTest::TearDown();
    }
    void UseScript(const std::string& script) {
        test::WriteBytes(scriptPath, script);
        host = std::make_unique<EngineHost>(root.dir.u16string() + u"\\");
        App().engineHost = host.get();
    }
    // Installs the program's own engine, built beside the program, as the only engine.
    void UseVelmora() {
        std::filesystem::remove_all(root.dir / "Engines" / "Scripted");
        const std::filesystem::path folder = root.dir / "Engines" / "Velmora";
        std::filesystem::create_directories(folder);
        std::filesystem::copy_file(std::string(VELMORA_ENGINES_DIR) + "/Velmora/Velmora.dll",
                                   folder / "Velmora.dll");
        host = std::make_unique<EngineHost>(root.dir.u16string() + u"\\");
        App().engineHost = host.get();
    }
    std::string EngineLog() const { return test::ReadBytes(logPath); }

    // Opens "Start..." and answers the dialog: play with the engine on Black, or analyse.
    void StartEngine(BoardView& view, bool analyse) {
        WhenPopup(HasControl(1077), [&, analyse](HWND dialog) {
            startDialogSeen = true;
            if (analyse) SendDlgItemMessageW(dialog, 1082, BM_CLICK, 0, 0);
            PressButton(dialog, 1077);
        });
        SendMessageW(view.Window(), WM_COMMAND, ID_ENGINE_START, 0);
    }
    std::u16string LastMoveSquares(Game& game) {
        MoveNode* node = game.Current()->ArrivalNode();
        char16_t text[kSanBufferSize];
        return node != nullptr ? std::u16string(text, WriteCoordinates(node, text)) : u"";
    }

    test::TempFolder root;
    std::unique_ptr<EngineHost> host;
    std::u16string scriptPath;
    std::u16string logPath;
    bool startDialogSeen = false;
};

TEST_F(EngineGameTest, PlaysUnderTheClockUntilTheEngineResigns) {
    UseScript(
        "flags 1\nname Scripted\ntime-control 0 0 300 0 0 0 5\n"
        "move e7e5\nmove b8c6\ngame-over 2 1-0 | Black resigns\n");
    Game game;
    BoardView view(game);
    int resignationBoxes = 0;
    std::wstring resignationText;
    WhenModal([&] {
        HWND window = view.Window();
        StartEngine(view, false);
        EXPECT_TRUE(view.UserPlaysWhite());
        EXPECT_FALSE(view.UserPlaysBlack());
        MoveByTaps(view, "e2", "e4");
        PumpUntil([&] { return game.Current()->SideToMove() == kWhite; });
        EXPECT_EQ(LastMoveSquares(game), u"e7e5");
        // A second of the user's time: the clock runs for White, under the engine's control of
        // 5 minutes and 5 seconds a move.
        SendMessageW(window, WM_TIMER, 1, 0);
        Sleep(1100);
        SendMessageW(window, WM_TIMER, 1, 0);
        EXPECT_TRUE(view.Clock().IsRunning(kClockWhite));
        EXPECT_EQ(view.Clock().Control(), (TimeControl{0, 0, 300, 0, 0, 0, 5}));
        HMENU menu = pocketpc::MenuBarMenu(pocketpc::FindMenuBar(window));
        EXPECT_TRUE(menu != nullptr && !(GetMenuState(menu, ID_LARGE_CLOCKS, MF_BYCOMMAND) &
                                         (MF_GRAYED | MF_DISABLED)));
        Repaint(window);
        EXPECT_TRUE(test::SaveWindowShot(window, L"engine-game-clock-portrait"));
        SendMessageW(window, WM_COMMAND, ID_LARGE_CLOCKS, 0);
        PhotographBothWays(window, L"engine-game-large-clocks");
        SendMessageW(window, WM_COMMAND, ID_LARGE_CLOCKS, 0);

        WhenPopup(Titled(L"1-0"), [&](HWND box) {
            ++resignationBoxes;
            resignationText = MessageText(box);
            SendMessageW(box, WM_COMMAND, IDOK, 0);
        });
        MoveByTaps(view, "g1", "f3");
        PumpUntil([&] { return game.result == 0 && resignationBoxes > 0; });
        EXPECT_EQ(LastMoveSquares(game), u"b8c6");
        Pump();
        const std::int32_t whiteLeft = view.Clock().Remaining(kClockWhite);
        EXPECT_GE(whiteLeft, 300) << "the increment makes up for the second spent";
        EXPECT_LE(whiteLeft, 305);
        // Closing is not what this test is about: the question about saving is skipped.
        game.modified = 0;
        SendMessageW(window, WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    EXPECT_TRUE(view.Run(frame, 0));
    EXPECT_TRUE(startDialogSeen);
    EXPECT_EQ(game.black.View(), u"Scripted");
    EXPECT_EQ(resignationBoxes, 1) << "the same game-over texts show one box";
    EXPECT_EQ(resignationText, L"Black resigns");
    EXPECT_EQ(game.result, 0);
    const std::string log = EngineLog();
    for (const char* line : {"Start 1 0 null", "PlayMove e2e4", "PlayMove g1f3", "Stop"})
        EXPECT_NE(log.find(line), std::string::npos) << line << " is not in:\n" << log;
    EXPECT_EQ(log.find("PlayMove e7e5"), std::string::npos) << "its own move is not sent back";
}

TEST_F(EngineGameTest, AnalysisShowsTheSearchInformationInPlaceOfTheComment) {
    UseScript(
        "flags 1\nshow-info 1\n"
        "info 12 345 4567890 3050 +0.35 e4 e5\\tNf3 Nc6 Bb5 a6 Ba4 Nf6 O-O Be7 Re1 b5 Bb3 d6 c3 "
        "O-O h3 Na5 Bc2 c5 d4 Qc7 Nbd2 cxd4 cxd4 Nc6 Nb3 a5 Be3 a4 Nbd2 Bd7\n"
        "move e7e5\n");
    Game game;
    BoardView view(game);
    WhenModal([&] {
        HWND window = view.Window();
        StartEngine(view, true);
        EXPECT_TRUE(view.UserPlaysWhite() && view.UserPlaysBlack());
        PumpUntil([&] { return !host->SearchLine().empty(); });
        const std::string line = host->SearchLine();
        EXPECT_EQ(line.substr(0, 13), "e4 e5 Nf3 Nc6");
        EXPECT_LE(line.size(), 127u);
        EXPECT_FALSE(IsWindowVisible(view.CommentPane()));
        PhotographBothWays(window, L"engine-analysis");
        game.modified = 0;
        SendMessageW(window, WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    EXPECT_TRUE(view.Run(frame, 0));
    EXPECT_NE(EngineLog().find("Start 1 1 null"), std::string::npos);
}

// An engine that dies after its first answer is reported, and the game is still there to save.
TEST_F(EngineGameTest, AnEngineThatDiesIsReportedAndTheGameIsKept) {
    UseScript("flags 1\nmove e7e5\ndie-after 1\n");
    const std::u16string path = root.Path("kept.pgn");
    test::WriteBytes(path,
                     "[Event \"Kept\"]\n[White \"Me\"]\n[Black \"?\"]\n[Result \"*\"]\n\n*\n");
    GameIndex index(path.c_str());
    ASSERT_EQ(index.Load(), 1);
    Game game(&index);
    ASSERT_TRUE(LoadGame(game, nullptr, index.At(0).Offset(), index.Count()).Ok());
    BoardView view(game);
    std::wstring stoppedText;
    bool stillActive = true;
    WhenModal([&] {
        HWND window = view.Window();
        StartEngine(view, false);
        MoveByTaps(view, "e2", "e4");
        PumpUntil([&] { return game.Current()->SideToMove() == kWhite; });
        MoveByTaps(view, "g1", "f3");
        WhenPopup(Titled(L"Velmora 2.0"), [&](HWND box) {
            stoppedText = MessageText(box);
            SendMessageW(box, WM_COMMAND, IDOK, 0);
        });
        // The check runs on one tick in ten of the engine's time.
        for (int tick = 0; tick < 10 && stoppedText.empty(); ++tick) {
            SendMessageW(window, WM_TIMER, 1, 0);
            Pump();
        }
        stillActive = view.EngineActive();
        SendMessageW(window, WM_COMMAND, ID_SAVE, 0);
        SendMessageW(window, WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    EXPECT_TRUE(view.Run(frame, 0));
    EXPECT_EQ(stoppedText, L"The Engine has unexpectedly stopped. Please restart Velmora");
    EXPECT_FALSE(stillActive);
    const std::string saved = test::ReadBytes(path);
    EXPECT_NE(saved.find("1. e4 e5 2. Nf3"), std::string::npos) << saved;
}

// Velmora's own engine library, as shipped: a level chosen from its menu, and a move answered.
TEST_F(EngineGameTest, VelmorasOwnEngineAnswersAtTheLevelChosenInItsMenu) {
    UseVelmora();
    Game game;
    BoardView view(game);
    WhenModal([&] {
        HWND window = view.Window();
        StartEngine(view, false);
        SendMessageW(window, WM_COMMAND, 45001, 0);  // "1 second per move"
        MoveByTaps(view, "e2", "e4");
        EXPECT_TRUE(PumpUntil([&] { return game.Current()->SideToMove() == kWhite; }, 8));
        SendMessageW(window, WM_TIMER, 1, 0);
        EXPECT_EQ(view.Clock().Control(), (TimeControl{1, 0, 0, 0, 0, 0, 0}));
        game.modified = 0;
        SendMessageW(window, WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    EXPECT_TRUE(view.Run(frame, 0));
    EXPECT_EQ(game.black.View(), u"Velmora");
}

}  // namespace
}  // namespace velmora::gui
