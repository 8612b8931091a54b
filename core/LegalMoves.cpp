// Legal moves: every from/to pair of the side to move through the legality test.
#include "core/LegalMoves.h"

#include "core/MoveRules.h"

namespace velmora {

namespace {

// Calls visit for each legal move in list order; stops when visit returns false.
template <typename Visit>
void ForEachLegalMove(const PositionValue& position, Visit visit) {
    for (int from = 0; from < 64; ++from) {
        const PieceCode code = position.At(from);
        if (code == 0 || ColourOf(code) != position.sideToMove) continue;
        for (int to = 0; to < 64; ++to) {
            if (to == from) continue;
            bool promotes = false;
            if (!IsLegalMove(position, static_cast<Square>(from), static_cast<Square>(to),
                             &promotes)) {
                continue;
            }
            Move move{static_cast<Square>(from), static_cast<Square>(to), 0};
            if (!promotes) {
                if (!visit(move)) return;
                continue;
            }
            for (int type = kRook; type <= kQueen; ++type) {
                move.promotion = static_cast<std::uint8_t>(type);
                if (!visit(move)) return;
            }
        }
    }
}

}  // namespace

bool MoveList::Contains(Move move) const {
    for (const Move& m : *this) {
        if (m == move) return true;
    }
    return false;
}

void LegalMoves(const PositionValue& position, MoveList* moves) {
    moves->Clear();
    ForEachLegalMove(position, [moves](Move move) {
        moves->Add(move);
        return true;
    });
}

bool HasLegalMove(const PositionValue& position) {
    bool found = false;
    ForEachLegalMove(position, [&found](Move) {
        found = true;
        return false;
    });
    return found;
}

GameEnd GameEndOf(const PositionValue& position) {
    if (HasLegalMove(position)) return GameEnd::None;
    return InCheck(position) ? GameEnd::Checkmate : GameEnd::Stalemate;
}

}  // namespace velmora
