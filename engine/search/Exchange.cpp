// Exchange: the swap-off on one square, played out on occupancy bitboards.
#include "engine/search/Exchange.h"

#include "engine/search/Evaluate.h"

namespace velmora::engine {

bool ExchangeAtLeast(const Board& board, Move move, int threshold) {
    if (move.IsPromotion() || move.IsCastle()) return 0 >= threshold;
    const int from = move.From(), to = move.To();
    const int captured = move.Kind() == kEnPassant     ? kPawnKind
                         : board.PieceOn(to) == kEmpty ? -1
                                                       : KindOf(board.PieceOn(to));
    // swap starts as what the mover is ahead by, less the threshold, when nothing is taken
    // back; then as what the opponent gains by taking the moving piece.
    int swap = (captured >= 0 ? kPieceValue[captured] : 0) - threshold;
    if (swap < 0) return false;
    swap = kPieceValue[KindOf(board.PieceOn(from))] - swap;
    // Even losing the moving piece for nothing keeps the mover at the threshold.
    if (swap <= 0) return true;

    Bitboard occupied = board.Occupied() ^ SquareBit(from) ^ SquareBit(to);
    if (move.Kind() == kEnPassant) occupied ^= SquareBit(to ^ 8);
    const Bitboard diagonal = board.PiecesOfKind(kBishopKind) | board.PiecesOfKind(kQueenKind);
    const Bitboard straight = board.PiecesOfKind(kRookKind) | board.PiecesOfKind(kQueenKind);
    Bitboard attackers = board.AttackersTo(to, occupied) & occupied;
    int side = SideOf(board.PieceOn(from));
    // result is 1 while the original mover comes out at the threshold or better. Each turn the
    // side to capture takes with its least valuable piece, or stops when that cannot help.
    int result = 1;
    for (;;) {
        side ^= 1;
        attackers &= occupied;
        const Bitboard mine = attackers & board.Pieces(side);
        if (mine == 0) break;
        result ^= 1;
        int kind = kPawnKind;
        while ((mine & board.Pieces(side, kind)) == 0)
            ++kind;
        // A king may capture only when the other side has nothing left to take it with.
        if (kind == kKingKind) return (attackers & board.Pieces(side ^ 1)) ? !result : result;
        swap = kPieceValue[kind] - swap;
        if (swap < result) break;
        occupied ^= SquareBit(LowestSquare(mine & board.Pieces(side, kind)));
        // Sliders behind the piece that just captured join in.
        if (kind == kPawnKind || kind == kBishopKind || kind == kQueenKind)
            attackers |= BishopAttacks(to, occupied) & diagonal;
        if (kind == kRookKind || kind == kQueenKind)
            attackers |= RookAttacks(to, occupied) & straight;
    }
    return result != 0;
}

}  // namespace velmora::engine
