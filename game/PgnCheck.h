// Checking a game of a PGN file: read as loading would read it, on position values only.
#pragma once

#include <cstdint>

#include "game/PgnParser.h"

namespace velmora {

class PgnLineReader;

// Reads the game at offset the way LoadGame does and returns the outcome LoadGame would
// return, without building a game: moves are replayed on position values, comments and glyphs
// are read and passed over. The reader is left just past the last line read.
PgnOutcome CheckGame(PgnLineReader& reader, std::int64_t offset);

}  // namespace velmora
