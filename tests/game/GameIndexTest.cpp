// Scanning PGN files into a game index, and keeping offsets right after a save.
#include <gtest/gtest.h>

#include "PgnTestSupport.h"
#include "game/Game.h"
#include "game/GameIndex.h"

namespace velmora {
namespace {

using test::Text;
using Offsets = std::vector<std::uint32_t>;

TEST(GameIndex, ThreeGamesThenOffsetsAfterASave) {
    GameIndex index(test::DataPath("three-games.pgn").c_str());
    ASSERT_EQ(index.Load(), 1);
    EXPECT_EQ(index.FileName() + index.Last()->FilePath(), u"three-games.pgn" + index.Path());
    // Each offset is that of a game's first tag line. The fields of each game are checked
    // through the command-line tool's list of this file.
    EXPECT_EQ(test::Offsets(index), (Offsets{0, 197, 294}));
    // Values repeated across games are stored once.
    EXPECT_EQ(index.First()->event.Block(), index.Last()->event.Block());
    EXPECT_EQ(index.First()->white.Block(), index.Last()->black.Block());
    Game game;
    game.SetFilePath(u"a");  // paths compare ignoring case
    game.offset = 100;
    game.endOffset = 250;
    EXPECT_EQ(index.GameSaved(game, index.First()), index.First()->next.get());
    EXPECT_EQ(index.GameSaved(game, index.Last()), nullptr);
    index.TextMoved(game, 40);  // the game list rescans instead
    EXPECT_EQ(test::Offsets(index), (Offsets{0, 250, 294}));
    // Search results move the later entries of the game's file, up to another file's entry.
    const std::pair<const char16_t*, std::uint32_t> entries[] = {
        {u"A", 0}, {u"A", 100}, {u"A", 200}, {u"A", 300}, {u"B", 250}, {u"A", 400}};
    GameSearchResults results;
    for (const auto& [path, offset] : entries) {
        results.AddEntry(std::make_unique<GameSummary>());
        results.Last()->SetFilePath(path);
        results.Last()->offset = offset;
    }
    // A game written behind an entry changes no offset, and there is nothing to rescan.
    EXPECT_EQ(results.GameSaved(game, results.First()), results.First()->next.get());
    EXPECT_EQ(results.Load(platform::SystemFileSystem()), 1);
    results.TextMoved(game, -7);
    EXPECT_EQ(test::Offsets(results), (Offsets{0, 100, 193, 293, 250, 400}));
}

TEST(GameIndex, StartTextsCountsAndGamesTheScannerSkips) {
    // File, games listed, start text of the first; "[white " is not a White tag to the scanner.
    const std::tuple<const char*, int, const char16_t*> cases[] = {
        {"setup-start-text.pgn", 1, u"(Position)"},
        {"long-line-with-blanks.pgn", 1, u"1. Nf3 Nf6 2. Ng1 Ng8 3. Nf3 N"},
        {"no-result-token-then-next-game.pgn", 2, u"1. e4 e5"},
        {"ends-inside-tags.pgn", 1, u"1. e4 e5 1-0"},  // the cut game adds no entry
        {"tags-only-no-moves.pgn", 0, u""},
        {"no-white-tag.pgn", 0, u""},
        {"lower-case-white-tag.pgn", 0, u""}};
    for (const auto& [file, count, start] : cases) {
        GameIndex index(test::DataPath(file).c_str());
        ASSERT_EQ(index.Load(), 1);
        EXPECT_EQ(index.Count(), count) << file;
        EXPECT_EQ(index.First() ? Text(index.First()->start) : u"", start) << file;
    }
}

}  // namespace
}  // namespace velmora
