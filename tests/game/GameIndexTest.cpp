// Scanning PGN files into a game index: rows and their texts, the n-th game, offsets.
#include <gtest/gtest.h>

#include "PgnTestSupport.h"
#include "game/GameIndex.h"
#include "game/GameScanner.h"

namespace velmora {
namespace {

using test::Text;
using Offsets = std::vector<std::uint32_t>;

TEST(GameIndex, ThreeGamesThenOffsetsAfterASave) {
    GameIndex index(test::DataPath("three-games.pgn").c_str());
    ASSERT_EQ(index.Load(), 1);
    EXPECT_EQ(index.At(2).FilePath(), index.Path());
    // Each offset is that of a game's first tag line. The fields of each game are checked
    // through the command-line tool's list of this file.
    EXPECT_EQ(test::Offsets(index), (Offsets{0, 197, 294}));
    EXPECT_TRUE(!index.At(-1) && !index.At(3) && index.At(2).Position() == 2);
    index.TextMoved(index.Path(), 0, 40);  // the game list rescans instead
    EXPECT_EQ(test::Offsets(index), (Offsets{0, 197, 294}));
    // Search results move the later rows of the game's file, up to another file's row.
    const auto fileA = std::make_shared<const std::u16string>(u"A");
    const auto fileB = std::make_shared<const std::u16string>(u"B");
    const std::pair<std::shared_ptr<const std::u16string>, std::uint32_t> rows[] = {
        {fileA, 0}, {fileA, 100}, {fileA, 200}, {fileA, 300}, {fileB, 250}, {fileA, 400}};
    GameSearchResults results;
    for (const auto& [path, offset] : rows) {
        ScannedGame game;
        game.offset = offset;
        results.AddEntry(game, path);
    }
    EXPECT_EQ(results.Load(platform::SystemFileSystem()), 1);  // nothing to rescan
    results.TextMoved(u"a", 100, -7);                          // paths compare ignoring case
    EXPECT_EQ(test::Offsets(results), (Offsets{0, 100, 193, 293, 250, 400}));
    EXPECT_EQ(results.At(4).FilePath() + results.At(5).FilePath(), u"BA");
}

TEST(GameIndex, StartTextsCountsAndGamesTheScannerSkips) {
    // File, games listed, start text of each; "[white " is not a White tag to the scanner.
    const std::tuple<const char*, int, std::vector<std::u16string>> cases[] = {
        {"setup-start-text.pgn", 1, {u"(Position)"}},
        {"long-line-with-blanks.pgn", 1, {u"1. Nf3 Nf6 2. Ng1 Ng8 3. Nf3 N"}},
        {"no-result-token-then-next-game.pgn", 2, {u"1. e4 e5", u"1. d4 d5 1-0"}},
        {"ends-inside-tags.pgn", 1, {u"1. e4 e5 1-0"}},  // the cut game adds no row
        {"tags-only-no-moves.pgn", 0, {}},
        {"no-white-tag.pgn", 0, {}},
        {"lower-case-white-tag.pgn", 0, {}},
        // Cut after conversion: the 30th and 31st characters come from bytes above 127; a line
        // of more than 255 bytes gives its first cut; a short line is kept whole.
        {"start-text-boundaries.pgn",
         4,
         {u"1. e4 e5 2. Nf3 Nc6 {A commen\u00E9", u"{x00} {x01} {x02} {x03} {x04} ", u"0-1",
          u"(Position)"}},
    };
    for (const auto& [file, count, starts] : cases) {
        GameIndex index(test::DataPath(file).c_str());
        ASSERT_EQ(index.Load(), 1);
        EXPECT_EQ(index.Count(), count) << file;
        std::vector<std::u16string> found;
        for (GameRow row : index)
            found.push_back(Text(row.Text(RowField::Start)));
        EXPECT_EQ(found, starts) << file;
    }
}

// A tag given with an empty value has a value; a tag left out has none (except those that
// start with a default: Event, Site and Round "?", Date "??\??").
TEST(GameIndex, EmptyTagsAreKeptApartFromMissingOnes) {
    GameIndex index(test::DataPath("empty-and-missing-tags.pgn").c_str());
    ASSERT_EQ(index.Load(), 1);
    ASSERT_EQ(index.Size(), 2);
    std::u16string longEvent;
    for (int i = 0; i < 7; ++i)
        longEvent += u"Long Event Name ";
    const std::vector<std::u16string> expected[] = {
        {u"", u"Black One", longEvent, u"??\\??", u"", u"?", u""},
        {u"White Two", u"", u"?", u"", u"?", u"?", u"<none>"},
    };
    for (int game = 0; game < 2; ++game) {
        std::vector<std::u16string> texts;
        for (RowField field : {RowField::White, RowField::Black, RowField::Event, RowField::Date,
                               RowField::Round, RowField::Site, RowField::Eco}) {
            texts.push_back(Text(index.At(game).Text(field)));
        }
        EXPECT_EQ(texts, expected[game]) << "game " << game + 1;
    }
    EXPECT_TRUE(index.At(0).Has(RowField::Eco) && !index.At(1).Has(RowField::Eco));
}

}  // namespace
}  // namespace velmora
