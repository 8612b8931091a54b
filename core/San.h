// SAN: reading a move written in short algebraic notation and writing a move node as text.
#pragma once

#include "core/ChessTypes.h"

namespace velmora {

class MoveNode;
class Position;

// Reads the move text on position and returns the position after it: an existing
// continuation's when the move is already in the tree, else a new one from PlayMove (first
// continuation or a new variation). Returns null for unreadable text or an illegal move.
// Only the leading characters that name the move are read; check marks and glyphs after
// them are ignored.
Position* ReadSan(Position* position, const char16_t* text);
Position* ReadSan(Position* position, const char* text);

// Room a WriteSan buffer needs for any move, number prefix and " $255" included.
constexpr int kSanBufferSize = 32;

// Writes the move as SAN, optionally prefixed by its number ("12. " or "12... "), and with its
// glyph as a symbol (NAG 1..6) or, with nagAsDollar, as " $n". Returns the length written.
int WriteSan(MoveNode* node, char16_t* buffer, int withNumber, int nagAsDollar);
// Writes the move as from square, to square and a lower-case promotion letter ("e7e8q").
// Returns the length written.
int WriteCoordinates(const MoveNode* node, char16_t* buffer);
// Fills the node's cached disambiguation text once: empty, the file letter, the rank digit,
// or both when neither alone tells the candidates apart.
void ComputeDisambiguation(MoveNode* node);

}  // namespace velmora
