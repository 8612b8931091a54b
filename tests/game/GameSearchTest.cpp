// Game search over several files: the criteria, the per-game filter and the replay.
#include <gtest/gtest.h>

#include "PgnTestSupport.h"
#include "core/PositionText.h"
#include "game/GameSearch.h"

namespace velmora {
namespace {

const std::u16string kFileA = test::DataPath("search-a.pgn");
const std::u16string kFileB = test::DataPath("search-b.pgn");

// Names each game found as "a1" (file search-a.pgn, game 1) and notes where it was found.
struct Recorder final : SearchObserver {
    void Found(const GameRow& row, int number) override {
        if (!found.empty()) found += " ";
        found += (row.FilePath() == kFileA ? "a" : "b") + std::to_string(number);
        if (row.FoundAt() != 0 || withFoundAt) found += "@" + std::to_string(row.FoundAt());
    }
    std::string found;
    bool withFoundAt = false;
};

std::string Find(const SearchCriteria& criteria, bool withFoundAt = false) {
    GameSearch search(criteria);
    Recorder recorder;
    recorder.withFoundAt = withFoundAt;
    search.Run({kFileA, kFileB}, &recorder);
    return recorder.found;
}

PositionValue Target(const char16_t* text) {
    PositionValue position;
    EXPECT_TRUE(ReadPositionText(text, &position));
    return position;
}

TEST(GameSearch, NamesEcoAndResult) {
    struct Case {
        const char16_t* white;
        const char16_t* black;
        bool ignoreColors;
        const char16_t* eco;
        int result;
        const char* found;
    } cases[] = {
        // Exact names, case included (a4's "abc" is not "Abc"); "@" ignores the letter case.
        {u"Abc", u"", false, u"", -1, "a1 b2"},
        {u"@abc", u"", false, u"", -1, "a1 a2 a4 b2"},
        {u"", u"@BC", false, u"", -1, "a2 b1 b2"},
        // Ignore colors lets each pattern match either player.
        {u"Abc", u"", true, u"", -1, "a1 a2 b1 b2"},
        {u"Abc", u"Zed", false, u"", -1, "a1"},
        {u"Abc", u"Zed", true, u"", -1, "a1 b1"},
        // ECO is compared exactly; a game with no ECO tag or an empty one never matches.
        {u"", u"", false, u"C20", -1, "a1 a4 b1"},
        {u"", u"", false, u"C2", -1, ""},
        // "@" alone matches every name, so the result decides.
        {u"@", u"", false, u"", kDraw, "a3 b1"},
        {u"@abc", u"", true, u"C20", kWhiteWins, "a1"},
    };
    for (const Case& c : cases) {
        SearchCriteria criteria;
        criteria.white = c.white;
        criteria.black = c.black;
        criteria.ignoreColors = c.ignoreColors;
        criteria.eco = c.eco;
        criteria.result = c.result;
        EXPECT_EQ(Find(criteria), c.found)
            << platform::WideToUtf8(c.white) << " / " << platform::WideToUtf8(c.black) << " "
            << c.ignoreColors;
    }
}

TEST(GameSearch, PositionAndMaterialReplayTheMainLine) {
    struct Case {
        const char16_t* target;  // null: the material below
        SearchPosition::WantedCounts white, black;
        const char* found;
    } cases[] = {
        // After Black's second move in two games; the game that stops earlier never gets there.
        {u"r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3",
         {},
         {},
         "a1@-2 b1@-2"},
        // After White's third move.
        {u"r1bqkbnr/pppp1ppp/2n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R b KQkq - 3 3", {}, {}, "a1@3 b1@3"},
        // Reached only in a variation: variations are not played.
        {u"rnbqkbnr/ppp2ppp/3p4/4p3/3PP3/5N2/PPP2PPP/RNBQKB1R b KQkq - 0 3", {}, {}, ""},
        // From a set-up position: its start, then after White's move 30.
        {u"4k3/8/8/8/8/8/4P3/4K3 w - - 0 30", {}, {}, "a3@0"},
        {u"4k3/8/8/8/4P3/8/8/4K3 b - - 0 30", {}, {}, "a3@30"},
        // King and pawn against king: the set-up game at its start.
        {nullptr, {0, 1, 0, 0, 0, 0}, {}, "a3@0"},
        {nullptr, {0, 8, 2, 2, 2, 1}, {0, 8, 2, 2, 2, 1}, "a1@0 a2@0 a4@0 b1@0 b2@0"},
        // White's d-pawn for Black's, after 2. c4 takes nothing: never in these games.
        {nullptr, {0, 7, 2, 2, 2, 1}, {0, 7, 2, 2, 2, 1}, ""},
    };
    for (const Case& c : cases) {
        SearchCriteria criteria;
        if (c.target) {
            criteria.position = Target(c.target);
        } else {
            criteria.material = true;
            criteria.wantedWhite = c.white;
            criteria.wantedBlack = c.black;
        }
        EXPECT_EQ(Find(criteria, true), c.found)
            << (c.target ? platform::WideToUtf8(c.target) : "");
    }
    // Name criteria are tested first; the replay only sees the games they let through.
    SearchCriteria both;
    both.white = u"Zed";
    both.position = Target(u"r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3");
    EXPECT_EQ(Find(both), "b1@-2");
}

}  // namespace
}  // namespace velmora
