// TimeControl: the share of the clock one move may use.
#include "engine/search/TimeControl.h"

#include <algorithm>

namespace velmora::engine {

void TimeControl::Start(const SearchLimits& limits, int side) {
    start_ = Clock::now();
    limited_ = false;
    softMs_ = hardMs_ = 0;
    fixed_ = false;
    if (limits.infinite) return;
    if (limits.moveTimeMs > 0) {
        limited_ = fixed_ = true;
        softMs_ = hardMs_ = std::max(1, limits.moveTimeMs - limits.overheadMs);
        return;
    }
    const int remaining = limits.timeMs[side];
    if (remaining < 0) return;
    limited_ = true;
    const std::int64_t increment = std::max(0, limits.incrementMs[side]);
    // What may be spent at all: the clock less the overhead, and never the last few
    // milliseconds, which go to the messages and the operating system's delays.
    const std::int64_t usable = std::max<std::int64_t>(1, remaining - limits.overheadMs);
    // Spread the time over the moves still to play: those to the next control, or about 30
    // for the rest of a game with no control ahead. The increment comes back every move.
    const int moves = limits.movesToGo > 0 ? std::min(limits.movesToGo, 40) : 30;
    std::int64_t soft = usable / moves + increment * 3 / 4;
    // One move may take a few times its share when the search needs it (a changing best
    // move), but never more than a part of what is left: the game goes on afterwards.
    std::int64_t hard = std::min(soft * 4, usable * (limits.movesToGo == 1 ? 9 : 4) / 10);
    soft = std::min(soft, usable / 2);
    hard = std::max<std::int64_t>(hard, std::min<std::int64_t>(soft, usable));
    softMs_ = std::max<std::int64_t>(1, soft);
    hardMs_ = std::max<std::int64_t>(1, hard);
}

bool TimeControl::MayStartIteration(double scale) const {
    if (!limited_) return true;
    // A fixed time per move is there to be used: any time left over is lost.
    if (fixed_) return ElapsedMs() < hardMs_;
    // An iteration takes a few times as long as the one before: starting one after about half
    // the soft time is mostly wasted.
    const double budget = std::min(static_cast<double>(hardMs_), softMs_ * scale);
    return ElapsedMs() < budget * 0.55;
}

}  // namespace velmora::engine
