// ChessClock: the two-sided game clock, its time controls and the texts its window shows.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "game/GameHeader.h"

namespace velmora {

class Position;

// The seven numbers of a time control, in the order the game record keeps them (its settings
// words) and the engine sets them. Times are in seconds.
struct TimeControl {
    std::int32_t timePerMove = 0;  // when not 0, every move has this fixed time
    std::int32_t firstMoves = 0;   // moves of the first control
    std::int32_t firstTime = 0;    // time of the first control
    std::int32_t secondMoves = 0;  // moves of the second control
    std::int32_t secondTime = 0;   // time added when the first control ends
    std::int32_t thirdTime = 0;    // time added when the second control ends
    std::int32_t increment = 0;    // added to a side after each of its moves

    static TimeControl FromSettings(const SettingsBlock& words);

    friend bool operator==(const TimeControl&, const TimeControl&) = default;
};

// The clock's sides; a stopped clock has no running side.
constexpr int kClockWhite = 0;
constexpr int kClockBlack = 1;
constexpr int kClockStopped = -1;

// Colours of a side's face as 0x00BBGGRR values.
struct ClockColours {
    std::uint32_t text;
    std::uint32_t background;
};

// The window that shows a clock. The clock tells it what changed; the window repaints from the
// clock's texts and colours.
class ClockDisplay {
  public:
    virtual ~ClockDisplay() = default;
    // Repaints side (kClockWhite or kClockBlack) from the clock's current state.
    virtual void RedrawSide(int side) = 0;
    // Replaces the window's own text.
    virtual void SetText(const char16_t* text) = 0;
};

// Milliseconds from a counter that may wrap around 2^32.
using TickSource = std::function<std::uint32_t()>;

// For each side the remaining time and the time spent on the current move, with the time
// control applied when a side completes its move. It measures time with a tick source (the
// system's by default) and is driven once a second by Tick.
class ChessClock {
  public:
    static constexpr const char16_t* kMoveLabel = u"Move :";
    static constexpr const char16_t* kTotalLabel = u"Total :";
    static constexpr const char16_t* kResetText = u"--";

    // Measures time with ticks, or with the platform's tick count when ticks is empty.
    explicit ChessClock(TickSource ticks = {});
    ChessClock(const ChessClock&) = delete;
    ChessClock& operator=(const ChessClock&) = delete;

    // Sets the window that shows the clock; null shows nothing. Not owned.
    void SetDisplay(ClockDisplay* display) { display_ = display; }

    // Stores the time control, sets moves to go to its first moves and both remaining times to
    // the time per move (or, without one, to the first control's time). Does not stop the clock.
    void SetTimeControl(const TimeControl& control);
    // Runs the clock for side (kClockWhite or kClockBlack) at full-move number moveNumber.
    // When side differs from the running side, the running side has completed its move: the
    // time control is applied to it and side starts its move now. The first tick after
    // construction or Reset only starts side. Other values of side are ignored.
    void Tick(int side, int moveNumber);
    // Stops the clock: no side runs until the next Tick, and the window shows "--".
    void Reset();

    // Gives the remaining times in milliseconds and the moves to go, for an engine. The move in
    // progress is not taken off the running side's time.
    void GetTimes(std::int32_t* whiteMilliseconds, std::int32_t* blackMilliseconds,
                  std::int32_t* movesToGo) const;

    // The large-clocks mode shows each side's move and total times under labels, with a move
    // text; the normal mode shows one line per side.
    void SetLarge(bool large) { large_ = large; }
    bool Large() const { return large_; }
    // Sets the move text of large mode (the move that led to the current position); null
    // clears it.
    void SetMoveText(const char16_t* text);
    const std::u16string& MoveText() const { return moveText_; }

    int RunningSide() const { return runningSide_; }
    bool IsRunning(int side) const { return side == runningSide_ && side != kClockStopped; }
    const TimeControl& Control() const { return control_; }
    // Seconds spent on side's current (or, once finished, last) move.
    std::int32_t MoveTime(int side) const { return moveTime_[Index(side)]; }
    // Seconds left to side when its current move began.
    std::int32_t Remaining(int side) const { return remaining_[Index(side)]; }
    // Seconds shown as side's total: the remaining time less the running move, never below 0.
    std::int32_t Shown(int side) const;
    std::int32_t MovesToGo() const { return movesToGo_; }
    // The full-move number of the last tick.
    std::int32_t MoveNumber() const { return moveNumber_; }

    // Side's line in normal mode: move time, then total: "01:05/029:58".
    std::u16string SideText(int side) const;
    // Side's move time as large mode shows it: "01:05".
    std::u16string MoveTimeText(int side) const;
    // Side's total as large mode shows it: "029:58".
    std::u16string TotalText(int side) const;
    // White on black for the running side, black on white for the other.
    ClockColours Colours(int side) const;

  private:
    static int Index(int side) { return side == kClockBlack ? 1 : 0; }
    void CompleteMove(int finished, int next);
    void Redraw(int side);

    TickSource ticks_;
    ClockDisplay* display_ = nullptr;
    std::int32_t moveTime_[2] = {0, 0};
    std::int32_t remaining_[2] = {0, 0};
    int runningSide_ = kClockStopped;
    std::uint32_t periodStart_ = 0;
    std::int32_t moveNumber_ = 0;
    bool large_ = false;
    std::u16string moveText_;
    std::int32_t movesToGo_ = 0;
    TimeControl control_;
};

// Returns the clock side of a colour of the rules (0 white, 32 black).
int ClockSideOf(int colour);
// Returns the full-move number the clock is given for position: 1 at the game's first position,
// else the arrival move's number, plus 1 when White is to move.
int ClockMoveNumber(const Position& position);

}  // namespace velmora
