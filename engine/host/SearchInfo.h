// SearchInfo: what an engine last said about its search, as the game window shows it.
#pragma once

#include <cstdint>

namespace velmora {

// Gives the engine's latest search information.
class SearchInfoSource {
  public:
    virtual ~SearchInfoSource() = default;
    // Copies the four numbers (depth, thousands of nodes per second, total nodes, elapsed
    // milliseconds) and converts the move and line texts with the system code page into the
    // buffers, each cut to at most size - 1 characters and zero-terminated.
    virtual void GetSearchInfo(std::int32_t* depth, std::int32_t* speed, std::int32_t* nodes,
                               std::int32_t* milliseconds, char16_t* move, int moveSize,
                               char16_t* line, int lineSize) const = 0;
};

}  // namespace velmora
