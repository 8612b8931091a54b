// Move legality, attacks and the positions that PlayMove builds.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "core/MoveRules.h"
#include "game/Position.h"
#include "game/MoveTree.h"
#include "tests/core/TestBoards.h"

namespace velmora {
namespace {

using testing::FromText;
using testing::kCastles;
using testing::kCastlesBlack;
using testing::Play;
using testing::Sq;

// Each case lists moves with the verdict TestMove must give and store; perft covers the rest.
TEST(MoveRules, LegalityTable) {
    const std::pair<const char*, const char*> cases[] = {
        // The side to move is the caller's business: a black move tests legal here.
        {testing::kStartText, "e7e5 1, e2e5 0"},
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
        // stops O-O and one on e2 or g2 does not; likewise a white pawn on g7 leaves f8 free.
        {"4k3/8/8/8/8/8/5p2/4K2R w K - 0 1", "e1g1 0"},
        {"4k3/8/8/8/8/8/4p3/4K2R w K - 0 1", "e1g1 1"},
        {"4k3/8/8/8/8/8/6p1/4K2R w K - 0 1", "e1g1 1"},
        {"r3k2r/6P1/8/8/8/8/8/4K3 b kq - 0 1", "e8g8 1"}};
    for (const auto& [text, list] : cases) {
        for (const auto& c : testing::Cases(list)) {
            SCOPED_TRACE(std::string(text) + " " + c[0]);
            auto position = FromText(text);
            const Square from = Sq(c[0].c_str());
            const PieceCode mover = position->board[from];
            EXPECT_EQ(TestMove(*position, from, Sq(c[0].c_str() + 2), nullptr), c[1] == "1");
            EXPECT_EQ(position->testedResult, c[1] == "1" ? 1u : 0u);
            EXPECT_EQ(position->board[from], mover);
        }
    }
}

// IsAttacked looks outwards from the square; it must agree with asking every enemy piece
// whether its geometry reaches the square, pawn pushes onto empty squares included.
TEST(MoveRules, AttacksAgreeWithPieceGeometryOnRandomBoards) {
    std::mt19937 random(20261122);
    const PieceCode kCodes[] = {
        kPawn,           kRook,          kKnight,        kBishop,          kQueen,
        kKing,           kBlack + kPawn, kBlack + kRook, kBlack + kKnight, kBlack + kBishop,
        kBlack + kQueen, kBlack + kKing};
    Position position;
    for (int round = 0; round < 3000; ++round) {
        std::memset(position.board, 0, sizeof position.board);
        int pieces = 2 + static_cast<int>(random() % 24);
        for (int i = 0; i < pieces; ++i)
            position.board[random() % 64] = kCodes[random() % 12];
        for (Colour colour : {kWhite, kBlack}) {
            for (int square = -1; square < 64; ++square) {
                int target = square;
                if (square == -1) {
                    const void* king = std::memchr(position.board, colour + kKing, 64);
                    if (king == nullptr) continue;
                    target = static_cast<int>(static_cast<const PieceCode*>(king) - position.board);
                }
                int expected = 0;
                for (int s = 0; s < 64 && !expected; ++s) {
                    PieceCode code = position.board[s];
                    expected =
                        code != 0 && ColourOf(code) != colour &&
                        PieceMoves(position, static_cast<Square>(s), static_cast<Square>(target));
                }
                ASSERT_EQ(IsAttacked(position, colour, square), expected)
                    << testing::TextOf(position) << " colour " << int(colour) << " square "
                    << square;
            }
        }
        // CandidateOrigins looks only where a piece could come from; it must find what testing
        // every square of the board finds, in the same order.
        PieceCode code = kCodes[random() % 12];
        Square to = static_cast<Square>(random() % 64);
        std::vector<Square> expected;
        for (int s = 0; s < 64; ++s) {
            if (position.board[s] == code &&
                TestMove(position, static_cast<Square>(s), to, nullptr))
                expected.push_back(static_cast<Square>(s));
        }
        Square found[64];
        int count = CandidateOrigins(position, code, kNoSquare, to, found);
        ASSERT_EQ(std::vector<Square>(found, found + count), expected)
            << testing::TextOf(position) << " code " << int(code) << " to " << int(to);
    }
}

TEST(MoveRules, TestedPairIsAOneEntryCache) {
    Position position;
    // PlayMove trusts a stored verdict for the same pair and tests a different pair afresh.
    position.testedFrom = Sq("e2");
    position.testedTo = Sq("e4");
    position.testedResult = 0;
    EXPECT_EQ(position.PlayMove(Sq("e2"), Sq("e4"), nullptr, 0, nullptr), nullptr);
    EXPECT_NE(position.PlayMove(Sq("d2"), Sq("d4"), nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(position.testedFrom, Sq("d2"));
    EXPECT_EQ(position.testedResult, 1u);
    // Refused moves change nothing but the tested fields.
    EXPECT_EQ(position.PlayMove(Sq("e2"), Sq("e5"), nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(position.testedTo, Sq("e5"));
    EXPECT_EQ(position.PlayMove(64, 0, nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(position.PlayMove(Sq("e2"), 200, nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(position.FirstContinuation()->nextAlternative, nullptr);
}

using Promoted = std::pair<int, int>;  // promotion type on the node, code landing on e8
int chooserCalls = 0;
void* chooserContext = nullptr;
int Chooser(void* context) {
    chooserContext = context;
    return ++chooserCalls == 1 ? kKnight : 0;
}

TEST(MoveRules, PromotionTypeComesFromCallerChooserOrQueen) {
    auto position = FromText("8/4P1k1/8/8/8/8/p7/4K3 w - - 0 1");
    auto promote = [&](int type, void* context) {
        Position* after = position->PlayMove(Sq("e7"), Sq("e8"), nullptr, type, context);
        return after ? Promoted(after->ArrivalNode()->promotion, after->board[Sq("e8")])
                     : Promoted();
    };
    int needsPromotion = 0;
    EXPECT_EQ(TestMove(*position, Sq("a2"), Sq("b1"), &needsPromotion), 0);
    EXPECT_EQ(needsPromotion, 1);
    ASSERT_EQ(GetPromotionChooser(), nullptr);
    EXPECT_EQ(promote(0, nullptr), Promoted(kQueen, kQueen));
    EXPECT_EQ(Play(position.get(), "a2a1r")->board[Sq("a1")], kBlack + kRook);
    int context = 0;
    SetPromotionChooser(&Chooser);
    EXPECT_EQ(promote(0, &context), Promoted(kKnight, kKnight));
    EXPECT_EQ(chooserContext, &context);
    EXPECT_EQ(promote(kBishop, nullptr), Promoted(kBishop, kBishop));
    EXPECT_EQ(chooserCalls, 1);
    EXPECT_EQ(promote(0, nullptr), Promoted(kQueen, kQueen));  // the chooser answers 0 this time
    SetPromotionChooser(nullptr);
}

TEST(MoveRules, CapturesAndEnPassant) {
    PieceCode code = 0;
    Square square = 99;
    auto pawns = FromText(testing::kPawns);
    EXPECT_EQ(Play(pawns.get(), "e4d5")->ArrivalNode()->GetCapture(&code, &square), 1);
    EXPECT_EQ(std::pair(code, square), (std::pair<PieceCode, Square>(kBlack + kPawn, 0)));
    EXPECT_EQ(Play(pawns.get(), "e1e2")->ArrivalNode()->GetCapture(&code, &square), 0);
    auto white = FromText("4k3/3p4/8/4P3/8/8/8/4K3 b - - 0 1");
    Position* afterDouble = Play(white.get(), "d7d5");
    Position* taken = Play(afterDouble, "e5d6");
    EXPECT_EQ(taken->board[Sq("d6")] + taken->board[Sq("d5")] + taken->board[Sq("e5")], kPawn);
    EXPECT_EQ(taken->ArrivalNode()->GetCapture(&code, &square), 1);
    EXPECT_EQ(std::pair(code, square), (std::pair<PieceCode, Square>(kBlack + kPawn, Sq("d6"))));
    Position* later = Play(Play(afterDouble, "e1e2"), "e8e7");
    EXPECT_EQ(TestMove(*later, Sq("e5"), Sq("d6"), nullptr), 0);
    // Intended: an en-passant square given in position text never allows a capture.
    auto fromText = FromText("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1");
    EXPECT_EQ(TestMove(*fromText, Sq("e5"), Sq("d6"), nullptr), 0);
}

TEST(MoveRules, CastlingMovesTheRookAndMovesClearTheFlags) {
    // Each case: the king's move, the rook's move and the castling kind recorded.
    for (const auto& c : testing::Cases("e1g1 h1f1 1, e1c1 a1d1 2, e8g8 h8f8 1, e8c8 a8d8 2")) {
        auto position = FromText(c[0][1] == '1' ? kCastles : kCastlesBlack);
        const Colour side = position->sideToMove;
        Position* after = Play(position.get(), c[0]);
        ASSERT_NE(after, nullptr);
        EXPECT_EQ(after->board[Sq(c[0].c_str() + 2)], side + kKing) << c[0];
        EXPECT_EQ(after->board[Sq(c[1].c_str() + 2)], side + kRook) << c[0];
        EXPECT_EQ(after->board[Sq(c[1].c_str())] + after->board[Sq(c[0].c_str())], 0) << c[0];
        EXPECT_EQ(after->ArrivalNode()->castlingKind, c[2][0] - '0') << c[0];
    }
    // Each case: a move and the flags after it (white O-O, white O-O-O, black O-O, O-O-O).
    // Intended: a rook captured on its home square leaves its flag set (a1a8, h8h1).
    for (const auto& c : testing::Cases("h1h2 0111, a1a2 1011, e1e2 0011, a1a8 1011, "
                                        "h8h7 1101, a8a7 1110, e8e7 1100, h8h1 1101")) {
        auto position = FromText(c[0][1] == '1' ? kCastles : kCastlesBlack);
        Position* after = Play(position.get(), c[0]);
        ASSERT_NE(after, nullptr);
        const int flags = after->castleWhiteKing * 1000 + after->castleWhiteQueen * 100 +
                          after->castleBlackKing * 10 + after->castleBlackQueen;
        EXPECT_EQ(flags, std::stoi(c[1])) << c[0];
    }
    // Intended: after its h1 rook is captured there, white may still castle king-side.
    auto position = FromText("b3k3/8/8/8/8/8/8/4K2R b K - 0 1");
    Position* castled = Play(Play(position.get(), "a8h1"), "e1g1");
    ASSERT_NE(castled, nullptr);
    EXPECT_EQ(castled->ArrivalNode()->castlingKind, 1);
    EXPECT_EQ(castled->board[Sq("g1")], kKing);
}

// After a move that did not give check, legality looks only at the line through the square
// left, and so does the check mark of the next move; along random games both must agree with
// the full tests on a copy that knows no history.
TEST(MoveRules, LegalityAfterAMoveAgreesWithTheFullTest) {
    std::mt19937 random(7);
    for (int game = 0; game < 60; ++game) {
        auto start = testing::FromText(
            game % 2 ? testing::kKiwipete
                     : "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
        Position* position = start.get();
        for (int ply = 0; ply < 80 && position; ++ply) {
            Position copy;
            copy.CopyFrom(*position);
            std::vector<std::pair<int, int>> legal;
            for (int from = 0; from < 64; ++from) {
                if (position->board[from] == 0) continue;
                for (int to = 0; to < 64; ++to) {
                    int expected =
                        TestMove(copy, static_cast<Square>(from), static_cast<Square>(to), nullptr);
                    ASSERT_EQ(TestMove(*position, static_cast<Square>(from),
                                       static_cast<Square>(to), nullptr),
                              expected)
                        << testing::TextOf(*position) << " " << from << "-" << to;
                    if (expected && ColourOf(position->board[from]) == position->sideToMove)
                        legal.emplace_back(from, to);
                }
            }
            if (legal.empty()) break;
            auto [from, to] = legal[random() % legal.size()];
            position = position->PlayMove(from, to, nullptr, kQueen, nullptr);
            // And the check mark, worked out from the piece moved and the line it opened.
            ASSERT_EQ(position->ArrivalNode()->givesCheck,
                      static_cast<std::uint32_t>(IsAttacked(*position, position->sideToMove, -1)))
                << testing::TextOf(*position);
        }
    }
}

}  // namespace
}  // namespace velmora
