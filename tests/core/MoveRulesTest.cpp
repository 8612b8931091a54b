// Move legality and what playing a move does to a position value.
#include "core/MoveRules.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "core/LegalMoves.h"
#include "tests/core/TestBoards.h"

namespace velmora {
namespace {

using testing::FromText;
using testing::kCastles;
using testing::kCastlesBlack;
using testing::PlayMoves;
using testing::Sq;

// Each case lists moves with the verdict IsLegalMove must give; perft covers the rest.
TEST(MoveRules, LegalityTable) {
    const std::pair<const char*, const char*> cases[] = {
        // The side to move is the caller's business: a black move tests legal here.
        {testing::kStartText, "e7e5 1, e2e5 0, d1d3 0, c1a3 0"},
        // Intended: the double step does not look at the square passed over.
        {"rnbqkbnr/pppppppp/8/8/8/4N3/PPPPPPPP/RNBQKB1R w KQkq - 0 1", "e2e4 1, e2e3 0"},
        // An empty from square reads as white: only the white king's safety decides.
        {"R3k3/8/8/8/8/8/8/4K3 w - - 0 1", "d4d5 1"},
        {"4k3/8/8/8/8/8/8/r3K3 w - - 0 1", "d4d5 0"},
        {"r3k2r/8/8/8/8/8/8/R3K2R w Qkq - 0 1", "e1g1 0, e1c1 1"},
        {"r3k2r/8/8/8/8/8/8/RN2KB1R w KQkq - 0 1", "e1g1 0, e1c1 0"},
        {"4kr2/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1 0"},             // f1 attacked
        {"4k1r1/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1 0, e1c1 0"},    // g1 attacked, no Q
        {"4r1k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1 0, e1c1 0"},  // in check
        {"3rk3/8/8/8/8/8/8/R3K3 w Q - 0 1", "e1c1 0"},             // d1 attacked
        {"1r2k3/8/8/8/8/8/8/R3K3 w Q - 0 1", "e1c1 1"},            // only b1 attacked
        // Intended: castling looks only at the flags and the empty squares, not at the rook.
        {"4k3/8/8/8/8/8/8/4K3 w KQ - 0 1", "e1g1 1, e1c1 1"},
        // Intended: a pawn attacks an empty square only straight ahead, so a black pawn on f2
        // stops O-O and one on g2 does not; likewise a white pawn on g7 leaves f8 free.
        {"4k3/8/8/8/8/8/5p2/4K2R w K - 0 1", "e1g1 0"},
        {"4k3/8/8/8/8/8/6p1/4K2R w K - 0 1", "e1g1 1"},
        {"r3k2r/6P1/8/8/8/8/8/4K3 b kq - 0 1", "e8g8 1"},
        // A pinned piece may move along the pin only; a queen moves as rook or bishop only.
        {"4k3/4r3/8/8/8/8/4R3/4K3 w - - 0 1", "e2e5 1, e2d2 0, e2e7 1"},
        {"4k3/8/8/8/8/8/8/Q3K3 w - - 0 1", "a1a8 1, a1h8 1, a1b3 0"}};
    for (const auto& [text, list] : cases) {
        const PositionValue position = FromText(text);
        for (const auto& c : testing::Cases(list)) {
            EXPECT_EQ(IsLegalMove(position, Sq(c[0].c_str()), Sq(c[0].c_str() + 2)), c[1] == "1")
                << text << " " << c[0];
        }
    }
}

TEST(MoveRules, CapturesEnPassantAndPromotion) {
    PositionValue white = FromText("4k3/3p4/8/4P3/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(PlayMoves(white, "d7d5").effects.newEnPassant, Sq("d6"));
    const MoveEffects effects = PlayMoves(white, "e5d6").effects;
    EXPECT_TRUE(effects.enPassantCapture && !effects.captured);
    EXPECT_EQ(effects.capturedCode, kBlack + kPawn);
    EXPECT_EQ(testing::TextOf(white), "4k3/8/3P4/8/8/8/8/4K3 b - - 0 2");
    // Intended: an en-passant square given in position text never allows a capture.
    EXPECT_FALSE(IsLegalMove(FromText("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1"), Sq("e5"), Sq("d6")));

    // needsPromotion is given for illegal moves too; a move without a type promotes to a queen.
    PositionValue promotion = FromText("8/4P1k1/8/8/8/8/p7/4K3 w - - 0 1");
    bool needsPromotion = false;
    EXPECT_FALSE(IsLegalMove(promotion, Sq("a2"), Sq("b1"), &needsPromotion));
    EXPECT_TRUE(needsPromotion);
    PositionValue queen = promotion;
    EXPECT_EQ(PlayMoves(queen, "e7e8").promotion, kQueen);
    EXPECT_EQ(queen.At(Sq("e8")), kQueen);
    EXPECT_EQ(PlayMoves(promotion, "a2a1r").promotion, kRook);  // the side to move is not asked
    EXPECT_EQ(promotion.At(Sq("a1")), kBlack + kRook);
}

TEST(MoveRules, MovesClearTheCastleFlags) {
    // Each case: a move and the flags after it (white O-O, white O-O-O, black O-O, O-O-O).
    // Intended: a rook captured on its home square leaves its flag set (a1a8, h8h1).
    for (const auto& c : testing::Cases("h1h2 0111, a1a2 1011, e1e2 0011, a1a8 1011, "
                                        "h8h7 1101, a8a7 1110, e8e7 1100, h8h1 1101")) {
        PositionValue position = FromText(c[0][1] == '1' ? kCastles : kCastlesBlack);
        PlayMoves(position, c[0]);
        const int flags = position.castleWhiteKing * 1000 + position.castleWhiteQueen * 100 +
                          position.castleBlackKing * 10 + position.castleBlackQueen;
        EXPECT_EQ(flags, std::stoi(c[1])) << c[0];
    }
    // Intended: after its h1 rook is captured there, white may still castle king-side.
    PositionValue position = FromText("b3k3/8/8/8/8/8/8/4K2R b K - 0 1");
    EXPECT_EQ(PlayMoves(position, "a8h1 e1g1").effects.castlingKind, 1);
    EXPECT_EQ(position.At(Sq("g1")), kKing);
}

// What a position value remembers of its kings must never change a verdict. Along random games,
// now and then with a move of the side not to move or of an empty square (such a move may take a
// king), the check test and each move's check mark agree with a copy that has forgotten it, and
// CandidateOrigins finds what testing every square of the forgetful copy finds.
TEST(MoveRules, KingMemoryAndCandidatesNeverChangeAVerdict) {
    std::mt19937 random(7);
    for (int game = 0; game < 200; ++game) {
        PositionValue position = game % 2 ? FromText(testing::kKiwipete) : PositionValue();
        for (int ply = 0; ply < 80; ++ply) {
            PositionValue forgotten = position;
            forgotten.MutableSquares();
            const std::string text = testing::TextOf(position);
            ASSERT_EQ(InCheck(position), InCheck(forgotten)) << text;
            const auto code = static_cast<PieceCode>(random() % 6 + 1 + random() % 2 * kBlack);
            const auto to = static_cast<Square>(random() % 64);
            std::vector<Square> expected, found(64);
            for (Square from = 0; from < 64; ++from)
                if (forgotten.At(from) == code && IsLegalMove(forgotten, from, to))
                    expected.push_back(from);
            found.resize(CandidateOrigins(position, code, kNoSquare, to, found.data()));
            ASSERT_EQ(found, expected) << text << " code " << int(code) << " to " << int(to);

            MoveList moves;
            LegalMoves(position, &moves);
            Move move = moves.Empty() ? Move{} : moves[random() % moves.Size()];
            // One ply in six, a piece of the side not to move or an empty square moves instead.
            const auto odd = static_cast<Square>(random() % 64);
            const PieceCode oddCode = position.At(odd);
            const bool tryOdd =
                random() % 6 == 0 && (!oddCode || ColourOf(oddCode) != position.sideToMove);
            for (Square target = 0; target < 64 && tryOdd; ++target)
                if (IsLegalMove(position, odd, target)) move = {odd, target};
            if (move == Move{}) break;
            const bool givesCheck = PlayOnValue(position, move).givesCheck;
            forgotten = position;
            forgotten.MutableSquares();
            ASSERT_EQ(givesCheck, InCheck(forgotten)) << testing::TextOf(position);
        }
    }
}

}  // namespace
}  // namespace velmora
