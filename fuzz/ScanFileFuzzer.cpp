// Fuzz target: the input after its first byte as a PGN file, scanned with the default
// read-ahead and with a block of 1 to 256 bytes picked by the first byte; both must find the
// same games, since lines come out the same whatever is read ahead. With the small block, the
// lines the scanner's fast paths cut or pass over must be those NextLine cuts one by one.
#include <cstddef>
#include <cstdint>

#include "fuzz/FuzzDrivers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    if (size == 0) return 0;
    std::string_view file(reinterpret_cast<const char*>(data) + 1, size - 1);
    fuzz::ScanRun large = fuzz::RunScan(file, PgnLineReader::kDefaultBlockSize);
    fuzz::ScanRun small = fuzz::RunScan(file, 1u + data[0]);
    fuzz::Require(large.count == int(large.games.size()), "the count is that of games handed on");
    fuzz::Require(small.count == large.count && small.games == large.games,
                  "the block size changes nothing that is found");
    fuzz::LinesRun lines = fuzz::RunLines(file, 1u + data[0]);
    fuzz::Require(lines.visited == lines.cut, "ForEachLine cuts the lines NextLine cuts");
    fuzz::Require(lines.skippedTo == lines.tagLines, "passing over lines stops at every tag line");
    return 0;
}
