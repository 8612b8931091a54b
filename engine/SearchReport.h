// SearchReport: one progress report of an engine's search, as an engine library passes it on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmora {

struct SearchReport {
    int depth = 0;
    // The score from the side to move's view: centipawns, or with mate the moves to mate
    // (negative when the side to move is mated).
    bool mate = false;
    int score = 0;
    std::uint64_t nodes = 0;
    std::uint64_t nodesPerSecond = 0;
    std::int64_t timeMs = 0;
    // The principal line as coordinate moves ("e2e4", "e7e8q").
    std::vector<std::string> line;
};

}  // namespace velmora
