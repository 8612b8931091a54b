// The lines a serial port's reader hands on, kept for the test thread to wait for.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace velmora::test {

using Clock = std::chrono::steady_clock;

inline long long MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

class ReceivedLines {
  public:
    // ignored: a line the far end repeats until it is answered, left out (null for none).
    explicit ReceivedLines(const char* ignored = nullptr) : ignored_(ignored ? ignored : "") {}
    // The reader's callback, with the object as its context.
    static void Add(const char* line, void* context) {
        ReceivedLines& self = *static_cast<ReceivedLines*>(context);
        if (!self.ignored_.empty() && self.ignored_ == line) return;
        std::lock_guard<std::mutex> lock(self.mutex_);
        self.lines_.push_back(line);
        self.changed_.notify_all();
    }
    // Waits up to milliseconds until there are count lines; returns all there are.
    std::vector<std::string> WaitFor(std::size_t count, int milliseconds = 20000) {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait_for(lock, std::chrono::milliseconds(milliseconds),
                          [&] { return lines_.size() >= count; });
        return lines_;
    }

  private:
    std::string ignored_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> lines_;
};

}  // namespace velmora::test
