// The UCI bridge's conversation fed with recorded lines, without a process: what it sends,
// what it reads from "info" lines of real engines, and which moves it passes on.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/bridge/UciBridge.h"

namespace velmora::engine {
namespace {

TEST(UciBridgeLines, WritesPositionsAndGoLines) {
    EXPECT_EQ(PositionLine("", {}), "position startpos");
    EXPECT_EQ(PositionLine("", {"e2e4", "e7e5"}), "position startpos moves e2e4 e7e5");
    EXPECT_EQ(PositionLine("8/8/8/8/8/8/8/K1k5 w - - 0 1", {"a1a2"}),
              "position fen 8/8/8/8/8/8/8/K1k5 w - - 0 1 moves a1a2");

    SearchLimits infinite;
    infinite.infinite = true;
    SearchLimits perMove;
    perMove.moveTimeMs = 4500;
    SearchLimits clock;
    clock.timeMs[0] = 298000;
    clock.timeMs[1] = 300000;
    clock.incrementMs[0] = clock.incrementMs[1] = 3000;
    SearchLimits control = clock;
    control.incrementMs[0] = control.incrementMs[1] = 0;
    control.movesToGo = 17;
    EXPECT_EQ(GoLine(infinite), "go infinite");
    EXPECT_EQ(GoLine(perMove), "go movetime 4500");
    EXPECT_EQ(GoLine(clock), "go wtime 298000 btime 300000 winc 3000 binc 3000");
    EXPECT_EQ(GoLine(control), "go wtime 298000 btime 300000 winc 0 binc 0 movestogo 17");
}

TEST(UciBridgeLines, ReadsInfoLinesOfRealEngines) {
    struct Case {
        const char* line;
        bool shown;
        int depth;
        bool mate;
        int score;
        std::uint64_t nodes, nps;
        std::int64_t time;
        std::vector<std::string> pv;
    };
    const Case kCases[] = {
        {"info depth 20 seldepth 27 multipv 1 score cp 31 nodes 1234567 nps 987654 hashfull 412 "
         "tbhits 0 time 1250 pv e2e4 e7e5 g1f3 b8c6",
         true,
         20,
         false,
         31,
         1234567,
         987654,
         1250,
         {"e2e4", "e7e5", "g1f3", "b8c6"}},
        // Any order; the speed worked out when the engine does not give it.
        {"info pv d2d4 d7d5 score mate -3 time 40 nodes 1000 depth 7",
         true,
         7,
         true,
         -3,
         1000,
         25000,
         40,
         {"d2d4", "d7d5"}},
        {"info depth 12 score cp 50 lowerbound nodes 5000 time 10 pv e7e8q",
         true,
         12,
         false,
         50,
         5000,
         500000,
         10,
         {"e7e8q"}},
        // Unknown words and their numbers are skipped.
        {"info depth 9 score cp -15 wdl 500 300 200 time 100 nodes 20000 pv g1f3",
         true,
         9,
         false,
         -15,
         20000,
         200000,
         100,
         {"g1f3"}},
        {"info depth 14 currmove e2e4 currmovenumber 1", false, 14, false, 0, 0, 0, 0, {}},
        {"info string NNUE evaluation using nn-5af11540bbfe.nnue enabled depth 99 score cp 1",
         false,
         0,
         false,
         0,
         0,
         0,
         0,
         {}},
        {"info depth 20 multipv 2 score cp -40 nodes 77 time 9 pv d2d4",
         false,
         0,
         false,
         0,
         0,
         0,
         0,
         {}},
        {"info depth 3 score cp 8 refutation d1h5 g6h5 time 2 nodes 300 pv b1c3",
         true,
         3,
         false,
         8,
         300,
         150000,
         2,
         {"b1c3"}},
        {"bestmove e2e4", false, 0, false, 0, 0, 0, 0, {}},
        {"info depth x score cp 12", true, 0, false, 12, 0, 0, 0, {}},
    };
    for (const Case& test : kCases) {
        SearchReport report;
        EXPECT_EQ(ReadInfoLine(test.line, &report), test.shown) << test.line;
        EXPECT_EQ(report.depth, test.depth) << test.line;
        EXPECT_EQ(report.mate, test.mate) << test.line;
        EXPECT_EQ(report.score, test.score) << test.line;
        EXPECT_EQ(report.nodes, test.nodes) << test.line;
        EXPECT_EQ(report.nodesPerSecond, test.nps) << test.line;
        EXPECT_EQ(report.timeMs, test.time) << test.line;
        EXPECT_EQ(report.line, test.pv) << test.line;
    }

    // A line keeps what the one before gave and it does not repeat.
    SearchReport report;
    ASSERT_TRUE(
        ReadInfoLine("info depth 8 score cp 20 nodes 9000 nps 90000 time 100 pv a2a3", &report));
    ASSERT_TRUE(ReadInfoLine("info score cp 25 upperbound", &report));
    EXPECT_EQ(report.depth, 8);
    EXPECT_EQ(report.score, 25);
    EXPECT_EQ(report.line, std::vector<std::string>{"a2a3"});
}

class RecordedConversation : public ::testing::Test, UciChannel, UciListener {
  protected:
    void SendLine(const std::string& line) override { sent_.push_back(line); }
    void OnReport(const SearchReport& report) override { scores_.push_back(report.score); }
    void OnBestMove(const std::string& move) override { moves_.push_back(move); }

