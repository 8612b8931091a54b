// TimeControl: what a search is allowed (depth, nodes, clock) and how long it may think.
#pragma once

#include <chrono>
#include <cstdint>

namespace velmora::engine {

// What the caller gives a search. Zero in a field means "no limit of that kind"; with no
// limit at all (and not infinite) the search runs to its maximum depth.
struct SearchLimits {
    int depth = 0;
    std::uint64_t nodes = 0;
    int moveTimeMs = 0;  // fixed time for this move
    // The clock: remaining time and increment per side (white, black) in milliseconds, -1 for
    // no clock; moves to go until the next time control, 0 for the rest of the game.
    int timeMs[2] = {-1, -1};
    int incrementMs[2] = {0, 0};
    int movesToGo = 0;
    // Think until stopped, even after the search has nothing more to find.
    bool infinite = false;
    // Time kept back on every move for the messages between engine and its host.
    int overheadMs = 30;
};

// The two deadlines of one search, worked out from the limits for the side to move: a soft
// one after which no new iteration starts, and a hard one at which the search stops at once.
class TimeControl {
  public:
    using Clock = std::chrono::steady_clock;

    void Start(const SearchLimits& limits, int side);
    // Whether a time limit applies at all.
    bool Limited() const { return limited_; }
    std::int64_t ElapsedMs() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start_).count();
    }
    bool HardLimitReached() const { return limited_ && ElapsedMs() >= hardMs_; }
    // Whether another iteration should start; scale stretches the soft limit when the best
    // move keeps changing (above 1) or shortens it when it is stable (below 1).
    bool MayStartIteration(double scale) const;
    std::int64_t SoftMs() const { return softMs_; }
    std::int64_t HardMs() const { return hardMs_; }

  private:
    Clock::time_point start_;
    bool limited_ = false;
    bool fixed_ = false;
    std::int64_t softMs_ = 0;
    std::int64_t hardMs_ = 0;
};

}  // namespace velmora::engine
