// Evaluation: a static score of a position in centipawns from the side to move's view.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/search/Board.h"

namespace velmora::engine {

// Material values the search uses for ordering and pruning (middlegame weights).
constexpr int kPieceValue[6] = {100, 320, 330, 500, 950, 0};

// Pawn structure changes far more rarely than the rest of the board: its part of the score is
// kept by pawn key. Each searcher owns one (no sharing between threads).
class PawnCache {
  public:
    struct Entry {
        std::uint64_t key = 0;
        std::int16_t middlegame = 0, endgame = 0;  // white's view
        Bitboard passed[2] = {0, 0};
    };
    explicit PawnCache(int entries = 4096) : entries_(static_cast<std::size_t>(entries)) {}
    Entry& Slot(std::uint64_t key) { return entries_[key & (entries_.size() - 1)]; }

  private:
    std::vector<Entry> entries_;  // a power of two
};

// Scores the position for the side to move. Terms: material and piece-square tables blended
// by game phase, pawn structure, mobility, king safety, bishop pair, rooks on open files, and
// a push of the lone king to the edge in won endings.
int Evaluate(const Board& board, PawnCache& pawns);

}  // namespace velmora::engine
