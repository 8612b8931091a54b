// Position text in both directions.
#include "core/PositionText.h"

#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

#include "tests/core/TestBoards.h"

namespace velmora {
namespace {

using testing::FromText;
using testing::Sq;
using testing::TextOf;

// Each case: text read, side to move, stored number (that of the last move played), text written.
// Each text is read into a value whose squares, side and number hold something else.
TEST(PositionText, FieldsReadAndWrittenBack) {
    const PositionValue initial;
    EXPECT_EQ(TextOf(initial), testing::kStartText);
    EXPECT_TRUE(initial.HasStandardSquares());
    const std::tuple<const char*, Colour, int, const char*> cases[] = {
        {testing::kStartText, kWhite, 0, testing::kStartText},
        {"r3k3/8/8/8/8/8/8/4K2R w Kq - 0 12", kWhite, 11, "r3k3/8/8/8/8/8/8/4K2R w Kq - 0 12"},
        // Intended: the half-move clock is always written as zero.
        {"4k3/8/8/8/8/8/8/4K3 w - - 17 40", kWhite, 39, "4k3/8/8/8/8/8/8/4K3 w - - 0 40"},
        {"4k3/8/8/8/8/8/8/4K3 b - - 0 300", kBlack, 44, "4k3/8/8/8/8/8/8/4K3 b - - 0 44"},
        {"4k3/8/8/8/8/8/8/4K3 x - - 0 5", kBlack, 5, "4k3/8/8/8/8/8/8/4K3 b - - 0 5"},
        // Texts without counters start at move 1.
        {"4k3/8/8/8/8/8/8/4K3 w - -", kWhite, 0, "4k3/8/8/8/8/8/8/4K3 w - - 0 1"},
        {"4k3/8/8/8/8/8/8/4K3 b", kBlack, 1, "4k3/8/8/8/8/8/8/4K3 b - - 0 1"}};
    for (const auto& [text, side, number, written] : cases) {
        PositionValue position = PositionValue::Empty();
        position.sideToMove = side == kWhite ? kBlack : kWhite;
        position.moveNumber = 9;
        ASSERT_TRUE(ReadPositionText(std::u16string(text, text + strlen(text)).c_str(), &position));
        EXPECT_EQ(position.sideToMove, side) << text;
        EXPECT_EQ(position.moveNumber, number) << text;
        EXPECT_EQ(TextOf(position), written);
    }
    PositionValue passant = FromText("4k3/8/8/8/8/8/8/4K3 w - e6 0 1");
    ASSERT_TRUE(ReadPositionText(u"4k3/8/8/8/8/8/8/4K3 w - - 0 1", &passant));
    EXPECT_EQ(passant.enPassant, kNoSquare);
    // Intended: a text that ends before its en-passant field leaves the square as it was.
    passant.enPassant = 20;
    ASSERT_TRUE(ReadPositionText(u"4k3/8/8/8/8/8/8/4K3 b", &passant));
    EXPECT_EQ(passant.enPassant, 20);
}

// Intended: the rank digit of an en-passant field is only range-checked; the letter alone gives
// the stored value, so e3 is stored as 164 and written back as "eE".
TEST(PositionText, EnPassantFieldIsStoredFromItsLetterOnly) {
    const PositionValue position =
        FromText("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    EXPECT_EQ(position.enPassant, 164);
    EXPECT_EQ(TextOf(position), "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq eE 0 1");
    // Files a and h at both ranks: 128 + 9 per file.
    for (const auto& [field, stored] :
         {std::pair{"a3", 128}, {"a6", 128}, {"h3", 191}, {"h6", 191}, {"c6", 146}})
        EXPECT_EQ(FromText(std::string("4k3/8/8/8/8/8/8/4K3 w - ") + field + " 0 1").enPassant,
                  stored)
            << field;
}

TEST(PositionText, MalformedFieldsFailAfterChangingThePosition) {
    PositionValue position;
    EXPECT_FALSE(ReadPositionText(u"4k3/8/8/8/8/8/8/K7 w KX - 0 1", &position));
    EXPECT_EQ(position.At(Sq("a1")), kKing);
    EXPECT_EQ(position.At(Sq("e1")), 0);
    EXPECT_EQ(position.castleWhiteKing, 1);
    EXPECT_EQ(position.castleWhiteQueen | position.castleBlackKing | position.castleBlackQueen, 0);
    EXPECT_FALSE(ReadPositionText(u"4k3/8/8/8/8/8/8/4K3 w - e9 0 1", &position));
    EXPECT_FALSE(ReadPositionText(u"4k3/8/8/8/8/8/8/4K3 w - ex 0 1", &position));
}

}  // namespace
}  // namespace velmora
