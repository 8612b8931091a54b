// RecordingHost: a host for engine libraries in tests, writing down each call as a line of text.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

#include "engine/PluginInterface.h"

namespace velmora::plugin::testing {

inline std::string Narrow(const char16_t* text) {
    std::string narrow;
    for (; text != nullptr && *text != 0; ++text)
        narrow += static_cast<char>(*text);
    return narrow;
}

// Calls come from the library's threads; the test takes them with TakeCalls or waits with WaitFor.
class RecordingHost final : public HostCallbacks {
  public:
    void MovePlayed(const char16_t* move) override { Record("MovePlayed " + Narrow(move)); }
    void FatalError(const char16_t* text) override { Record("FatalError " + Narrow(text)); }
    void GameOver(const char16_t* caption, const char16_t* text) override {
        Record("GameOver " + Narrow(caption) + " " + Narrow(text));
    }
    void SetEngineName(const char16_t* name) override { Record("SetEngineName " + Narrow(name)); }
    void SwitchSides() override { Record("SwitchSides"); }
    void ShowInfo(int show) override { Record("ShowInfo " + std::to_string(show)); }
    void SetTimeControl(std::int32_t timePerMove, std::int32_t firstMoves, std::int32_t firstTime,
                        std::int32_t secondMoves, std::int32_t secondTime, std::int32_t thirdTime,
                        std::int32_t increment) override {
        std::string call = "SetTimeControl";
        for (const std::int32_t n :
             {timePerMove, firstMoves, firstTime, secondMoves, secondTime, thirdTime, increment})
            call += " " + std::to_string(n);
        Record(call);
    }
    // Written as "SearchInfo depth speed nodes ms score | line".
    void SearchInfo(std::uint32_t depth, std::uint32_t speed, std::uint32_t nodes,
                    std::uint32_t milliseconds, const char* move, const char* line) override {
        Record("SearchInfo " + std::to_string(depth) + " " + std::to_string(speed) + " " +
               std::to_string(nodes) + " " + std::to_string(milliseconds) + " " + move + " | " +
               line);
    }
    void GetClockTimes(std::int32_t* white, std::int32_t* black, std::int32_t* movesToGo) override {
        std::lock_guard<std::mutex> lock(mutex_);
        std::tie(*white, *black, *movesToGo) = std::tie(white_, black_, movesToGo_);
    }

    void SetClock(std::int32_t white, std::int32_t black, std::int32_t movesToGo) {
        std::lock_guard<std::mutex> lock(mutex_);
        std::tie(white_, black_, movesToGo_) = std::tie(white, black, movesToGo);
    }
    // Returns and forgets the calls so far.
    std::vector<std::string> TakeCalls() {
        std::lock_guard<std::mutex> lock(mutex_);
        std::vector<std::string> calls;
        calls.swap(calls_);
        return calls;
    }
    // Waits until a call starting with prefix has come (true), or timeoutMs has passed.
    bool WaitFor(const std::string& prefix, int timeoutMs) {
        std::unique_lock<std::mutex> lock(mutex_);
        return changed_.wait_for(lock, std::chrono::milliseconds(timeoutMs), [&] {
            for (const std::string& call : calls_)
                if (call.rfind(prefix, 0) == 0) return true;
            return false;
        });
    }

  private:
    void Record(std::string call) {
        std::lock_guard<std::mutex> lock(mutex_);
        calls_.push_back(std::move(call));
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> calls_;
    std::int32_t white_ = 0, black_ = 0, movesToGo_ = 0;
};

}  // namespace velmora::plugin::testing
