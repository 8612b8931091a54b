// The game clock on a fake tick: time controls, increments, a wrapping tick count, time running
// out.
#include "clock/ChessClock.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <tuple>

namespace velmora {
namespace {

// The clock driven as the game window does: a tick a second, and one as soon as a move is made.
class ClockGame {
  public:
    explicit ClockGame(const TimeControl& control, std::uint32_t start = 0) : now(start) {
        clock.SetTimeControl(control);
        clock.Tick(side, moveNumber);
    }
    // The side to move thinks for the given seconds, then completes its move.
    void Move(int seconds) {
        Think(seconds);
        if (side == kClockBlack) ++moveNumber;
        side = 1 - side;
        clock.Tick(side, moveNumber);
    }
    void Think(int seconds) {
        for (int i = 0; i < seconds; ++i) {
            now += 1000;
            clock.Tick(side, moveNumber);
        }
    }

    std::uint32_t now;
    ChessClock clock{[this] { return now; }};
    int side = kClockWhite;
    int moveNumber = 1;
};

struct Scheme {
    const char* name;
    SettingsBlock words;  // the control as the game record keeps it
    int secondsPerMove;
    int fullMoves;
    std::map<int, int> added;           // full-move number -> seconds added to each side
    std::map<int, int> movesToGoAfter;  // full-move number -> moves to go after that move
};

// Every half-move: the mover loses its move time less the increment and gains the control's
// time after its own move of the boundary's number; moves to go changes only after Black moves.
TEST(ChessClock, TimeControlsAcrossTheirBoundaries) {
    const Scheme schemes[] = {
        {"second control repeats after the first",
         {0, 20, 3000, 25, 600, 0, 0},
         30,
         71,
         {{20, 600}, {45, 600}, {70, 600}},
         {{1, 19}, {19, 1}, {20, 25}, {21, 24}, {44, 1}, {45, 25}, {70, 25}, {71, 24}}},
        {"three controls, with increment",
         {0, 40, 7200, 60, 3600, 1800, 5},
         50,
         70,
         {{40, 3600}, {60, 1800}},
         {{1, 39}, {39, 1}, {40, 60}, {41, 59}, {60, 0}, {70, 0}}},
        // A new game's record holds -1 for both move counts: no control is ever reached, the
        // 30 minutes are for the whole game.
        {"negative move counts", {0, -1, 1800, -1, 0, 0, 0}, 20, 50, {}, {{1, -1}, {50, -1}}},
    };
    for (const Scheme& scheme : schemes) {
        SCOPED_TRACE(scheme.name);
        const TimeControl control = TimeControl::FromSettings(scheme.words);
        ClockGame game(control);
        ChessClock& clock = game.clock;
        for (int move = 1; move <= scheme.fullMoves; ++move) {
            const auto found = scheme.added.find(move);
            const int added = found == scheme.added.end() ? 0 : found->second;
            const int change = control.increment - scheme.secondsPerMove + added;
            for (int side : {kClockWhite, kClockBlack}) {
                SCOPED_TRACE(::testing::Message() << "move " << move << " side " << side);
                const int other = 1 - side;
                const std::int32_t before = clock.Remaining(side);
                const std::int32_t otherBefore = clock.Remaining(other);
                const std::int32_t movesToGoBefore = clock.MovesToGo();
                game.Move(scheme.secondsPerMove);
                EXPECT_EQ(clock.Remaining(side), before + change);
                EXPECT_EQ(clock.Remaining(other), otherBefore);
                EXPECT_EQ(clock.RunningSide(), other);
                if (side == kClockWhite) {
                    EXPECT_EQ(clock.MovesToGo(), movesToGoBefore);
                }
            }
            const auto movesToGo = scheme.movesToGoAfter.find(move);
            if (movesToGo != scheme.movesToGoAfter.end()) {
                EXPECT_EQ(clock.MovesToGo(), movesToGo->second) << "after move " << move;
            }
        }
    }
}

// Intended: the clock never ends the game; a side out of time shows 0 and plays on. Time per
// move restores the full time after every move; the finished side shows its last move.
TEST(ChessClock, TimeRunningOutAndTimePerMove) {
    ClockGame game({0, 0, 30, 0, 0, 0, 0});
    game.Think(45);
    EXPECT_EQ(game.clock.SideText(kClockWhite), u"00:45/000:00");
    game.Move(0);
    EXPECT_EQ(game.clock.Remaining(kClockWhite), 0);
    EXPECT_EQ(game.clock.SideText(kClockWhite), u"00:45/000:00");
    game.Move(5);
    game.Think(3);
    EXPECT_EQ(game.clock.RunningSide(), kClockWhite);
    EXPECT_EQ(game.clock.MoveTime(kClockWhite), 3);
    EXPECT_EQ(game.clock.Remaining(kClockBlack), 25);

    ClockGame perMove({60, 0, 0, 0, 0, 0, 0});
    perMove.Move(10);
    perMove.Move(75);
    EXPECT_EQ(perMove.clock.Remaining(kClockBlack), 60);
}

// The normal face is the large face's two texts joined; minutes grow past their width.
TEST(ChessClock, TextsOfBothModes) {
    const std::tuple<std::int32_t, int, const char16_t*> rows[] = {
        {60, 1, u"00:01/000:59"}, {60000, 0, u"00:00/1000:00"}, {7000, 6000, u"100:00/016:40"}};
    for (const auto& [timePerMove, seconds, shown] : rows) {
        ClockGame game({timePerMove, 0, 0, 0, 0, 0, 0});
        game.Think(seconds);
        EXPECT_EQ(game.clock.SideText(kClockWhite), shown);
        EXPECT_EQ(game.clock.MoveTimeText(kClockWhite) + u"/" + game.clock.TotalText(kClockWhite),
                  shown);
    }
}

// Moves are timed by unsigned differences, so a count passing 2^32 costs nothing extra.
TEST(ChessClock, TickCountWrappingAround) {
    for (std::uint32_t start : {0xFFFFF000u, 0xFFFFFFFFu, 0u}) {
        SCOPED_TRACE(start);
        ClockGame game({0, 0, 600, 0, 0, 0, 0}, start);
        game.Think(5);
        game.now += 999;  // not yet a sixth second
        game.clock.Tick(kClockWhite, 1);
        EXPECT_EQ(game.clock.MoveTime(kClockWhite), 5);
        game.Move(1);
        EXPECT_EQ(game.clock.Remaining(kClockWhite), 594);
    }
}

// The engine reads the times in milliseconds, the running move not taken off. A reset clock
// drops the running move and starts a side without charging the pause to anyone.
TEST(ChessClock, TimesForTheEngineAndReset) {
    ClockGame game({0, 40, 300, 0, 0, 0, 10});
    ChessClock& clock = game.clock;
    game.Move(20);
    game.Move(30);
    game.Think(4);
    std::int32_t white = 0, black = 0, movesToGo = 0;
    clock.GetTimes(&white, &black, &movesToGo);
    EXPECT_EQ(white, 290000);
    EXPECT_EQ(black, 280000);
    EXPECT_EQ(movesToGo, 39);
    clock.Reset();
    game.now += 500000;
    clock.Tick(kClockStopped, 3);
    EXPECT_EQ(clock.RunningSide(), kClockStopped);
    clock.Tick(kClockBlack, 7);
    EXPECT_EQ(clock.Remaining(kClockWhite), 290);  // neither the running move nor the pause
    EXPECT_EQ(clock.MoveTime(kClockBlack), 0);
}

}  // namespace
}  // namespace velmora
