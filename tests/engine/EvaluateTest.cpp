// The evaluation treats both colours alike and sees material and mating chances; the hash
// table gives back what it was given, with mate scores counted from the node that asks.
#include <gtest/gtest.h>

#include "engine/search/Evaluate.h"
#include "engine/search/TranspositionTable.h"
#include "tests/engine/EngineTestSupport.h"

namespace velmora::engine {
namespace {

using testing::BoardOf;

// Each position and the same with the colours exchanged: ranks in reverse order, pieces of the
// other colour, the other side to move, castling mirrored.
TEST(EngineEvaluate, SeesBothColoursAlike) {
    const char* kPairs[][2] = {
        {kStartFen, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1"},
        {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
         "r3k2r/pppbbppp/2n2q1P/1P2p3/3pn3/BN2PNP1/P1PPQPB1/R3K2R b KQkq - 0 1"},
        {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", "8/4p1p1/8/1r3P1K/kp5R/3P4/2P5/8 b - - 0 1"},
        {"2kr1b1r/ppp1qppp/2n2n2/4p3/2B1P1b1/2NP1N2/PPP2PPP/R1BQ1RK1 w - - 4 8",
         "r1bq1rk1/ppp2ppp/2np1n2/2b1p1B1/4P3/2N2N2/PPP1QPPP/2KR1B1R b - - 4 8"},
        {"8/8/3k4/8/8/8/1q6/6K1 w - - 0 80", "6k1/1Q6/8/8/8/3K4/8/8 b - - 0 80"},
        {"6k1/5ppp/8/3P4/1P6/8/5PPP/3R2K1 b - - 0 1", "3r2k1/5ppp/8/1p6/3p4/8/5PPP/6K1 w - - 0 1"},
    };
    PawnCache pawns;
    for (const auto& pair : kPairs)
        EXPECT_EQ(Evaluate(BoardOf(pair[0]), pawns), Evaluate(BoardOf(pair[1]), pawns)) << pair[0];
}

TEST(EngineEvaluate, WeighsMaterialAndDrivesTheLoneKing) {
    PawnCache pawns;
    // A knight up: worth a few pawns, from either side's view.
    const int up =
        Evaluate(BoardOf("rnbqkb1r/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"), pawns);
    EXPECT_GT(up, 200);
    EXPECT_LT(Evaluate(BoardOf("rnbqkb1r/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1"), pawns),
              -200);
    // King and queen against king: the defending king is worse off in the corner than in the
    // centre, and worse off still with the other king close by.
    const int centre = Evaluate(BoardOf("8/8/8/3k4/8/8/2Q5/4K3 w - - 0 1"), pawns);
    const int corner = Evaluate(BoardOf("k7/8/8/8/8/8/2Q5/4K3 w - - 0 1"), pawns);
    const int cornered = Evaluate(BoardOf("k7/8/1K6/8/8/8/2Q5/8 w - - 0 1"), pawns);
    EXPECT_GT(corner, centre);
    EXPECT_GT(cornered, corner);
    // A lone minor piece ahead is scaled down: it cannot win alone.
    EXPECT_LT(Evaluate(BoardOf("8/8/3k4/8/8/8/2N5/6K1 w - - 0 1"), pawns), 100);
}

TEST(EngineHashTable, StoresProbesAndAdjustsMateScores) {
    TranspositionTable table(1);
    const std::uint64_t key = 0x123456789ABCDEF0ULL;
    const Move move(12, 28, kDoublePush);
    EXPECT_EQ(table.Probe(key), nullptr);
    table.Store(key, move, 57, 40, 6, Bound::Exact, 3);
    const TranspositionTable::Entry* entry = table.Probe(key);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(Move::FromBits(entry->move), move);
    EXPECT_EQ(entry->score, 57);
    EXPECT_EQ(entry->eval, 40);
    EXPECT_EQ(entry->depth, 6);
    EXPECT_EQ(table.Probe(key ^ (1ULL << 40)), nullptr);  // same slot, another position

    // A mate found 3 plies below the root, stored 5 plies from it, is the same mate seen from
    // a node 2 plies from the root: 3 plies further from there.
    table.Store(key, move, kMate - 8, 0, 6, Bound::Exact, 5);
    EXPECT_EQ(ScoreFromTable(table.Probe(key)->score, 2), kMate - 5);
    table.Store(key, move, -(kMate - 8), 0, 6, Bound::Exact, 5);
    EXPECT_EQ(ScoreFromTable(table.Probe(key)->score, 2), -(kMate - 5));

    table.Resize(2);
    EXPECT_EQ(table.Megabytes(), 2);
    EXPECT_EQ(table.Probe(key), nullptr);
}

}  // namespace
}  // namespace velmora::engine
