// Material on the board and material lost, per side and piece type.
#include "models/MaterialBalance.h"

namespace velmora {

MaterialBalance CountMaterial(const PositionValue& position) {
    // The initial set by type: 8 pawns, 2 rooks, 2 knights, 2 bishops, a queen and a king.
    static constexpr PieceCounts kInitialSet = {0, 8, 2, 2, 2, 1, 1};
    MaterialBalance balance;
    for (int square = 0; square < 64; ++square) {
        const PieceCode code = position.At(square);
        const int type = code & 31;
        if (type < 1 || type > 6) continue;
        ++balance.onBoard[ColourOf(code) == kWhite ? 0 : 1][type];
    }
    for (int side = 0; side < 2; ++side) {
        for (int type = 1; type <= 6; ++type) {
            const int missing = kInitialSet[type] - balance.onBoard[side][type];
            balance.taken[side][type] = missing > 0 ? missing : 0;
        }
    }
    return balance;
}

}  // namespace velmora
