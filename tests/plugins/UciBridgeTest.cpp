// The UCI bridge's conversation fed with recorded lines, without a process: what it sends,
// what it reads from "info" lines of real engines, and which moves it passes on.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/bridge/UciBridge.h"

namespace velmora::engine {
namespace {

// Moves to go reaches the engine ("40 moves in 2 hours"); the other "go" lines are checked
// through the library (UciBridgeEngineTest).
TEST(UciBridgeLines, WritesMovesToGoAndZeroIncrements) {
    SearchLimits control;
    control.timeMs[0] = 298000;
    control.timeMs[1] = 300000;
    control.movesToGo = 17;
    EXPECT_EQ(GoLine(control), "go wtime 298000 btime 300000 winc 0 binc 0 movestogo 17");
}

// Writes what a report holds, for comparing in one piece.
std::string Described(const SearchReport& report) {
    std::string text = "depth " + std::to_string(report.depth) + (report.mate ? " mate " : " cp ") +
                       std::to_string(report.score) + " nodes " + std::to_string(report.nodes) +
                       " nps " + std::to_string(report.nodesPerSecond) + " time " +
                       std::to_string(report.timeMs) + " pv";
    for (const std::string& move : report.line)
        text += " " + move;
    return text;
}

TEST(UciBridgeLines, ReadsInfoLinesOfRealEngines) {
    struct Case {
        const char* line;
        bool shown;
        const char* read;
    };
    const Case kCases[] = {
        {"info depth 20 seldepth 27 multipv 1 score cp 31 hashfull 412 tbhits 0 pv e2e4 e7e5", true,
         "depth 20 cp 31 nodes 0 nps 0 time 0 pv e2e4 e7e5"},
        // Any order; the speed is worked out when the engine does not give it.
        {"info pv d2d4 d7d5 score mate -3 time 40 nodes 1000 depth 7", true,
         "depth 7 mate -3 nodes 1000 nps 25000 time 40 pv d2d4 d7d5"},
        // Unknown words and their numbers are skipped.
        {"info depth 9 score cp -15 wdl 500 300 200 time 100 nodes 20000 pv g1f3", true,
         "depth 9 cp -15 nodes 20000 nps 200000 time 100 pv g1f3"},
        {"info depth 14 currmove e2e4 currmovenumber 1", false,
         "depth 14 cp 0 nodes 0 nps 0 time 0 pv"},
        // Free text, the other lines of a multi-line search and other commands change nothing.
        {"info string NNUE evaluation using nn-5af11540bbfe.nnue enabled depth 99 score cp 1",
         false, "depth 0 cp 0 nodes 0 nps 0 time 0 pv"},
        {"info depth 20 multipv 2 score cp -40 nodes 77 time 9 pv d2d4", false,
         "depth 0 cp 0 nodes 0 nps 0 time 0 pv"},
    };
    for (const Case& test : kCases) {
        SearchReport report;
        EXPECT_EQ(ReadInfoLine(test.line, &report), test.shown) << test.line;
        EXPECT_EQ(Described(report), test.read) << test.line;
    }
    // A line keeps what the one before gave and it does not repeat.
    SearchReport report;
    ASSERT_TRUE(
        ReadInfoLine("info depth 8 score cp 20 nodes 9000 nps 90000 time 100 pv a2a3", &report));
    ASSERT_TRUE(ReadInfoLine("info score cp 25 upperbound", &report));
    EXPECT_EQ(Described(report), "depth 8 cp 25 nodes 9000 nps 90000 time 100 pv a2a3");
}

// The conversation's own corners, below the library: searches that wait for the handshake or
// for the answer to a "stop", and the ways of saying "no move".
TEST(UciBridgeLines, KeepsTheConversationInOrder) {
    struct Recorder : UciChannel, UciListener {
        void SendLine(const std::string& line) override { sent += line + "; "; }
        void OnReport(const SearchReport& report) override { sent += "(report); "; }
        void OnBestMove(const std::string& move) override { sent += "(move " + move + "); "; }
        std::string sent;
    } recorder;
    UciBridge bridge(recorder, recorder);
    SearchLimits infinite;
    infinite.infinite = true;
    bridge.BeginHandshake({{"Hash", "16"}});
    bridge.Think("", {}, infinite);
    for (const char* line :
         {"Stockfish 16 by the Stockfish developers", "id name Stockfish 16",
          "option name Hash type spin default 16 min 1 max 33554432", "uciok", "readyok"})
        bridge.HandleLine(line);
    EXPECT_EQ(bridge.EngineName(), "Stockfish 16");
    bridge.Think("", {"e2e4"}, infinite);
    bridge.Think("", {"d2d4"}, infinite);  // replaces the search still waiting
    for (const char* line : {"info depth 1 score cp 1 pv e2e4", "bestmove e2e4",
                             "info depth 1 score cp 2 pv d7d5", "bestmove (none)", "bestmove a1a2"})
        bridge.HandleLine(line);
    bridge.Think("", {}, infinite);
    bridge.HandleLine("bestmove 0000");
    EXPECT_EQ(recorder.sent,
              "uci; setoption name Hash value 16; isready; position startpos; go infinite; "
              "stop; position startpos moves d2d4; go infinite; (report); (move ); "
              "position startpos; go infinite; (move ); ");
}

}  // namespace
}  // namespace velmora::engine
