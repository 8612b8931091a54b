// Exchange: static exchange evaluation, the material outcome of a capture sequence on a square.
#pragma once

#include "engine/search/Board.h"

namespace velmora::engine {

// Whether playing move and then the best series of recaptures on its target square (each
// side taking with its least valuable piece, and free to stop) wins at least threshold
// centipawns for the mover. Pins are not looked at; promotions and castling count as 0.
bool ExchangeAtLeast(const Board& board, Move move, int threshold);

}  // namespace velmora::engine
