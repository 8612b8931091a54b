// The game list's order: the word-sort text comparison and each column's sort.
#include "game/GameListOrder.h"

#include <gtest/gtest.h>

#include "game/GameIndex.h"

#include <string>
#include <vector>

namespace velmora {
namespace {

TEST(GameListOrder, TextComparisonFollowsTheWordSort) {
    const struct {
        std::u16string a, b;
        int expected;
    } cases[] = {
        {u"Anand", u"Anand", 0},
        {u"", u"a", -1},
        {u"Kasparov", u"Kasparov, G", -1},  // a text before its own continuation
        {u"abc", u"ABD", -1},               // case is ignored first...
        {u"abc", u"Abc", -1},               // ...and only then lower case comes first
        {u"1", u"a", -1},                   // digits before letters
        {u" x", u"1", -1},                  // blank and punctuation before digits
        {u"\u00D7", u"0", -1},              // the Latin-1 multiplication sign is punctuation
        {u"\u00C9mile", u"Emma", -1},       // accented letters sort with their base letter...
        {u"M\u00FCller", u"Muller", 1},     // ...after the plain letter when all else is equal
        {u"\u00E9", u"E", 1},               // an accent counts before the case
        {u"Stra\u00DFe", u"Strassf", -1},   // ß is "ss"
        {u"\u0152uvre", u"Oz", -1},         // Œ is "OE"
        {u"\u0160ahovi\u0107", u"Sz", -1},  // code page 1252 letters: Š with S
        {u"\u00DE\u00F3r", u"Zoe", 1},      // thorn after z
        {u"O'Kelly", u"Ojanen", 1},         // apostrophes and hyphens weigh nothing at first
        {u"co-op", u"cop", -1},
        {u"coop", u"co-op", -1},  // and then the text without them first
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CompareTextLikeLstrcmp(c.a, c.b), c.expected)
            << std::string(c.a.begin(), c.a.end()) << " / " << std::string(c.b.begin(), c.b.end());
        EXPECT_EQ(CompareTextLikeLstrcmp(c.b, c.a), -c.expected);
    }
}

// Five games whose offsets (1..5) name them, rows of a game list as saving adds them (with a
// text beyond Latin-1, stored in the file's code page).
class GameListSorting : public ::testing::Test {
  protected:
    void SetUp() override {
        struct Row {
            const char16_t *white, *black;
            ResultCode result;
            const char16_t *eco, *event, *round, *date, *start;
        };
        const Row rows[] = {
            {u"Anand", u"Carlsen", kDraw, u"B90", u"Wch", u"10", u"2013.11.22", u"1. c4"},
            {u"carlsen", u"anand", kWhiteWins, nullptr, u"wch", u"2", u"2013.11.09", u"1. d4"},
            {u"\u00C9mile", u"Zoe", kResultUnknown, u"A00", u"Open \u20AC", u"?", u"????.??.??",
             u"(Position)"},
            {nullptr, u"", kBlackWins, u"", nullptr, u"", nullptr, nullptr},
            {u"Zukertort", u"Steinitz", kWhiteWins, u"C45", u"Match", u"1", u"1886.01.11",
             u"1. e4"},
        };
        for (const Row& row : rows) {
            GameSummary game;
            game.offset = static_cast<std::uint32_t>(games.Size() + 1);
            game.SetWhite(row.white);
            game.SetBlack(row.black);
            game.SetResultCode(row.result);
            game.SetEco(row.eco);
            game.SetEvent(row.event);
            game.SetRound(row.round);
            game.SetDate(row.date);
            game.SetStart(row.start);
            games.GameAdded(game);
        }
    }
    // The offsets of the games sorted by key.
    std::vector<int> Sorted(int key) {
        std::vector<GameRow> list;
        for (GameRow game : games)
            list.push_back(game);
        SortRows(list, key);
        std::vector<int> order;
        for (const GameRow& game : list)
            order.push_back(static_cast<int>(game.Offset()));
        return order;
    }
    GameIndex games;
};

TEST_F(GameListSorting, EachColumnAscendingAndDescending) {
    const struct {
        int key;
        std::vector<int> order;
    } cases[] = {
        {0, {4, 1, 2, 3, 5}},   // White: no name first, case and accents folded
        {2, {4, 2, 1, 5, 3}},   // Black
        {6, {2, 4, 3, 1, 5}},   // ECO: no code and an empty one are equal and keep their order
        {8, {4, 5, 3, 2, 1}},   // Event: "wch" before "Wch"
        {10, {3, 4, 5, 2, 1}},  // Round: "?" and "" as 0, then 1, 2, 10
        {11, {1, 2, 5, 3, 4}},  // Round descending: 10, 2, 1, then the zeros in list order
        {12, {4, 3, 5, 2, 1}},  // Date
        // Intended: the result column ascending runs from the highest code down, "*" first.
        {4, {3, 4, 1, 2, 5}},
        {5, {2, 5, 1, 4, 3}},
        // Intended: the Start column sorts by Date, not by its own text (4 3 1 2 5).
        {14, {4, 3, 5, 2, 1}},
        {16, {1, 2, 3, 4, 5}},  // no ninth column: nothing moves
    };
    for (const auto& c : cases)
        EXPECT_EQ(Sorted(c.key), c.order) << "key " << c.key;
    EXPECT_EQ(CompareRows(games.At(1), games.At(4), 4), 0);  // both "1-0"
    // Rows added by saving keep a tag with no value apart from an empty one, as a scan does.
    EXPECT_TRUE(games.At(3).Text(RowField::White).IsNull());
    EXPECT_FALSE(games.At(3).Text(RowField::Black).IsNull());
}

}  // namespace
}  // namespace velmora
