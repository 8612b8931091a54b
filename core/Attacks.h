// Board geometry and attacks: the square-level tests the move rules and the move list share.
#pragma once

#include <cstdlib>
#include <cstring>

#include "core/ChessTypes.h"

namespace velmora::board {

constexpr Square kA1 = 0, kC1 = 2, kD1 = 3, kE1 = 4, kF1 = 5, kG1 = 6, kH1 = 7;
constexpr Square kA8 = 56, kC8 = 58, kD8 = 59, kE8 = 60, kF8 = 61, kG8 = 62, kH8 = 63;
constexpr PieceCode kWhitePawn = kPawn, kBlackPawn = kBlack + kPawn;
constexpr PieceCode kWhiteKing = kKing, kBlackKing = kBlack + kKing;

// Walks from from towards to by step (8-bit arithmetic) and answers 1 when every square
// strictly between is empty. A walk that leaves the board answers 0.
inline int RayClearOn(const PieceCode* board, Square from, Square to, int step) {
    Square s = static_cast<Square>(from + step);
    for (;;) {
        if (s == to) return 1;
        if (s > 63 || board[s] != 0) return 0;
        s = static_cast<Square>(s + step);
    }
}

inline int RookMovesOn(const PieceCode* board, Square from, Square to) {
    if (RankOf(from) == RankOf(to)) {
        return RayClearOn(board, from, to, FileOf(to) < FileOf(from) ? -1 : 1);
    }
    if (FileOf(from) == FileOf(to)) {
        return RayClearOn(board, from, to, RankOf(to) > RankOf(from) ? 8 : -8);
    }
    return 0;
}

inline int BishopMovesOn(const PieceCode* board, Square from, Square to) {
    int df = std::abs(FileOf(to) - FileOf(from));
    int dr = RankOf(to) - RankOf(from);
    if (df != std::abs(dr)) return 0;
    int step;
    if (FileOf(from) >= FileOf(to)) {
        step = dr > 0 ? 7 : -9;
    } else {
        step = RankOf(from) >= RankOf(to) ? -7 : 9;
    }
    return RayClearOn(board, from, to, step);
}

// Geometry of the piece on from, as PieceMoves describes it, on a bare board.
inline int PieceMovesOn(const PieceCode* board, Square from, Square to) {
    PieceCode code = board[from];
    int type = TypeOf(code);
    int df = std::abs(FileOf(to) - FileOf(from));
    int dr = RankOf(to) - RankOf(from);
    switch (type) {
        case kPawn: {
            bool white = ColourOf(code) == kWhite;
            if (df == 1) return board[to] != 0 && dr == (white ? 1 : -1);
            if (df != 0 || board[to] != 0) return 0;
            // The square passed over by a double step is not looked at: kept that way.
            if (white) return dr == 1 || (RankOf(from) == 1 && dr == 2);
            return dr == -1 || (RankOf(from) == 6 && dr == -2);
        }
        case kRook:
            return RookMovesOn(board, from, to);
        case kKnight:
            return (df == 2 && std::abs(dr) == 1) || (df == 1 && std::abs(dr) == 2);
        case kBishop:
            return BishopMovesOn(board, from, to);
        case kQueen:
            // A queen moves as a rook of its colour or, failing that, as a bishop. The square
            // itself is never rewritten, so it always holds the queen afterwards.
            return RookMovesOn(board, from, to) || BishopMovesOn(board, from, to);
        case kKing:
            return df < 2 && std::abs(dr) < 2;
        default:
            return 1;  // an empty square "moves" anywhere; callers pick their from squares
    }
}

// Squares reachable from each square, worked out once: the knight's jumps, the king's
// neighbours and, for each of the eight directions (four straight, then four diagonal), the
// ray of squares in order until the edge. Lists end at kNoSquare.
struct AttackTables {
    Square knight[64][9];
    Square king[64][9];
    Square ray[64][8][8];

