// The game clock: time controls applied at each completed move, and the texts of both sides.
#include "clock/ChessClock.h"

#include <cstdint>
#include <cstdio>
#include <limits>

#include "core/ChessTypes.h"
#include "game/MoveTree.h"
#include "game/Position.h"
#include "platform/TickCount.h"

namespace velmora {
namespace {

constexpr std::int64_t kMaxSeconds = std::numeric_limits<std::int32_t>::max();

std::int32_t ClampSeconds(std::int64_t seconds) {
    if (seconds < 0) return 0;
    return static_cast<std::int32_t>(seconds > kMaxSeconds ? kMaxSeconds : seconds);
}

// Returns whether value is a whole multiple of divisor (any number is one of 1 and of -1);
// divisor must not be 0.
// A control of no moves or a negative number of moves is never reached.
bool IsMultiple(std::int64_t value, std::int64_t divisor) {
    return divisor > 0 && value % divisor == 0;
}

// Formats seconds as minutes and seconds with the given printf pattern ("%02d:%02d").
std::u16string MinutesSeconds(const char* pattern, std::int32_t seconds) {
    char text[32];
    const int length = std::snprintf(text, sizeof text, pattern, seconds / 60, seconds % 60);
    std::u16string wide;
    for (int i = 0; i < length && i < static_cast<int>(sizeof text) - 1; ++i)
        wide += static_cast<char16_t>(text[i]);
    return wide;
}

}  // namespace

TimeControl TimeControl::FromSettings(const SettingsBlock& words) {
    return {words[0], words[1], words[2], words[3], words[4], words[5], words[6]};
}

ChessClock::ChessClock(TickSource ticks) : ticks_(std::move(ticks)) {
    if (!ticks_) ticks_ = platform::TickCount;
}

void ChessClock::SetTimeControl(const TimeControl& control) {
    control_ = control;
    movesToGo_ = control.firstMoves;
    const std::int32_t start = control.timePerMove != 0 ? control.timePerMove : control.firstTime;
    remaining_[0] = remaining_[1] = start;
    Redraw(kClockWhite);
    Redraw(kClockBlack);
}

void ChessClock::Tick(int side, int moveNumber) {
    if (side != kClockWhite && side != kClockBlack) return;
    const std::uint32_t now = ticks_();
    if (side != runningSide_) {
        const int finished = runningSide_;
        if (finished != kClockStopped) CompleteMove(finished, side);
        runningSide_ = side;
        periodStart_ = now;
        if (finished != kClockStopped) Redraw(finished);
    }
    // Unsigned difference: right across the counter's wrap-around.
    moveTime_[Index(side)] = static_cast<std::int32_t>((now - periodStart_) / 1000u);
    moveNumber_ = moveNumber;
    Redraw(side);
}

// Applies the time control to side finished, whose move has just been completed; next is the
// side to move now. The move number is still that of the last tick, the move just completed,
// so both sides of a full move see the same number. Moves to go counts full moves and changes
// only when next is White.
void ChessClock::CompleteMove(int finished, int next) {
    const int index = Index(finished);
    if (control_.timePerMove != 0) {
        remaining_[index] = control_.timePerMove;
        return;
    }
    const TimeControl& c = control_;
    const std::int64_t number = moveNumber_;
    const bool fullMove = next == kClockWhite;
    std::int64_t change = static_cast<std::int64_t>(c.increment) - moveTime_[index];
    // Sets moves to go after a full move.
    auto setMovesToGo = [&](std::int32_t moves) {
        if (fullMove) movesToGo_ = moves;
    };
    // After the last control nothing is left to count.
    auto countDown = [&] {
        if (fullMove && movesToGo_ > 0) --movesToGo_;
    };
    if (c.secondTime != 0 && c.thirdTime == 0) {
        if (c.secondMoves != 0) {
            // The second control repeats every secondMoves moves after the first.
            if (IsMultiple(number - c.firstMoves, c.secondMoves)) {
                change += c.secondTime;
                setMovesToGo(c.secondMoves);
            } else {
                countDown();
            }
        } else if (number == c.firstMoves) {
            // One more period for the rest of the game.
            change += c.secondTime;
            setMovesToGo(0);
        } else if (movesToGo_ > 0) {
            countDown();
        }
    } else if (c.secondTime != 0 && c.thirdTime != 0) {
        if (number == c.firstMoves) {
            change += c.secondTime;
            setMovesToGo(c.secondMoves);
        } else if (number == c.secondMoves) {
            change += c.thirdTime;
            setMovesToGo(0);
        } else {
            countDown();
        }
    } else if (c.secondTime == 0 && c.firstMoves != 0) {
        // The first control repeats.
        if (IsMultiple(number, c.firstMoves)) {
            change += c.firstTime;
            setMovesToGo(c.firstMoves);
        } else {
            countDown();
        }
    }
    remaining_[index] = ClampSeconds(remaining_[index] + change);
}

void ChessClock::Reset() {
    runningSide_ = kClockStopped;
    if (display_) display_->SetText(kResetText);
}

void ChessClock::GetTimes(std::int32_t* whiteMilliseconds, std::int32_t* blackMilliseconds,
                          std::int32_t* movesToGo) const {
    constexpr std::int64_t kMax = std::numeric_limits<std::int32_t>::max();
    const auto milliseconds = [](std::int32_t seconds) {
        const std::int64_t value = static_cast<std::int64_t>(seconds) * 1000;
        return static_cast<std::int32_t>(value > kMax ? kMax : value);
    };
    if (whiteMilliseconds) *whiteMilliseconds = milliseconds(remaining_[0]);
    if (blackMilliseconds) *blackMilliseconds = milliseconds(remaining_[1]);
    if (movesToGo) *movesToGo = movesToGo_;
}

void ChessClock::SetMoveText(const char16_t* text) {
    moveText_ = text ? text : u"";
}

std::int32_t ChessClock::Shown(int side) const {
    const int index = Index(side);
    const std::int64_t shown =
        static_cast<std::int64_t>(remaining_[index]) - (IsRunning(side) ? moveTime_[index] : 0);
    return ClampSeconds(shown);
}

std::u16string ChessClock::SideText(int side) const {
    return MoveTimeText(side) + u"/" + TotalText(side);
}

std::u16string ChessClock::MoveTimeText(int side) const {
    return MinutesSeconds("%02d:%02d", MoveTime(side));
}

std::u16string ChessClock::TotalText(int side) const {
    return MinutesSeconds("%03d:%02d", Shown(side));
}

ClockColours ChessClock::Colours(int side) const {
    constexpr std::uint32_t kBlackColour = 0x00000000;
    constexpr std::uint32_t kWhiteColour = 0x00FFFFFF;
    if (IsRunning(side)) return {kWhiteColour, kBlackColour};
    return {kBlackColour, kWhiteColour};
}

void ChessClock::Redraw(int side) {
    if (display_) display_->RedrawSide(side);
}

int ClockSideOf(int colour) {
    return colour == kBlack ? kClockBlack : kClockWhite;
}

int ClockMoveNumber(const Position& position) {
    const MoveNode* arrival = position.ArrivalNode();
    if (!arrival) return 1;
    return arrival->moveNumber + (position.SideToMove() == kWhite ? 1 : 0);
}

}  // namespace velmora
