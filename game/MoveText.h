// Moves of the tree as text: SAN read into a position of the tree, and a node written as SAN.
#pragma once

#include "core/San.h"

namespace velmora {

class MoveNode;
class Position;

// Reads the move text on position and returns the position after it: an existing
// continuation's when the move is already in the tree, else a new one (first continuation or
// a new variation). Returns null for unreadable text or a move that cannot be played, and says
// which in *status when given. Ambiguous text plays the first candidate in square order.
Position* ReadSan(Position* position, const char16_t* text, SanStatus* status = nullptr);
Position* ReadSan(Position* position, const char* text, SanStatus* status = nullptr);

// Writes the node's move as SAN with its glyph; returns the length.
int WriteSan(const MoveNode* node, char16_t* buffer, SanStyle style = {});
// Writes the node's move as from square, to square and promotion letter ("e7e8q").
int WriteCoordinates(const MoveNode* node, char16_t* buffer);

}  // namespace velmora
