// Fuzz target: a start position picked by the first byte, then SAN moves read, played and
// written.
#include <cstddef>
#include <cstdint>

#include "fuzz/FuzzDrivers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    fuzz::SanRun run = fuzz::RunSan({reinterpret_cast<const char*>(data), size});
    fuzz::Require(run.pathsAgree,
                  "the tree and a bare position value read, play and write the same move");
    return 0;
}
