// Fuzz target: arbitrary bytes, cut at newlines, as lines from a UCB board to a link over a fresh
// game.
#include <cstddef>
#include <cstdint>

#include "fuzz/DeviceFuzzDrivers.h"
#include "fuzz/FuzzDrivers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    const fuzz::UcbRun run = fuzz::RunUcbLines({reinterpret_cast<const char*>(data), size});
    fuzz::Require(run.holds,
                  "answers are whole lines, the current position stays in the game, and only "
                  "move lines add moves");
    return 0;
}
