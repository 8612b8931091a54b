// Fuzz target: the input as a position text, read, written, and the written text read again.
#include <cstddef>
#include <cstdint>

#include "fuzz/FuzzDrivers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    PositionValue position;
    fuzz::PositionTextRun run =
        fuzz::RunPositionText({reinterpret_cast<const char*>(data), size}, position);
    fuzz::Require(run.RoundTripHolds(position), "a written position text reads back to itself");
    return 0;
}
