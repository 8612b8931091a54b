// Move generation: every legal move of the side to move, or the captures and promotions only.
#pragma once

#include <cstdint>

#include "engine/search/Board.h"
#include "engine/search/Move.h"

namespace velmora::engine {

// The moves of one position with a score each for ordering. 256 is more than any legal
// position needs (218 is the most known).
struct MoveList {
    Move moves[256];
    int scores[256];
    int size = 0;

    void Add(Move move) { moves[size++] = move; }
    const Move* begin() const { return moves; }
    const Move* end() const { return moves + size; }
};

enum class MoveSet { All, Noisy };

// Appends the legal moves of the side to move: all of them, or captures (en passant
// included) and promotions only. Pins and checks are worked out first, so no move needs a
// trial make to be kept.
void GenerateMoves(const Board& board, MoveList& list, MoveSet set = MoveSet::All);
// Finds the legal move written as coordinates ("e2e4", "e7e8q"); none when there is no such
// move.
Move ParseMove(const Board& board, const char* text);

// Counts the leaf positions depth plies ahead (each move generator's classic check).
std::uint64_t Perft(Board& board, int depth);

}  // namespace velmora::engine
