// Position text in both directions, the piece-letter helpers, copying and comments.
#include <gtest/gtest.h>

#include <tuple>

#include "game/Position.h"
#include "tests/core/TestBoards.h"

namespace velmora {
namespace {

using testing::FromText;
using testing::Sq;
using testing::TextOf;

TEST(PositionText, InitialPositionBothWays) {
    Position initial;
    EXPECT_EQ(TextOf(initial), testing::kStartText);
    EXPECT_EQ(initial.setUp, 0u);

    Position read;
    read.Clear();
    read.SetState(0, 0, 0, 0, 12);
    read.sideToMove = kBlack;
    read.moveNumber = 9;
    ASSERT_EQ(read.SetFromText(u"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"), 1);
    EXPECT_EQ(TextOf(read), testing::kStartText);
    EXPECT_EQ(read.moveNumber, 0);
    EXPECT_EQ(read.setUp, 1u);
}

// Each case: text read, side to move, stored number (that of the last move played), text written.
TEST(PositionText, FieldsReadAndWrittenBack) {
    const std::tuple<const char*, Colour, int, const char*> cases[] = {
        {testing::kKiwipete, kWhite, 0, testing::kKiwipete},
        {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 b Qk - 0 35", kBlack, 35,
         "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 b Qk - 0 35"},
        {"r3k3/8/8/8/8/8/8/4K2R w Kq - 0 12", kWhite, 11, "r3k3/8/8/8/8/8/8/4K2R w Kq - 0 12"},
        // Intended: the half-move clock is always written as zero.
        {"4k3/8/8/8/8/8/8/4K3 w - - 17 40", kWhite, 39, "4k3/8/8/8/8/8/8/4K3 w - - 0 40"},
        {"4k3/8/8/8/8/8/8/4K3 b - - 0 300", kBlack, 44, "4k3/8/8/8/8/8/8/4K3 b - - 0 44"},
        {"4k3/8/8/8/8/8/8/4K3 x - - 0 5", kBlack, 5, "4k3/8/8/8/8/8/8/4K3 b - - 0 5"},
        {"4k3/8/8/8/8/8/8/4K3 W - - 0 5", kBlack, 5, "4k3/8/8/8/8/8/8/4K3 b - - 0 5"},
        // Texts without counters start at move 1.
        {"4k3/8/8/8/8/8/8/4K3 w - -", kWhite, 0, "4k3/8/8/8/8/8/8/4K3 w - - 0 1"},
        {"4k3/8/8/8/8/8/8/4K3 b", kBlack, 1, "4k3/8/8/8/8/8/8/4K3 b - - 0 1"}};
    for (const auto& [text, side, number, written] : cases) {
        auto position = FromText(text);
        EXPECT_EQ(position->sideToMove, side) << text;
        EXPECT_EQ(position->moveNumber, number) << text;
        EXPECT_EQ(TextOf(*position), written);
    }
}

// Intended: the rank digit of an en-passant field is only range-checked; the letter alone gives
// the stored value, so e3 is stored as 164 and written back as "eE".
TEST(PositionText, EnPassantFieldIsStoredFromItsLetterOnly) {
    auto position = FromText("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    EXPECT_EQ(position->enPassant, 164);
    EXPECT_EQ(TextOf(*position), "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq eE 0 1");
    const int stored[8] = {128, 137, 146, 155, 164, 173, 182, 191};
    for (int file = 0; file < 8; ++file) {
        for (char digit : {'3', '6'}) {
            std::string field = {static_cast<char>('a' + file), digit};
            auto read = FromText("4k3/8/8/8/8/8/8/4K3 w - " + field + " 0 1");
            EXPECT_EQ(read->enPassant, stored[file]) << field;
        }
    }
}

TEST(PositionText, MalformedFieldsFailAfterChangingThePosition) {
    Position position;
    EXPECT_EQ(position.SetFromText(u"4k3/8/8/8/8/8/8/K7 w KX - 0 1"), 0);
    EXPECT_EQ(position.board[Sq("a1")], kKing);
    EXPECT_EQ(position.board[Sq("e1")], 0);
    EXPECT_EQ(position.castleWhiteKing, 1);
    EXPECT_EQ(position.castleWhiteQueen | position.castleBlackKing | position.castleBlackQueen, 0);
    EXPECT_EQ(position.SetFromText(u"4k3/8/8/8/8/8/8/4K3 w - e9 0 1"), 0);
    EXPECT_EQ(position.SetFromText(u"4k3/8/8/8/8/8/8/4K3 w - ex 0 1"), 0);
}

TEST(PositionText, CopyFromTakesBoardAndStateButNoLinks) {
    Position start;
    Position* after = testing::Play(&start, "e2e4");
    ASSERT_NE(after, nullptr);
    after->evaluation = 14;
    after->SetComment(u"king pawn");
    testing::Play(after, "e7e5");
    Position copy;
    copy.CopyFrom(*after);
    EXPECT_EQ(TextOf(copy), TextOf(*after));
    EXPECT_EQ(std::make_tuple(copy.evaluation, copy.testedFrom, copy.testedTo, copy.testedResult),
              std::make_tuple(std::uint8_t{14}, Sq("e7"), Sq("e5"), 1u));
    EXPECT_EQ(copy.setUp, 1u);
    EXPECT_EQ(copy.Comment(), nullptr);
    EXPECT_EQ(copy.ArrivalNode(), nullptr);
    EXPECT_EQ(copy.FirstContinuation(), nullptr);
}

TEST(PositionText, StandardStartComparesSquaresOnly) {
    Position position;
    position.setUp = 1;
    position.castleWhiteKing = 0;
    position.sideToMove = kBlack;
    position.CheckIfStandardStart();
    EXPECT_EQ(position.setUp, 0u);
    position.SetSquare(Sq("e2"), 0);
    position.CheckIfStandardStart();
    EXPECT_EQ(position.setUp, 1u);
}

TEST(PositionText, CommentIsCopiedOrAdopted) {
    Position position;
    char16_t text[] = u"Good";
    position.SetComment(text, 1);
    text[0] = u'X';
    EXPECT_EQ(testing::Narrow(position.Comment()), "Good");
    char16_t* adopted = new char16_t[4]{u'B', u'a', u'd', 0};
    position.SetComment(adopted, 0);
    EXPECT_EQ(position.Comment(), adopted);
    position.SetComment(nullptr, 1);
    EXPECT_EQ(position.Comment(), nullptr);
}

}  // namespace
}  // namespace velmora
