// The game an engine library keeps: turns, moves, positions as FEN, the limits of a search for
// each kind of level and the texts shown. The end of a game is checked through the library.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "plugins/common/EngineGame.h"

namespace velmora::plugin {
namespace {

constexpr char16_t kBlackToMove[] = u"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1";

// The engine's turn comes from the text; an unreadable text leaves the game as it was.
TEST(EngineGame, TakesTheTurnFromTheTextAndKeepsThePositionOnAnUnreadableOne) {
    EngineGame game;
    ASSERT_TRUE(game.Start(true, false, kBlackToMove));
    EXPECT_TRUE(game.EngineToMove());
    ASSERT_TRUE(game.PlayMove(u"e7e5"));
    EXPECT_FALSE(game.SetPosition(u"8/8/8/8/8/8/8/8 w KX - 0 1"));
    EXPECT_EQ(game.Moves(), std::vector<std::string>{"e7e5"});
    ASSERT_TRUE(game.Start(false, false, nullptr));
    EXPECT_EQ(game.BaseFen(), "");
    EXPECT_TRUE(game.Moves().empty());
}

TEST(EngineGame, PlaysOnlyLegalMovesOfTheSideToMove) {
    EngineGame game;
    ASSERT_TRUE(game.Start(true, false, nullptr));
    for (const char* bad : {"e2e5", "e7e5", "zz", "e2e4q", ""})
        EXPECT_FALSE(game.PlayMove(std::string(bad))) << bad;
    EXPECT_TRUE(game.Moves().empty());

    // A pawn reaching the last rank keeps the letter it is given.
    ASSERT_TRUE(game.SetPosition(u"8/4P1k1/8/8/8/8/8/4K3 w - - 0 1"));
    ASSERT_TRUE(game.PlayMove(std::string("e7e8n")));
    EXPECT_EQ(game.Moves(), std::vector<std::string>{"e7e8n"});
    EXPECT_EQ(game.Current().At(60), kKnight);  // e8
}

TEST(EngineGame, ReadsTheEnPassantSquareOfTheText) {
    constexpr char16_t kAfterDoubleStep[] =
        u"rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 3";
    EngineGame game;
    ASSERT_TRUE(game.Start(false, false, kAfterDoubleStep));
    EXPECT_EQ(game.BaseFen(), "rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 3");
    EXPECT_TRUE(game.PlayMove(std::string("d4e3")));
}

TEST(EngineGame, WorksOutTheLimitsOfEachKindOfLevel) {
    struct Case {
        const char* name;
        int level;  // index in the menu
        bool blackToMove;
        ClockTimes clock;
        // Expected: a fixed move time, or the clock.
        int moveTime, white, black, movesToGo;
    };
    const Case kCases[] = {
        {"30 s per move, 10 s left on the clock", 2, false, {10000, 90000, 0}, 9000, -1, -1, 0},
        {"15 minutes, Black out of time", 5, true, {400000, 60, 0}, 0, 400000, 0, 0},
        {"40 moves in 2 hours", 7, false, {5000000, 6000000, 12}, 0, 4998000, 6000000, 12},
        {"40 in 2 hours, clock not running", 7, true, {}, 0, 7200000, 7198000, 40},
    };
    for (const Case& test : kCases) {
        EngineGame game;
        ASSERT_TRUE(game.Start(test.blackToMove, false, test.blackToMove ? kBlackToMove : nullptr));
        game.SetLevel(*LevelOfCommand(kFirstLevelCommand + test.level));
        const engine::SearchLimits limits = game.Limits(test.clock);
        EXPECT_EQ(limits.moveTimeMs, test.moveTime) << test.name;
        EXPECT_EQ(limits.timeMs[0], test.white) << test.name;
        EXPECT_EQ(limits.timeMs[1], test.black) << test.name;
        EXPECT_EQ(limits.movesToGo, test.movesToGo) << test.name;
    }
}

TEST(EngineGame, WritesScoresFromWhitesView) {
    struct Case {
        bool blackToMove, mate;
        int score;
        const char* text;
    };
    const Case kCases[] = {
        {false, false, -5, "-0.05"}, {true, false, 120, "-1.20"}, {true, false, -1234, "+12.34"},
        {false, false, 0, "0.00"},   {true, true, -4, "#4"},
    };
    for (const Case& test : kCases) {
        EngineGame game;
        ASSERT_TRUE(game.Start(true, false, test.blackToMove ? kBlackToMove : nullptr));
        EXPECT_EQ(game.ScoreText(test.mate, test.score), test.text)
            << test.blackToMove << " " << test.mate << " " << test.score;
    }
}

TEST(EngineGame, WritesTheLineInSan) {
    struct Case {
        const char16_t* position;
        std::vector<std::string> line;
        std::size_t maxLength;
        const char* text;
    };
    const Case kCases[] = {
        {nullptr, {"e2e4", "e7e5", "g1f3", "b8c6"}, 127, "1. e4 e5 2. Nf3 Nc6"},
        {nullptr, {"e2e4", "e2e4", "e7e5"}, 127, "1. e4"},  // stops at an illegal move
        {nullptr, {"e2e4", "e7e5", "g1f3"}, 10, "1. e4 e5"},
        {u"6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 30", {"a1a8"}, 127, "30. Ra8+"},
    };
    for (const Case& test : kCases) {
        EngineGame game;
        ASSERT_TRUE(game.Start(true, false, test.position));
        EXPECT_EQ(game.SanLine(test.line, test.maxLength), test.text);
    }
}

}  // namespace
}  // namespace velmora::plugin
