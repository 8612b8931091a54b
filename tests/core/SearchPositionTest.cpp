// Replaying games in place for a wanted position or material (more through the game search).
#include <gtest/gtest.h>

#include <tuple>

#include "core/SearchPosition.h"
#include "tests/core/TestBoards.h"

namespace velmora {
namespace {

using testing::Sq;
using Wanted = SearchPosition::WantedCounts;

const Wanted kFullArmy = {0, 8, 2, 2, 2, 1};
const Wanted kNone = {};

// Intended: an en-passant capture removes the pawn but not its count, so the piece count stays
// one too high and the true position after it is not matched.
TEST(SearchPosition, EnPassantLeavesThePieceCountHigh) {
    const PositionValue after =
        testing::FromText("rnbqkbnr/1pp1pppp/p2P4/8/8/8/PPPP1PPP/RNBQKBNR b - - 0 3");
    SearchPosition search(&after, kNone, kNone);
    for (const char* m : {"e2e4", "a7a6", "e4e5", "d7d5", "e5d6"})
        search.ApplyMove(Sq(m), Sq(m + 2), 0);
    EXPECT_TRUE(search.Value().SameSquares(after));
    EXPECT_EQ(search.pieceCount, 32u);
    EXPECT_EQ(search.found, 0u);
}

// Intended: a black pawn promotes to the bare type it is given, while the counts follow it.
TEST(SearchPosition, BlackPromotionStoresTheBareType) {
    SearchPosition search(nullptr, kNone, kNone);
    search.SetFromText(u"4k3/8/8/8/8/8/p7/4K3 b - - 0 1");
    search.ApplyMove(Sq("a2"), Sq("a1"), kQueen);
    EXPECT_EQ(search.Value().At(Sq("a1")), kQueen);
    EXPECT_EQ(search.blackCounts[kPawn - 1], 0);
    EXPECT_EQ(search.blackCounts[kQueen - 1], 1);
}

// A material target is reached, still possible, or out of reach once too few pawns are left to
// promote into the pieces wanted.
TEST(SearchPosition, MaterialBalance) {
    const Wanted noQueen = {0, 8, 2, 2, 2, 0}, bishopForQueen = {0, 8, 2, 2, 1, 1};
    const Wanted sevenPawnsTwoQueens = {0, 7, 2, 2, 1, 2};
    const std::tuple<const char16_t*, Wanted, std::uint32_t, std::uint32_t> cases[] = {
        {u"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", noQueen, 0, 0},
        {u"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNB1KBNR w KQkq - 0 1", bishopForQueen, 0, 1},
        {u"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPP1/RNBQKBNR w KQkq - 0 1", sevenPawnsTwoQueens, 0, 0},
    };
    for (const auto& [text, white, found, impossible] : cases) {
        SearchPosition search(nullptr, white, kFullArmy);
        search.SetFromText(text);
        EXPECT_EQ(std::pair(search.found, search.impossible), std::pair(found, impossible))
            << testing::Narrow(text);
    }
}

}  // namespace
}  // namespace velmora
