// Position text: a position written as one line of six fields, and read back.
#pragma once

#include "core/PositionValue.h"

namespace velmora {

// Room a buffer for WritePositionText needs.
constexpr int kPositionTextSize = 96;

// Writes ranks 8..1, side, castling, en passant, a half-move clock of 0 and the move number
// into buffer (kPositionTextSize characters) and returns the length. An en-passant value
// beyond the board still writes two characters computed from it.
int WritePositionText(const PositionValue& position, char16_t* buffer);

// Reads a position text into position. Returns false on an unknown castling character or an
// en-passant letter without a rank digit, leaving whatever was already read in place (the
// board is cleared first). Missing trailing fields read as empty, a missing move number as 1.
// An en-passant square read from text lands beyond the board, so it never allows a capture.
bool ReadPositionText(const char16_t* text, PositionValue* position);

}  // namespace velmora
