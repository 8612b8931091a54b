// The search finds mates and wins material, scores draws as draws, and keeps to its limits.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>

#include "engine/search/Engine.h"
#include "engine/search/MoveGen.h"
#include "engine/search/Search.h"
#include "tests/engine/EngineTestSupport.h"

namespace velmora::engine {
namespace {

using testing::BoardOf;
using Clock = std::chrono::steady_clock;

SearchResult SearchToDepth(const std::string& fen, int depth) {
    Board board = BoardOf(fen);
    TranspositionTable table(1);
    Searcher searcher(table);
    SearchLimits limits;
    limits.depth = depth;
    const std::atomic<bool> stop{false};
    return searcher.Search(board, limits, stop);
}

struct MateCase {
    const char* fen;
    int moves;  // mate in this many moves of the side to move
};

TEST(EngineSearch, FindsMatesAtADepthLimit) {
    const MateCase kMates[] = {
        {"3r2k1/8/8/8/8/8/5PPP/6K1 b - - 0 1", 1},  // back rank, Black to move
        {"k7/7P/1K6/8/8/8/8/8 w - - 0 1", 1},       // by promotion
        {"7k/8/6K1/8/8/8/5Q2/8 w - - 0 1", 1},      // Qf7 would stalemate; Qf8 mates
        {"rr4k1/5ppp/8/8/8/3R4/3R1PPP/3Q2K1 w - - 0 1", 3},
    };
    for (const MateCase& test : kMates) {
        const SearchResult result = SearchToDepth(test.fen, 2 * test.moves + 1);
        ASSERT_TRUE(IsMateScore(result.info.score)) << test.fen << " score " << result.info.score;
        EXPECT_EQ(MateInMoves(result.info.score), test.moves) << test.fen;
        if (test.moves == 1) {
            Board board = BoardOf(test.fen);
            board.MakeMove(result.best);
            MoveList replies;
            GenerateMoves(board, replies);
            EXPECT_TRUE(board.InCheck() && replies.size == 0)
                << test.fen << " " << MoveText(result.best);
        }
    }
    // The side being mated sees it coming.
    const SearchResult mated = SearchToDepth("k7/8/1K6/8/8/8/8/7R b - - 0 1", 4);
    EXPECT_TRUE(IsMateScore(mated.info.score) && MateInMoves(mated.info.score) < 0)
        << mated.info.score;
}

TEST(EngineSearch, ScoresDrawsAsDraws) {
    // A queen up, but every move ends the fifty moves: a draw. With the clock at zero the same
    // position is a win, which shows the draw comes from the rule and material is seen.
    EXPECT_EQ(SearchToDepth("8/8/3k4/8/8/8/1q6/6K1 w - - 99 80", 4).info.score, 0);
    EXPECT_LT(SearchToDepth("8/8/3k4/8/8/8/1q6/6K1 w - - 0 80", 4).info.score, -500);
    // Bare kings, and king and knight against king.
    EXPECT_EQ(SearchToDepth("8/8/3k4/8/8/8/8/6K1 w - - 0 1", 5).info.score, 0);
    EXPECT_EQ(SearchToDepth("8/8/3k4/8/8/8/2n5/6K1 w - - 0 1", 5).info.score, 0);

    // Black, a queen down, repeats the position a third time: the game history counts.
    Engine engine(1);
    ASSERT_TRUE(engine.SetPosition("rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
                                   {"g1f3", "g8f6", "f3g1", "f6g8", "g1f3", "g8f6", "f3g1"}));
    SearchLimits limits;
    limits.depth = 5;
    Move best;
    int score = -1;
    engine.Go(limits, nullptr, [&](Move move, Move, const SearchInfo& info) {
        best = move;
        score = info.score;
    });
    engine.Wait();
    EXPECT_EQ(MoveText(best), "f6g8");
    EXPECT_EQ(score, 0);
}

long long MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

// Each limit ends the search with a move: a fixed time per move near that time, never far
// beyond (measured generously for slow builds); a nearly empty clock well within what is left.
TEST(EngineSearch, KeepsToTimeLimits) {
    struct Case {
        int moveTimeMs, clockMs;  // clock -1: none
        long long minMs, maxMs;
    };
    const Case kCases[] = {{150, -1, 100, 600}, {0, 300, 0, 250}};
    TranspositionTable table(1);
    Searcher searcher(table);
    const std::atomic<bool> stop{false};
    Board board = BoardOf("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
    for (const Case& test : kCases) {
        SearchLimits limits;
        limits.moveTimeMs = test.moveTimeMs;
        limits.timeMs[kWhiteSide] = limits.timeMs[kBlackSide] = test.clockMs;
        const Clock::time_point start = Clock::now();
        const SearchResult result = searcher.Search(board, limits, stop);
        const long long took = MillisecondsSince(start);
        EXPECT_GE(took, test.minMs) << test.moveTimeMs << " " << test.clockMs;
        EXPECT_LT(took, test.maxMs) << test.moveTimeMs << " " << test.clockMs;
        EXPECT_FALSE(result.best.IsNone());
    }
}

TEST(EngineTime, NeverPlansBeyondTheClock) {
    // Remaining, increment, moves to go: the hard limit stays inside the clock in every case.
    const int kClocks[][3] = {{60000, 1000, 0}, {100, 0, 1},     {40, 0, 0},
                              {0, 0, 0},        {300000, 0, 40}, {2000, 2000, 1}};
    for (const auto& c : kClocks) {
        SearchLimits limits;
        limits.timeMs[kBlackSide] = c[0];
        limits.incrementMs[kBlackSide] = c[1];
        limits.movesToGo = c[2];
        TimeControl time;
        time.Start(limits, kBlackSide);
        EXPECT_LE(time.SoftMs(), time.HardMs()) << c[0];
        EXPECT_LE(time.HardMs(), std::max(1, c[0] - limits.overheadMs))
            << c[0] << " " << c[1] << " " << c[2];
        EXPECT_GE(time.HardMs(), 1);
    }
}

}  // namespace
}  // namespace velmora::engine