    constexpr AttackTables() : knight(), king(), ray() {
        constexpr int kJumps[8][2] = {{1, 2},   {2, 1},   {2, -1}, {1, -2},
                                      {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
        constexpr int kSteps[8][2] = {{1, 0}, {-1, 0}, {0, 1},  {0, -1},
                                      {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
        auto on = [](int f, int r) { return f >= 0 && f < 8 && r >= 0 && r < 8; };
        for (int s = 0; s < 64; ++s) {
            int f = FileOf(s), r = RankOf(s), n = 0, k = 0;
            for (int i = 0; i < 8; ++i) {
                if (on(f + kJumps[i][0], r + kJumps[i][1])) {
                    knight[s][n++] = MakeSquare(f + kJumps[i][0], r + kJumps[i][1]);
                }
                if (on(f + kSteps[i][0], r + kSteps[i][1])) {
                    king[s][k++] = MakeSquare(f + kSteps[i][0], r + kSteps[i][1]);
                }
                int length = 0;
                for (int g = f + kSteps[i][0], h = r + kSteps[i][1]; on(g, h);
                     g += kSteps[i][0], h += kSteps[i][1]) {
                    ray[s][i][length++] = MakeSquare(g, h);
                }
                for (int j = length; j < 8; ++j)
                    ray[s][i][j] = kNoSquare;
            }
            for (; n < 9; ++n)
                knight[s][n] = kNoSquare;
            for (; k < 9; ++k)
                king[s][k] = kNoSquare;
        }
    }
};
inline constexpr AttackTables kAttacks;

// The square of colour's king, or -1 when it has none.
inline int KingSquare(const PieceCode* board, Colour colour) {
    const void* found = std::memchr(board, colour + kKing, 64);
    return found ? static_cast<int>(static_cast<const PieceCode*>(found) - board) : -1;
}

// The first piece met from square in direction d (an index of the ray tables), or 0.
inline PieceCode FirstOnRay(const PieceCode* board, int square, int d) {
    for (const Square* r = kAttacks.ray[square][d]; *r != kNoSquare; ++r) {
        if (board[*r] != 0) return board[*r];
    }
    return 0;
}

// The index of the ray from square a through square b, or -1 when they share no line.
inline int RayIndex(int a, int b) {
    const int df = FileOf(b) - FileOf(a), dr = RankOf(b) - RankOf(a);
    if (df == 0 && dr == 0) return -1;
    if (df == 0 || dr == 0) return df > 0 ? 0 : df < 0 ? 1 : dr > 0 ? 2 : 3;
    if (std::abs(df) != std::abs(dr)) return -1;
    return df > 0 ? (dr > 0 ? 4 : 5) : (dr > 0 ? 6 : 7);
}

// Whether code, met first along ray d, is a rook, bishop or queen of colour's enemy that
// reaches back along that ray.
inline bool SlidesAlong(PieceCode code, int d, Colour colour) {
    const PieceCode base = colour == kWhite ? kBlack : kWhite;
    return code == base + (d < 4 ? kRook : kBishop) || code == base + kQueen;
}

// Answers whether a piece of the other colour could move to square by the geometry of
// PieceMovesOn, looking outwards from the square instead of at every piece: the rays for the
// sliders, the jumps, the neighbours, and the pawn moves (a pawn "attacks" an occupied square
// diagonally and an empty one straight ahead, double step included). An enemy king standing on
// the square itself counts, as a king "moves" to its own square. Square -1 means the king of
// colour.
inline int IsAttackedOn(const PieceCode* board, Colour colour, int square) {
    if (square == -1) square = KingSquare(board, colour);
    if (square < 0 || square > 63) return 0;
    const PieceCode base = colour == kWhite ? kBlack : kWhite;
    const PieceCode pawn = base + kPawn, knight = base + kKnight, king = base + kKing;

    if (board[square] == king) return 1;
    for (const Square* s = kAttacks.knight[square]; *s != kNoSquare; ++s) {
        if (board[*s] == knight) return 1;
    }
    for (const Square* s = kAttacks.king[square]; *s != kNoSquare; ++s) {
        if (board[*s] == king) return 1;
    }
    for (int d = 0; d < 8; ++d) {
        if (SlidesAlong(FirstOnRay(board, square, d), d, colour)) return 1;
    }
    // An enemy white pawn stands below the square, a black one above.
    const int file = FileOf(square), rank = RankOf(square);
    const int behind = base == kWhite ? -1 : 1;
    const int pawnRank = rank + behind;
    if (pawnRank < 0 || pawnRank > 7) return 0;
    const PieceCode* row = board + 8 * pawnRank;
    if (board[square] != 0) {
        return (file > 0 && row[file - 1] == pawn) || (file < 7 && row[file + 1] == pawn);
    }
    if (row[file] == pawn) return 1;
    const int doubleFrom = base == kWhite ? 1 : 6;
    return rank + 2 * behind == doubleFrom && board[file + 8 * doubleFrom] == pawn;
}

// After from -> to (the mover's piece, not its king), tells whether an enemy rook, bishop or
// queen now reaches the mover's king, on square king (-1: none), along the line from the king
// through from.
inline bool OpensLineToKing(const PieceCode* board, Square from, Square to, Colour mover,
                            int king) {
    const int d = king < 0 ? -1 : RayIndex(king, from);
    if (d < 0) return false;
    for (const Square* r = kAttacks.ray[king][d]; *r != kNoSquare; ++r) {
        constexpr PieceCode kMovedPiece = 0xFF;  // stands on to: blocks, attacks nothing here
        PieceCode code = *r == from ? PieceCode{0} : *r == to ? kMovedPiece : board[*r];
        if (code != 0) return SlidesAlong(code, d, mover);
    }
    return false;
}

}  // namespace velmora::board
