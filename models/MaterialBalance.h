// MaterialBalance: the pieces each side still has on the board and those it has lost, counted
// against the set every game starts with.
#pragma once

#include <array>

#include "core/PositionValue.h"

namespace velmora {

// Counts by piece type 1..6 (pawn, rook, knight, bishop, queen, king); index 0 is unused.
using PieceCounts = std::array<int, 7>;

struct MaterialBalance {
    PieceCounts onBoard[2] = {};  // white, black
    // Pieces of the initial set no longer on the board. A promoted pawn counts as lost, and
    // the piece it became is not (a second queen leaves no queen missing).
    PieceCounts taken[2] = {};
};

MaterialBalance CountMaterial(const PositionValue& position);

}  // namespace velmora
