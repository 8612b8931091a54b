// Legal moves: the list of every legal move of the side to move, and mate and stalemate.
#pragma once

#include <cstdint>

#include "core/ChessTypes.h"
#include "core/PositionValue.h"

namespace velmora {

// The moves of one position. A position reached in a game has at most 218; only a set-up
// board crowded with far more pieces than a game can have would pass kCapacity, and the moves
// beyond it are then left out.
class MoveList {
  public:
    static constexpr int kCapacity = 512;

    int Size() const { return size_; }
    bool Empty() const { return size_ == 0; }
    const Move& operator[](int index) const { return moves_[index]; }
    const Move* begin() const { return moves_; }
    const Move* end() const { return moves_ + size_; }
    bool Contains(Move move) const;
    void Add(Move move) {
        if (size_ < kCapacity) moves_[size_++] = move;
    }
    void Clear() { size_ = 0; }

  private:
    Move moves_[kCapacity];
    int size_ = 0;
};

// Fills moves with every legal move of the pieces of the side to move, ordered by from square,
// then to square, then promotion type (rook, knight, bishop, queen for a promoting pawn).
void LegalMoves(const PositionValue& position, MoveList* moves);
// Whether the side to move has any legal move; stops at the first one.
bool HasLegalMove(const PositionValue& position);

enum class GameEnd : std::uint8_t { None, Checkmate, Stalemate };
// Checkmate when the side to move is in check and has no legal move, stalemate when it has
// none without being in check.
GameEnd GameEndOf(const PositionValue& position);

}  // namespace velmora
