// ScanFile: the one pass over a PGN file's lines that finds its games for a game list.
#pragma once

#include <cstdint>
#include <functional>

#include "game/GameRow.h"

namespace velmora {

class PgnLineReader;

// Receives each game the scanner completes, with the offset where the next line begins. The
// game's bytes are valid only during the call. Returns nonzero to go on, 0 to stop.
using OnGameFound = std::function<int(ScannedGame& game, std::uint32_t filePosition)>;

// Scans the file from its start for games: their offsets, the tag values a game list shows and
// their start texts. Counts them in *count. No move is read.
void ScanFile(PgnLineReader& reader, int* count, const OnGameFound& onGame);

}  // namespace velmora
