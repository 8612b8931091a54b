// Evaluation: hand-set terms, each with its reason; middlegame and endgame scores blended by
// how much material is left.
#include "engine/search/Evaluate.h"

#include <algorithm>
#include <cstdlib>

namespace velmora::engine {

namespace {

// A pair of scores, one for the middlegame and one for the endgame, summed from white's view.
struct Score {
    int mg = 0, eg = 0;
    void Add(int side, int middle, int end) {
        mg += side == kWhiteSide ? middle : -middle;
        eg += side == kWhiteSide ? end : -end;
    }
};

// Material. Minor pieces lose a little and rooks gain in the endgame, where open lines favour
// rooks; a pawn grows in the endgame, where it may queen.
constexpr int kMaterialMg[6] = {85, 320, 335, 480, 960, 0};
constexpr int kMaterialEg[6] = {110, 295, 315, 530, 990, 0};
// Game phase: 24 with all pieces on the board, 0 with pawns and kings only.
constexpr int kPhaseWeight[6] = {0, 1, 1, 2, 4, 0};
constexpr int kMaxPhase = 24;

constexpr int Abs(int x) {
    return x < 0 ? -x : x;
}
// Steps from the four centre squares: 0 on d4..e5, 6 in a corner (file and rank distances
// added).
constexpr int CentreDistance(int square) {
    return (Abs(2 * (square & 7) - 7) + Abs(2 * (square >> 3) - 7)) / 2 - 1;
}
constexpr int Distance(int a, int b) {
    return std::max(Abs((a & 7) - (b & 7)), Abs((a >> 3) - (b >> 3)));
}

// Piece-square tables from white's view (black reads square ^ 56), built from a few rules
// instead of typed-in numbers, so each value has its reason:
// - pawns gain as they advance, more in the endgame; centre pawns are worth more while they
//   hold the centre, and the d and e pawns should leave home to free the bishops;
// - knights and bishops want the centre, knights most (a knight on the rim reaches little);
// - rooks like the seventh rank and the centre files; queens drift to the centre late;
// - the king hides on the wing behind its pawns in the middlegame and walks to the centre in
//   the endgame, where it is a fighting piece.
struct PieceSquareTables {
    int mg[6][64], eg[6][64];
    constexpr PieceSquareTables() : mg(), eg() {
        constexpr int kPawnFile[8] = {0, 0, 4, 10, 10, 4, 0, 0};
        constexpr int kRookFile[8] = {-4, 0, 4, 8, 8, 4, 0, -4};
        constexpr int kKingHome[8] = {15, 25, 10, -10, -5, -10, 30, 20};
        for (int s = 0; s < 64; ++s) {
            const int f = s & 7, r = s >> 3, centre = CentreDistance(s);
            if (r >= 1 && r <= 6) {
                mg[kPawnKind][s] = (r - 1) * 3 + kPawnFile[f] * (r == 3 || r == 4 ? 2
                                                                 : r == 2         ? 1
                                                                                  : 0);
                if (r == 1 && (f == 3 || f == 4)) mg[kPawnKind][s] -= 10;
                eg[kPawnKind][s] = (r - 1) * 8;
            }
            mg[kKnightKind][s] = 25 - 10 * centre;
            eg[kKnightKind][s] = 15 - 8 * centre;
            mg[kBishopKind][s] = 12 - 4 * centre + (f == r || f + r == 7 ? 6 : 0);
            eg[kBishopKind][s] = 8 - 4 * centre;
            mg[kRookKind][s] = (r == 6 ? 20 : 0) + kRookFile[f];
            eg[kRookKind][s] = r == 6 ? 15 : 0;
            mg[kQueenKind][s] = 4 - 2 * centre;
            eg[kQueenKind][s] = 12 - 5 * centre;
            mg[kKingKind][s] = r == 0   ? kKingHome[f]
                               : r == 1 ? kKingHome[f] / 2 - 15
                                        : -25 * r - 10;
            eg[kKingKind][s] = 24 - 9 * centre;
        }
    }
};
constexpr PieceSquareTables kSquareTables;

// Passed pawns by rank from their own side (rank 1 = 0): worth little at home, a great deal
// two steps from queening, more in the endgame where fewer pieces can stop them.
constexpr int kPassedMg[8] = {0, 5, 8, 12, 25, 50, 80, 0};
constexpr int kPassedEg[8] = {0, 10, 15, 25, 45, 80, 130, 0};

// The squares in front of a pawn on its own file and the two beside it: a pawn is passed when
// no enemy pawn stands there.
inline Bitboard FrontSpan(int side, int square) {
    const Bitboard file = kTables.ray[side == kWhiteSide ? kNorth : kSouth][square];
    return file | East(file) | West(file);
}

inline Bitboard PawnAttacks(int side, Bitboard pawns) {
    const Bitboard ahead = side == kWhiteSide ? North(pawns) : South(pawns);
    return East(ahead) | West(ahead);
}

// Scores the pawns alone (white's view) and notes the passed ones.
void EvaluatePawns(const Board& board, PawnCache::Entry& entry) {
    Score score;
    for (int side = 0; side < 2; ++side) {
        const Bitboard own = board.Pieces(side, kPawnKind);
        const Bitboard enemy = board.Pieces(side ^ 1, kPawnKind);
        const Bitboard defended = PawnAttacks(side, own);
        entry.passed[side] = 0;
        for (int file = 0; file < 8; ++file) {
            // Doubled pawns: the rear one cannot be defended by a pawn and blocks the front one.
            const int count = PopCount(own & FileBits(file));
            if (count > 1) score.Add(side, -10 * (count - 1), -20 * (count - 1));
        }
        for (Bitboard pawns = own; pawns;) {
            const int square = PopLowest(pawns);
            const int file = square & 7;
            const int rank = side == kWhiteSide ? square >> 3 : 7 - (square >> 3);
            const Bitboard neighbours =
                (file > 0 ? FileBits(file - 1) : 0) | (file < 7 ? FileBits(file + 1) : 0);
            // Isolated: no pawn on either side file can ever protect it, and the square in
            // front of it is a hole for enemy pieces.
            if ((own & neighbours) == 0) score.Add(side, -12, -16);
            // Defended by a pawn, or standing beside one: a chain that is hard to attack.
            const Bitboard beside = (East(SquareBit(square)) | West(SquareBit(square))) & own;
            if ((defended & SquareBit(square)) || beside)
                score.Add(side, 4 + 2 * rank, 3 + 2 * rank);
            // Passed: nothing but pieces can stop it from queening.
            if ((FrontSpan(side, square) & enemy) == 0 &&
                (kTables.ray[side == kWhiteSide ? kNorth : kSouth][square] & own) == 0) {
                entry.passed[side] |= SquareBit(square);
                score.Add(side, kPassedMg[rank], kPassedEg[rank]);
            }
        }
    }
    entry.middlegame = static_cast<std::int16_t>(score.mg);
    entry.endgame = static_cast<std::int16_t>(score.eg);
}

// Mobility weights per square reached beyond a usual number: a piece with few squares is
// easily trapped and does little; rooks and queens count more in the endgame.
constexpr int kMobilityBase[6] = {0, 4, 6, 6, 12, 0};
constexpr int kMobilityMg[6] = {0, 4, 5, 2, 1, 0};
constexpr int kMobilityEg[6] = {0, 4, 5, 4, 2, 0};
// Weight of one attacked square near the enemy king, by attacker.
constexpr int kKingAttackWeight[6] = {0, 2, 2, 3, 5, 0};

// Mobility and attacks on the enemy king for one side's pieces; adds the king-attack units
// found to units and the number of attackers to attackers.
void EvaluatePieces(const Board& board, int side, Score& score, int& units, int& attackers) {
    const int them = side ^ 1;
    const Bitboard occupied = board.Occupied();
    // Squares worth counting: not held by our own pawns or king, and not covered by an enemy
    // pawn (a piece that goes there is simply lost for a pawn).
    const Bitboard area = ~(board.Pieces(side, kPawnKind) | board.Pieces(side, kKingKind) |
                            PawnAttacks(them, board.Pieces(them, kPawnKind)));
    const int enemyKing = board.KingSquare(them);
    const Bitboard zone = kTables.king[enemyKing] | SquareBit(enemyKing);
    const Bitboard enemyPawns = board.Pieces(them, kPawnKind);
    const Bitboard ownPawns = board.Pieces(side, kPawnKind);

    for (int kind = kKnightKind; kind <= kQueenKind; ++kind) {
        for (Bitboard pieces = board.Pieces(side, kind); pieces;) {
            const int square = PopLowest(pieces);
            Bitboard attacks = kind == kKnightKind   ? kTables.knight[square]
                               : kind == kBishopKind ? BishopAttacks(square, occupied)
                               : kind == kRookKind   ? RookAttacks(square, occupied)
                                                     : QueenAttacks(square, occupied);
            const int reach = PopCount(attacks & area) - kMobilityBase[kind];
            score.Add(side, reach * kMobilityMg[kind], reach * kMobilityEg[kind]);
            if (attacks & zone) {
                ++attackers;
                units += kKingAttackWeight[kind] * PopCount(attacks & zone);
            }
            if (kind == kRookKind) {
                // A rook on a file without pawns reaches into the enemy camp; with only enemy
                // pawns on it, it presses them.
                const Bitboard file = FileBits(square & 7);
                if ((file & (ownPawns | enemyPawns)) == 0) {
                    score.Add(side, 25, 10);
                } else if ((file & ownPawns) == 0) {
                    score.Add(side, 12, 6);
                }
            }
        }
    }
    // Two bishops cover both colours of square; worth most once the board opens.
    if (MoreThanOne(board.Pieces(side, kBishopKind))) score.Add(side, 30, 50);
}

// Pawn shelter of a king on its own first two ranks: pawns one or two steps ahead on its file
// and the files beside it stop checks; a file without any pawn is an open road to it.
int KingShelter(const Board& board, int side) {
    const int king = board.KingSquare(side);
    const int rank = side == kWhiteSide ? king >> 3 : 7 - (king >> 3);
    if (rank > 1) return -20;  // a king that left its first ranks in the middlegame is exposed
    const Bitboard own = board.Pieces(side, kPawnKind);
    const Bitboard enemy = board.Pieces(side ^ 1, kPawnKind);
    int shelter = 0;
    const int kingFile = std::clamp(king & 7, 1, 6);
    for (int file = kingFile - 1; file <= kingFile + 1; ++file) {
        const Bitboard ownOnFile = own & FileBits(file);
        const int step = side == kWhiteSide ? 8 : -8;
        const int oneAhead = (king & ~7) + file + step;
        if (ownOnFile & SquareBit(oneAhead)) {
            shelter += 12;
        } else if (oneAhead + step >= 0 && oneAhead + step < 64 &&
                   (ownOnFile & SquareBit(oneAhead + step))) {
            shelter += 6;
        } else {
            shelter -= 15;
            if ((enemy & FileBits(file)) == 0) shelter -= 15;
        }
    }
    return shelter;
}

int NonPawnMaterial(const Board& board, int side) {
    int total = 0;
    for (int kind = kKnightKind; kind <= kQueenKind; ++kind)
        total += PopCount(board.Pieces(side, kind)) * kPieceValue[kind];
    return total;
}

}  // namespace

int Evaluate(const Board& board, PawnCache& pawns) {
    Score score;
    int phase = 0;
    for (int side = 0; side < 2; ++side) {
        for (int kind = kPawnKind; kind <= kKingKind; ++kind) {
            for (Bitboard pieces = board.Pieces(side, kind); pieces;) {
                const int square = PopLowest(pieces);
                const int seen = side == kWhiteSide ? square : square ^ 56;
                score.Add(side, kMaterialMg[kind] + kSquareTables.mg[kind][seen],
                          kMaterialEg[kind] + kSquareTables.eg[kind][seen]);
                phase += kPhaseWeight[kind];
            }
        }
    }
    phase = std::min(phase, kMaxPhase);

    PawnCache::Entry& entry = pawns.Slot(board.PawnKey());
    if (entry.key != board.PawnKey()) {
        EvaluatePawns(board, entry);
        entry.key = board.PawnKey();
    }
    score.mg += entry.middlegame;
    score.eg += entry.endgame;

    int units[2] = {0, 0}, attackers[2] = {0, 0};
    for (int side = 0; side < 2; ++side) {
        EvaluatePieces(board, side, score, units[side], attackers[side]);
        // Passed pawns in the endgame: free to advance is worth more than blocked, and the
        // kings' distances to the square in front decide races.
        const int ownKing = board.KingSquare(side), enemyKing = board.KingSquare(side ^ 1);
        for (Bitboard passed = entry.passed[side]; passed;) {
            const int square = PopLowest(passed);
            const int rank = side == kWhiteSide ? square >> 3 : 7 - (square >> 3);
            const int stop = square + (side == kWhiteSide ? 8 : -8);
            const int weight = std::max(rank - 2, 0);
            if (board.PieceOn(stop) != kEmpty) score.Add(side, -weight * 3, -weight * 6);
            score.Add(side, 0,
                      weight * (5 * Distance(enemyKing, stop) - 2 * Distance(ownKing, stop)));
        }
    }
    // King safety counts in the middlegame: attacks by several pieces at once on the squares
    // around the king grow quadratically, a lone attacker is harmless, and without a queen an
    // attack seldom breaks through.
    for (int side = 0; side < 2; ++side) {
        const int attacker = side ^ 1;
        int danger = 0;
        if (attackers[attacker] >= 2) {
            danger = units[attacker] * units[attacker] / 4;
            if (attackers[attacker] == 2) danger /= 2;
            if (board.Pieces(attacker, kQueenKind) == 0) danger /= 2;
            danger = std::min(danger, 500);
        }
        score.Add(side, KingShelter(board, side) - danger, -danger / 8);
    }

    // Endings without pawns: a small material edge (a minor piece or less) rarely wins, and
    // with a large one the defending king must be driven to the edge and met by the other king.
    const int material[2] = {NonPawnMaterial(board, kWhiteSide),
                             NonPawnMaterial(board, kBlackSide)};
    const bool noPawns = board.PiecesOfKind(kPawnKind) == 0;
    int scale = 16;
    if (noPawns) {
        const int strong = material[0] >= material[1] ? kWhiteSide : kBlackSide;
        const int edge = material[strong] - material[strong ^ 1];
        if (edge < 400) {
            scale = 2;
        } else {
            const int weakKing = board.KingSquare(strong ^ 1);
            const int kings = Distance(board.KingSquare(strong), weakKing);
            score.Add(strong, 0, 10 * CentreDistance(weakKing) + 6 * (7 - kings));
        }
    }

    int blended = (score.mg * phase + score.eg * (kMaxPhase - phase)) / kMaxPhase;
    blended = blended * scale / 16;
    // The side to move gets a small bonus for having the move.
    return (board.SideToMove() == kWhiteSide ? blended : -blended) + 10;
}

}  // namespace velmora::engine
