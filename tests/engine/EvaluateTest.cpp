// The evaluation treats both colours alike; the hash table tells positions in one slot apart.
// Material and mates are seen through the search.
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
        {"6k1/5ppp/8/3P4/1P6/8/5PPP/3R2K1 b - - 0 1", "3r2k1/5ppp/8/1p6/3p4/8/5PPP/6K1 w - - 0 1"},
    };
    PawnCache pawns;
    for (const auto& pair : kPairs)
        EXPECT_EQ(Evaluate(BoardOf(pair[0]), pawns), Evaluate(BoardOf(pair[1]), pawns)) << pair[0];
}

TEST(EngineHashTable, StoresAndProbes) {
    TranspositionTable table(1);
    const std::uint64_t key = 0x123456789ABCDEF0ULL;
    const Move move(12, 28, kDoublePush);
    table.Store(key, move, 57, 40, 6, Bound::Exact, 3);
    ASSERT_NE(table.Probe(key), nullptr);
    EXPECT_EQ(Move::FromBits(table.Probe(key)->move), move);
    EXPECT_EQ(table.Probe(key ^ (1ULL << 40)), nullptr);  // same slot, another position
}

}  // namespace
}  // namespace velmora::engine
