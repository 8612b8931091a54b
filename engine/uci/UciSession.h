// UciSession: the UCI protocol, one command line at a time, over an Engine.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "engine/search/Engine.h"

namespace velmora::engine {

// Reads the parameters of a "go" line (the word "go" included or not) into limits; unknown
// words are skipped. Returns false when a number is missing or unreadable.
bool ParseGoLimits(std::string_view line, SearchLimits* limits);
// Writes one search report as an "info" line.
std::string InfoLine(const SearchInfo& info);

// Answers the lines a GUI sends. Replies go to the writer, one line per call without the
// line end; the writer is called from the reading thread and from the search thread, never
// from both at once.
class UciSession {
  public:
    using Writer = std::function<void(const std::string& line)>;

    UciSession(Engine& engine, Writer writer);

    // Handles one line; returns false after "quit" (the search is then stopped and joined).
    bool HandleLine(std::string_view line);

  private:
    void Send(const std::string& line);
    void HandlePosition(std::string_view arguments);
    void HandleSetOption(std::string_view arguments);
    void HandleGo(std::string_view arguments);

    Engine& engine_;
    Writer writer_;
    std::mutex writing_;
    int overheadMs_ = 30;
};

}  // namespace velmora::engine
