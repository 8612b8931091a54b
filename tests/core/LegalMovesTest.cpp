// The legal move list and perft, counted on position values and in the move tree. Where these
// rules accept moves chess forbids, skipping them gives the published count; the rest is by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <tuple>

#include "core/LegalMoves.h"
#include "core/MoveRules.h"
#include "game/MoveTree.h"
#include "game/Position.h"
#include "tests/core/TestBoards.h"

namespace velmora {
namespace {

using testing::ChessObjection;
using testing::FromText;

constexpr int kChessOnly = testing::kStepsOverPiece | testing::kCastlesIllegally;
constexpr const char* kEndgame = "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1";
constexpr const char* kPromotions = "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8";

// Counts the move sequences of the given depth on values, leaving out moves with an objection
// in skipped.
long CountValues(const PositionValue& position, int depth, int skipped) {
    MoveList moves;
    LegalMoves(position, &moves);
    long total = 0;
    for (const Move& move : moves) {
        if (ChessObjection(position, move.from, move.to) & skipped) continue;
        if (depth == 1) {
            ++total;
            continue;
        }
        PositionValue next = position;
        PlayOnValue(next, move);
        total += CountValues(next, depth - 1, skipped);
    }
    return total;
}

// The same in the tree: every from -> to of the side to move that PlayMove accepts, each
// promotion once per piece type. Played positions stay in the tree below position.
long CountTree(Position& position, int depth, int skipped) {
    long total = 0;
    for (int from = 0; from < 64; ++from) {
        PieceCode code = position.GetSquare(from);
        if (code == 0 || ColourOf(code) != position.SideToMove()) continue;
        for (int to = 0; to < 64; ++to) {
            if (ChessObjection(position.Value(), from, to) & skipped) continue;
            Position* next = position.PlayMove(from, to, nullptr, kRook, nullptr);
            if (next == nullptr) continue;
            const int kinds = next->ArrivalNode()->promotion ? 4 : 1;
            for (int k = 0; k < kinds; ++k) {
                if (k > 0) next = position.PlayMove(from, to, nullptr, kRook + k, nullptr);
                total += depth == 1 ? 1 : CountTree(*next, depth - 1, skipped);
            }
        }
    }
    return total;
}

TEST(Perft, ValuesAndTreeMeetThePublishedCounts) {
    const struct {
        const char* text;
        int depth, skipped;
        long count;
        bool inTree;  // the tree is slower: counted at the smaller depths
    } cases[] = {
        // Up to depth 2 no oddity can arise. At depth 3 a knight on a3, c3, f3 or h3 lets the
        // pawn behind it step over it (1. Nc3 e5 2. c4): four first moves times twenty replies.
        {testing::kStartText, 3, 0, 8902 + 80, true},
        {testing::kStartText, 3, kChessOnly, 8902, true},
        {testing::kStartText, 4, kChessOnly, 197281, false},
        // Kiwipete: the pawns on c2, f2 and h2 may step over the knight on c3, the queen on f3
        // and the black pawn on h3. At depth 3, 1... hxg2 leaves f1 attacked only diagonally by
        // a pawn, so 2. O-O passes here. It does after 36 first moves: all 48 but the three
        // g-pawn moves and Qxh3 (no hxg2), the four king moves and the two h1 rook moves (no
        // right to castle), Bf1 (f1 taken) and Bd1 (opens the a6-f1 diagonal).
        {testing::kKiwipete, 1, 0, 48 + 3, true},
        {testing::kKiwipete, 2, kChessOnly, 2039, true},
        {testing::kKiwipete, 3, testing::kStepsOverPiece, 97862 + 36, false},
        {testing::kKiwipete, 3, kChessOnly, 97862, false},
        // Nothing to step over until 1... Kg3: after eleven of white's fourteen first moves (all
        // but Rb3, g3 and g4) g2-g4 may then pass over the king.
        {kEndgame, 3, 0, 2812 + 11, true},
        {kEndgame, 4, kChessOnly, 43238, false},
        // Promotions (d7xc8 counts four times). Bc4-a6 and Bc1-h6 let a black pawn step over
        // the bishop (a7-a5, h7-h5): two sequences more than chess at depth 2.
        {kPromotions, 2, 0, 1486 + 2, true},
        {kPromotions, 2, kChessOnly, 1486, true},
        {kPromotions, 3, kChessOnly, 62379, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.text) + " depth " + std::to_string(c.depth));
        EXPECT_EQ(CountValues(FromText(c.text), c.depth, c.skipped), c.count);
        if (!c.inTree) continue;
        Position root;
        ASSERT_TRUE(root.SetFromText(std::u16string(c.text, c.text + strlen(c.text)).c_str()));
        EXPECT_EQ(CountTree(root, c.depth, c.skipped), c.count);
    }
}

// The list's contents are held to the tree's PlayMove by the counts above. Here: the list is
// cleared first, comes in the fixed order of from, to and promotion type, and is empty exactly
// when the game has ended, by mate or stalemate.
TEST(LegalMoves, FixedOrderAndTheEndOfTheGame) {
    const struct {
        const char* text;
        int count;
        GameEnd end;
    } cases[] = {
        {testing::kStartText, 20, GameEnd::None},
        {kPromotions, 44, GameEnd::None},
        {"rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3", 0, GameEnd::Checkmate},
        // Not in check, but every king move is covered.
        {"k7/8/1Q6/8/8/8/8/7K b - - 0 1", 0, GameEnd::Stalemate},
        {"k7/8/8/8/8/8/8/Q6K b - - 0 1", 2, GameEnd::None}};  // in check with a way out
    for (const auto& c : cases) {
        const PositionValue position = FromText(c.text);
        MoveList moves;
        moves.Add({});
        LegalMoves(position, &moves);
        EXPECT_EQ(moves.Size(), c.count) << c.text;
        const auto outOfOrder = [](const Move& a, const Move& b) {
            return std::tie(a.from, a.to, a.promotion) >= std::tie(b.from, b.to, b.promotion);
        };
        EXPECT_EQ(std::adjacent_find(moves.begin(), moves.end(), outOfOrder), moves.end())
            << c.text;
        EXPECT_EQ(HasLegalMove(position), c.end == GameEnd::None) << c.text;
        EXPECT_EQ(GameEndOf(position), c.end) << c.text;
    }
}

}  // namespace
}  // namespace velmora
