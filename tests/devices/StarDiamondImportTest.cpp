// The Star Diamond import fed recorded conversations: requests on their timers, the position
// dump, the move list, and how the import ends (finished, failed, or the computer silent).
#include "devices/StarDiamondImport.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "game/Game.h"
#include "game/MoveTree.h"
#include "tests/core/TestBoards.h"
#include "tests/models/ViewedGame.h"

namespace velmora {
namespace {

using Lines = std::vector<std::string>;
constexpr int kRequest = StarDiamondImport::kRequestTimer;
constexpr int kWatchdog = StarDiamondImport::kWatchdogTimer;
constexpr const char* kHeader = ".  aa bb cc dd ee ff gg hh";
const Lines kStartRanks = {
    ".8 br bn bb bq bk bb bn br",    ".7 bp bp bp bp bp bp bp bp", ".6", ".5", ".4", ".3",
    ".2 WP WP WP WP WP WP WP WP  +", ".1 WR WN WB WQ WK WB WN WR"};
const std::string kPositionBox = "Unable to understand Star Diamond Position | Error | error";
const std::string kMoveBox = "Unable to understand Star Diamond move | Error | error";
const std::string kSilentBox =
    "Star Diamond unavailable, please close this window, turn the Star Diamond off and then on "
    "again and try again | Star Diamond not available | error";

struct ComputerHost final : StarDiamondHost {
    bool SendToComputer(const char* text) override {
        log.push_back(std::string("send ") + text);
        return true;
    }
    void SetTimer(int id, int milliseconds) override {
        log.push_back("timer " + std::to_string(id) + " " + std::to_string(milliseconds));
        armed.insert(id);
    }
    void KillTimer(int id) override {
        log.push_back("kill " + std::to_string(id));
        armed.erase(id);
    }
    void AppendMessage(const char16_t*) override {}
    void ShowMessage(const char16_t* text, const char16_t* caption, bool error) override {
        boxes.push_back(testing::Narrow(text) + " | " + testing::Narrow(caption) +
                        (error ? " | error" : " | information"));
        log.push_back("box");
    }
    void ImportStopped() override {
        ++stopped;
        log.push_back("stopped");
    }
    Lines log, boxes;
    std::set<int> armed;
    int stopped = 0;
};

struct Computer {
    void Line(const std::string& line) { import.OnLine(line.c_str()); }
    // Fires a one-shot timer, which must be armed.
    void Fire(int id) {
        EXPECT_EQ(host.armed.erase(id), 1u) << "timer " << id << " not armed";
        import.OnTimer(id);
    }
    // Runs an import through: the two pacing lines, the dump between its headers, then each
    // line of the move list after its request, until the import ends.
    void Run(const Lines& ranks, const Lines& moves) {
        import.Start();
        Line("OK");
        Fire(kRequest);
        Line("Star Diamond");
        Fire(kRequest);
        Line(kHeader);
        for (const std::string& rank : ranks)
            Line(rank);
        Line(kHeader);
        if (import.Step() != 3) return;
        for (const std::string& line : moves) {
            Fire(kRequest);
            Line(line);
            if (!import.Importing()) return;
        }
    }
    // The game's main line, "e2e4 e7e5".
    std::string MainLine() const {
        std::string text;
        for (const MoveNode* node = import.CurrentGame()->StartPosition().FirstContinuation(); node;
             node = node->positionAfter->FirstContinuation()) {
            text += (text.empty() ? "" : " ") + testing::Text(node);
        }
        return text;
    }
    // Whether the import ended without a game, its timers killed before the box that says box.
    void ExpectFailed(const std::string& box) const {
        EXPECT_EQ(import.CurrentGame(), nullptr);
        EXPECT_FALSE(import.Importing());
        EXPECT_EQ(host.boxes, Lines{box});
        EXPECT_EQ(host.stopped, 1);
        EXPECT_EQ(host.log.back(), "box");
        EXPECT_TRUE(host.armed.empty());
    }
    ComputerHost host;
    StarDiamondImport import{host};
};

TEST(StarDiamondImport, FullImportRequestsOnItsTimersAndBuildsTheGame) {
    Computer c;
    c.Run(kStartRanks,
          {"Replay 3", "White to move", "Move  1 e2-e4", "Move  1 e7-e5", "Move  2 g1-f3"});

    // Each request goes out when its timer fires, the result before the bare lines that fetch
    // the move list; the last move ends the import with both timers killed before the box.
    Lines sent;
    for (const std::string& step : c.host.log) {
        if (step.starts_with("send ")) sent.push_back(step.substr(5));
    }
    EXPECT_EQ(sent,
              (Lines{"Origin\r\n", "H\r\n", "pos\r\n", "res\r\n", "\r\n", "\r\n", "\r\n", "\r\n"}));
    const Lines end(c.host.log.end() - 5, c.host.log.end());
    EXPECT_EQ(end, (Lines{"kill 1001", "kill 1002", "stopped", "box", "timer 1001 200"}));
    EXPECT_EQ(c.host.boxes, Lines{"All moves received | Import finished | information"});

    ASSERT_NE(c.import.CurrentGame(), nullptr);
    EXPECT_EQ(c.MainLine(), "e2e4 e7e5 g1f3");
    EXPECT_FALSE(c.import.CurrentGame()->StartPosition().setUp);
    EXPECT_EQ(c.import.CurrentGame()->modified, 1);
    EXPECT_FALSE(c.import.Importing());
}

// A set-up position comes over with its side to move, its moves with their promotions; with no
// moves the import finishes on the position. Intended: the side to move is read at position 28
// of the line numbered 2 only, not from rank 1.
TEST(StarDiamondImport, SetUpPositionsImportWithTheirSideToMoveAndPromotions) {
    const Lines kingsAndPawn = {".8 .. .. .. .. .. .. .. bk", ".7 WP",
                                ".2 .. .. .. .. .. .. .. ..  +", ".1 .. .. WK"};
    const struct {
        Lines ranks, moves;
        const char* mainLine;
        Colour side;
    } cases[] = {
        {kingsAndPawn, {"replay 1", "Move 31 a7-a8/N"}, "a7a8n", kWhite},
        {kingsAndPawn, {"Replay 1", "Move 31 a7-a8"}, "a7a8q", kWhite},
        {{".8 .. .. .. .. bk", ".2", ".1 .. .. .. .. WK .. .. WR"},
         {"Replay 1", "Move 40 e8-d8"},
         "e8d8",
         kBlack},
        {{".8 bk", ".2 .. .. .. .. .. .. .. .. +", ".1 WK"}, {"Replay 0"}, "", kBlack},  // at 27
        {{".8 bk", ".1 WK .. .. .. .. .. .. ..  +", ".2"}, {"REPLAY 0"}, "", kBlack},
        {{".8 bk", ".2 .. .. .. .. .. .. .. ..  +", ".1 WK .. .. .. .. .. .. ..  -"},
         {"Replay 0"},
         "",
         kWhite},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.mainLine);
        Computer computer;
        computer.Run(c.ranks, c.moves);
        ASSERT_NE(computer.import.CurrentGame(), nullptr);
        EXPECT_EQ(computer.host.boxes,
                  Lines{std::string(*c.mainLine ? "All moves received" : "No moves played") +
                        " | Import finished | information"});
        EXPECT_EQ(computer.MainLine(), c.mainLine);
        EXPECT_TRUE(computer.import.CurrentGame()->StartPosition().setUp);
        EXPECT_EQ(computer.import.CurrentGame()->StartPosition().SideToMove(), c.side);
    }
}

// A rank line out of range ends the import. Each bad move line follows one that is ignored (it
// does not begin with 'M') but holds a legal move where moves are read, so a line read past its
// end would play it.
TEST(StarDiamondImport, BadRanksOrMovesStopTheImport) {
    for (const char* rank : {".9 WP", "."}) {
        SCOPED_TRACE(rank);
        Computer computer;
        computer.Run({".4 bp bp bp bp bp bp bp bp", rank}, {});
        computer.ExpectFailed(kPositionBox);
    }
    const char* lines[] = {"Move 31 b7-b8/Z", "Move  1 d1-d3", "Move  1 d1-e", "Move  1 i1-i2",
                           "M"};
    for (const char* line : lines) {
        SCOPED_TRACE(line);
        Computer computer;
        computer.Run({".8 bk", ".7 .. WP", ".1 .. .. .. .. WK"},
                     {"Replay 2", "Move  1 e1-d1", "Comment d1-e1", line, "Move  2 d1-e1"});
        computer.ExpectFailed(kMoveBox);
    }
}

// Started again after a silent computer failed it, a finished import keeps its game even when a
// late line re-arms the watchdog.
TEST(StarDiamondImport, SilentComputerEndsTheImportUnlessItFinished) {
    Computer c;  // nothing after "Origin"
    c.import.Start();
    c.Fire(kWatchdog);
    c.ExpectFailed(kSilentBox);

    c.Run(kStartRanks, {"Replay 1", "Move  1 e2-e4"});
    c.Line("Result 1-0");
    c.Fire(kWatchdog);
    ASSERT_NE(c.import.CurrentGame(), nullptr);
    EXPECT_EQ(c.MainLine(), "e2e4");
    EXPECT_EQ(c.host.stopped, 2);
    // The dialog takes the game.
    EXPECT_NE(c.import.TakeGame(), nullptr);
    EXPECT_EQ(c.import.CurrentGame(), nullptr);
}

}  // namespace
}  // namespace velmora
