// The evaluation treats both colours alike; the hash table tells positions in one slot apart and
// counts mate scores from the node that asks. Material and mates are seen through the search.
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
        {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
         "r3k2r/pppbbppp/2n2q1P/1P2p3/3pn3/BN2PNP1/P1PPQPB1/R3K2R b KQkq - 0 1"},
        {"2kr1b1r/ppp1qppp/2n2n2/4p3/2B1P1b1/2NP1N2/PPP2PPP/R1BQ1RK1 w - - 4 8",
         "r1bq1rk1/ppp2ppp/2np1n2/2b1p1B1/4P3/2N2N2/PPP1QPPP/2KR1B1R b - - 4 8"},
        {"6k1/5ppp/8/3P4/1P6/8/5PPP/3R2K1 b - - 0 1", "3r2k1/5ppp/8/1p6/3p4/8/5PPP/6K1 w - - 0 1"},
    };
    PawnCache pawns;
    for (const auto& pair : kPairs)
        EXPECT_EQ(Evaluate(BoardOf(pair[0]), pawns), Evaluate(BoardOf(pair[1]), pawns)) << pair[0];
}

TEST(EngineHashTable, StoresProbesAndAdjustsMateScores) {
    TranspositionTable table(1);
    const std::uint64_t key = 0x123456789ABCDEF0ULL;
    const Move move(12, 28, kDoublePush);
    table.Store(key, move, 57, 40, 6, Bound::Exact, 3);
    ASSERT_NE(table.Probe(key), nullptr);
    EXPECT_EQ(Move::FromBits(table.Probe(key)->move), move);
    EXPECT_EQ(table.Probe(key ^ (1ULL << 40)), nullptr);  // same slot, another position

    // A mate found 3 plies below the root, stored 5 plies from it, is the same mate seen from
    // a node 2 plies from the root: 3 plies further from there.
    table.Store(key, move, kMate - 8, 0, 6, Bound::Exact, 5);
    EXPECT_EQ(ScoreFromTable(table.Probe(key)->score, 2), kMate - 5);
    table.Store(key, move, -(kMate - 8), 0, 6, Bound::Exact, 5);
    EXPECT_EQ(ScoreFromTable(table.Probe(key)->score, 2), -(kMate - 5));
}

}  // namespace
}  // namespace velmora::engine
