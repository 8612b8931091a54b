// Scanning PGN files into a game index, and keeping offsets right after a save.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PgnTestSupport.h"
#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/PgnParser.h"

namespace velmora {
namespace {

using test::Text;
using Offsets = std::vector<std::uint32_t>;

TEST(GameIndex, ThreeGamesWithTheirOffsetsAndTags) {
    const std::u16string path = test::DataPath("three-games.pgn");
    const std::string bytes = test::ReadBytes(path);
    GameIndex index(path.c_str());
    ASSERT_EQ(index.Load(), 1);
    ASSERT_EQ(index.Count(), 3);
    EXPECT_EQ(std::u16string(index.FileName()), u"three-games.pgn");
    // Each offset is that of the game's first tag line, whichever tag it is.
    EXPECT_EQ(test::Offsets(index),
              (Offsets{0, static_cast<std::uint32_t>(bytes.find("[White \"Dupont\"]")),
                       static_cast<std::uint32_t>(bytes.rfind("[Event"))}));
    GameSummary* first = index.First();
    GameSummary* second = first->next.get();
    GameSummary* third = index.Last();
    EXPECT_EQ(first->FilePath(), path);
    EXPECT_EQ(Text(first->white) + u"|" + Text(first->eco) + u"|" + Text(first->start),
              u"Aubert, Claire|C20|1. e4 e5 2. Qh5 Nc6 3. Bc4 Nf6");
    // Tags the game lacks keep the values the scanner's reset gave them.
    EXPECT_EQ(Text(second->date) + u"|" + Text(second->round) + u"|" + Text(second->site) + u"|" +
                  Text(second->eco),
              u"??\\??|?|?|<none>");
    EXPECT_EQ(Text(second->start), u"1. f3 e5 2. g4 Qh4# 0-1");
    EXPECT_EQ(Text(third->start), u"{Short draw} 1. d4 d5 2. c4 c6");
    EXPECT_EQ(first->result * 100 + second->result * 10 + third->result, 21);
}

TEST(GameIndex, StartTextsCountsAndGamesTheScannerSkips) {
    const struct {
        const char* file;
        int count;
        const char16_t* firstStart;  // null when no game is listed
    } cases[] = {
        {"comment-starts-movetext.pgn", 1, u"{Opening remark} 1. e4 e5 *"},
        {"setup-start-text.pgn", 1, u"(Position)"},
        {"long-line-with-blanks.pgn", 1, u"1. Nf3 Nf6 2. Ng1 Ng8 3. Nf3 N"},
        {"no-result-token-then-next-game.pgn", 2, u"1. e4 e5"},
        {"ends-inside-tags.pgn", 1, u"1. e4 e5 1-0"},  // the cut game adds no entry
        {"tags-only-no-moves.pgn", 0, nullptr},
        {"no-white-tag.pgn", 0, nullptr},
        {"lower-case-white-tag.pgn", 0, nullptr},  // "[white " is not a White tag here
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        GameIndex index(test::DataPath(c.file).c_str());
        ASSERT_EQ(index.Load(), 1);
        EXPECT_EQ(index.Count(), c.count);
        ASSERT_EQ(index.First() != nullptr, c.firstStart != nullptr);
        if (c.firstStart) {
            EXPECT_EQ(Text(index.First()->start), c.firstStart);
        }
    }
    // The loader, unlike the scanner, takes the lower-case tag.
    Game game;
    game.SetFilePath(test::DataPath("lower-case-white-tag.pgn"));
    EXPECT_EQ(LoadGame(game, nullptr, 0, 1), kPgnOk);
    EXPECT_EQ(Text(game.white), u"Lower");
}

std::unique_ptr<GameSummary> Entry(const char16_t* path, std::uint32_t offset) {
    auto entry = std::make_unique<GameSummary>();
    entry->SetFilePath(path);
    entry->offset = offset;
    return entry;
}

TEST(GameIndex, SearchResultsMoveOnlyTheLaterEntriesOfTheSavedFile) {
    GameSearchResults results;
    const char16_t* a = u"C:\\Games\\A.pgn";
    for (std::uint32_t offset : {0u, 100u, 200u, 300u})
        results.AddEntry(Entry(a, offset));
    results.AddEntry(Entry(u"C:\\Games\\B.pgn", 250));
    results.AddEntry(Entry(a, 400));  // behind another file's entry: the walk stops before it
    Game game;
    game.SetFilePath(u"c:\\games\\a.pgn");  // paths compare ignoring case
    game.offset = 100;
    game.endOffset = 170;
    results.TextMoved(game, 7);
    EXPECT_EQ(test::Offsets(results), (Offsets{0, 100, 207, 307, 250, 400}));
    results.TextMoved(game, -7);
    EXPECT_EQ(test::Offsets(results), (Offsets{0, 100, 200, 300, 250, 400}));
    // Search results change no offset when a game was written behind an entry.
    GameSummary* second = results.First()->next.get();
    EXPECT_EQ(results.GameSaved(game, second), second->next.get());
    EXPECT_EQ(results.Load(platform::SystemFileSystem()), 1);  // nothing to rescan
    EXPECT_EQ(test::Offsets(results), (Offsets{0, 100, 200, 300, 250, 400}));
}

TEST(GameIndex, GameSavedMovesTheNextEntryAndTextMovedChangesNothing) {
    GameIndex index(test::DataPath("three-games.pgn").c_str());
    ASSERT_EQ(index.Load(), 1);
    Game game;
    game.endOffset = 250;
    EXPECT_EQ(index.GameSaved(game, index.First()), index.First()->next.get());
    EXPECT_EQ(index.GameSaved(game, index.Last()), nullptr);
    const Offsets before = test::Offsets(index);
    EXPECT_EQ(before[1], 250u);
    index.TextMoved(game, 40);  // the game list rescans instead
    EXPECT_EQ(test::Offsets(index), before);
}

}  // namespace
}  // namespace velmora
