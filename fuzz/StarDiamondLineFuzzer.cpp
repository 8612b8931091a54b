// Fuzz target: a Star Diamond import started, then fed arbitrary lines, with the request timer,
// the watchdog and a new start interleaved where a line begins with '!', '~' or '^'.
#include <cstddef>
#include <cstdint>

#include "fuzz/DeviceFuzzDrivers.h"
#include "fuzz/FuzzDrivers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    const fuzz::StarDiamondRun run =
        fuzz::RunStarDiamondLines({reinterpret_cast<const char*>(data), size});
    fuzz::Require(run.holds,
                  "an import in progress has a game, each end is reported once, a failure keeps "
                  "no game and no timer, and the game is one line of moves");
    return 0;
}