    // Feeds the engine's lines and returns what the bridge sent meanwhile.
    std::vector<std::string> Hear(const std::vector<std::string>& lines) {
        sent_.clear();
        for (const std::string& line : lines)
            bridge_.HandleLine(line);
        return Sent();
    }
    std::vector<std::string> Sent() {
        std::vector<std::string> sent;
        sent.swap(sent_);
        return sent;
    }
    void ShakeHands() {
        bridge_.BeginHandshake({});
        Hear({"uciok", "readyok"});
        sent_.clear();
    }

    UciBridge bridge_{*this, *this};
    std::vector<std::string> sent_;
    std::vector<int> scores_;
    std::vector<std::string> moves_;
    SearchLimits infinite_ = [] {
        SearchLimits limits;
        limits.infinite = true;
        return limits;
    }();
    SearchLimits oneSecond_ = [] {
        SearchLimits limits;
        limits.moveTimeMs = 900;
        return limits;
    }();
};

TEST_F(RecordedConversation, ShakesHandsAndSetsTheOptions) {
    bridge_.BeginHandshake({{"Hash", "16"}, {"Move Overhead", "100"}});
    EXPECT_EQ(Sent(), std::vector<std::string>{"uci"});
    // A search asked for before the engine is ready waits for it.
    bridge_.Think("", {}, oneSecond_);
    EXPECT_TRUE(Sent().empty());
    EXPECT_TRUE(Hear({"Stockfish 16 by the Stockfish developers (see AUTHORS file)",
                      "id name Stockfish 16", "id author the Stockfish developers",
                      "option name Hash type spin default 16 min 1 max 33554432"})
                    .empty());
    EXPECT_EQ(bridge_.EngineName(), "Stockfish 16");
    EXPECT_EQ(Hear({"uciok"}),
              (std::vector<std::string>{"setoption name Hash value 16",
                                        "setoption name Move Overhead value 100", "isready"}));
    EXPECT_FALSE(bridge_.Ready());
    EXPECT_EQ(Hear({"readyok"}),
              (std::vector<std::string>{"position startpos", "go movetime 900"}));
    EXPECT_TRUE(bridge_.Ready());
}

TEST_F(RecordedConversation, PassesOnReportsAndTheMove) {
    ShakeHands();
    bridge_.Think("", {"e2e4"}, oneSecond_);
    EXPECT_EQ(Sent(),
              (std::vector<std::string>{"position startpos moves e2e4", "go movetime 900"}));
    Hear({"info depth 1 seldepth 1 score cp -20 nodes 20 nps 20000 time 1 pv e7e5",
          "info string a note", "info depth 2 score cp -12 nodes 80 time 2 pv e7e5 g1f3",
          "bestmove e7e5 ponder g1f3"});
    EXPECT_EQ(scores_, (std::vector<int>{-20, -12}));
    EXPECT_EQ(moves_, std::vector<std::string>{"e7e5"});
    EXPECT_FALSE(bridge_.Searching());

    // Both ways of saying "no move" come as an empty move; a stray bestmove is dropped.
    for (const char* none : {"bestmove (none)", "bestmove 0000"}) {
        moves_.clear();
        bridge_.Think("6k1/8/8/8/8/8/8/5RRK b - - 0 1", {}, oneSecond_);
        Hear({none, "bestmove a1a2"});
        EXPECT_EQ(moves_, std::vector<std::string>{""}) << none;
    }
}

TEST_F(RecordedConversation, DropsTheMoveOfAnAbandonedAnalysis) {
    ShakeHands();
    bridge_.Think("", {}, infinite_);
    EXPECT_EQ(Sent(), (std::vector<std::string>{"position startpos", "go infinite"}));
    Hear({"info depth 5 score cp 30 time 5 nodes 100 pv e2e4"});
    bridge_.Stop(true);
    EXPECT_EQ(Sent(), std::vector<std::string>{"stop"});
    bridge_.Stop(true);
    EXPECT_TRUE(Sent().empty());  // one "stop" is enough
    Hear({"info depth 6 score cp 35 time 9 nodes 200 pv e2e4", "bestmove e2e4 ponder e7e5"});
    EXPECT_EQ(scores_, std::vector<int>{30});
    EXPECT_TRUE(moves_.empty());
}

TEST_F(RecordedConversation, SendsANewSearchOnlyAfterTheOldOneHasAnswered) {
    ShakeHands();
    bridge_.Think("", {}, infinite_);
    Sent();
    // The user moves during the analysis: the old search is stopped, and the new one waits.
    bridge_.Think("", {"d2d4"}, infinite_);
    EXPECT_EQ(Sent(), std::vector<std::string>{"stop"});
    bridge_.Think("", {"d2d4", "d7d5"}, infinite_);
    EXPECT_TRUE(Sent().empty());
    EXPECT_EQ(Hear({"info depth 9 score cp 10 time 5 nodes 100 pv e2e4", "bestmove e2e4"}),
              (std::vector<std::string>{"position startpos moves d2d4 d7d5", "go infinite"}));
    EXPECT_TRUE(scores_.empty());
    EXPECT_TRUE(moves_.empty());
    Hear({"info depth 1 score cp 5 time 1 nodes 10 pv c2c4"});
    EXPECT_EQ(scores_, std::vector<int>{5});
}

TEST_F(RecordedConversation, MoveNowStopsAndPlaysTheMove) {
    ShakeHands();
    bridge_.Think("", {}, oneSecond_);
    Sent();
    bridge_.Stop(false);
    EXPECT_EQ(Sent(), std::vector<std::string>{"stop"});
    Hear({"bestmove d2d4"});
    EXPECT_EQ(moves_, std::vector<std::string>{"d2d4"});
}

TEST_F(RecordedConversation, WaitsForTheEngineAfterANewGame) {
    ShakeHands();
    bridge_.Think("", {}, infinite_);
    Sent();
    bridge_.NewGame();
    EXPECT_EQ(Sent(), (std::vector<std::string>{"stop", "ucinewgame", "isready"}));
    bridge_.Think("", {"e2e4"}, oneSecond_);
    EXPECT_TRUE(Hear({"bestmove e2e4"}).empty());
    EXPECT_EQ(Hear({"readyok"}),
              (std::vector<std::string>{"position startpos moves e2e4", "go movetime 900"}));
    EXPECT_TRUE(moves_.empty());
    bridge_.Quit();
    EXPECT_EQ(Sent(), (std::vector<std::string>{"stop", "quit"}));
}

}  // namespace
}  // namespace velmora::engine
