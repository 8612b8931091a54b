// Move generation: legal moves from pins and check masks, set-wise for pawns.
#include "engine/search/MoveGen.h"

#include <cstring>

namespace velmora::engine {

namespace {

// What every generator of one position needs: who moves, where the king stands, which of its
// own pieces are pinned, and which squares answer a check.
struct Context {
    int us, them, king;
    Bitboard own, enemy, occupied, pinned, checkers;
    Bitboard evasion;  // the squares a non-king move must reach: all when not in check
};

Context MakeContext(const Board& board) {
    Context c;
    c.us = board.SideToMove();
    c.them = c.us ^ 1;
    c.king = board.KingSquare(c.us);
    c.own = board.Pieces(c.us);
    c.enemy = board.Pieces(c.them);
    c.occupied = c.own | c.enemy;
    c.checkers = board.Checkers();
    c.pinned = 0;
    const Bitboard straight = board.Pieces(c.them, kRookKind) | board.Pieces(c.them, kQueenKind);
    const Bitboard diagonal = board.Pieces(c.them, kBishopKind) | board.Pieces(c.them, kQueenKind);
    Bitboard snipers = (RookAttacks(c.king, 0) & straight) | (BishopAttacks(c.king, 0) & diagonal);
    while (snipers) {
        const int sniper = PopLowest(snipers);
        const Bitboard between = kTables.between[c.king][sniper] & c.occupied;
        if (between != 0 && !MoreThanOne(between) && (between & c.own)) c.pinned |= between;
    }
    c.evasion = ~Bitboard{0};
    if (c.checkers) c.evasion = kTables.between[c.king][LowestSquare(c.checkers)] | c.checkers;
    return c;
}

// A pinned piece may only move along the line through its king.
inline bool PinAllows(const Context& c, int from, int to) {
    return (c.pinned & SquareBit(from)) == 0 || (kTables.line[c.king][from] & SquareBit(to)) != 0;
}

void AddPromotions(MoveList& list, int from, int to, bool capture) {
    for (int kind = kQueenKind; kind >= kKnightKind; --kind)
        list.Add(Move::Promotion(from, to, kind, capture));
}

// Whether taking en passant on to from from leaves the king safe: the two pawns leave their
// rank at once, which may open a line no pin test sees.
bool EnPassantIsSafe(const Board& board, const Context& c, int from, int to) {
    const int taken = to ^ 8;
    const Bitboard occupied = (c.occupied ^ SquareBit(from) ^ SquareBit(taken)) | SquareBit(to);
    const Bitboard straight = board.Pieces(c.them, kRookKind) | board.Pieces(c.them, kQueenKind);
    const Bitboard diagonal = board.Pieces(c.them, kBishopKind) | board.Pieces(c.them, kQueenKind);
    if ((RookAttacks(c.king, occupied) & straight) || (BishopAttacks(c.king, occupied) & diagonal))
        return false;
    // A knight or a pawn other than the one taken that gives check still does.
    return (c.checkers & ~SquareBit(taken) & ~straight & ~diagonal) == 0;
}

void GeneratePawnMoves(const Board& board, const Context& c, MoveList& list, MoveSet set) {
    const Bitboard pawns = board.Pieces(c.us, kPawnKind);
    const Bitboard empty = ~c.occupied;
    const bool white = c.us == kWhiteSide;
    const int forward = white ? 8 : -8;
    const Bitboard lastRank = white ? kRank8 : kRank1;
    const Bitboard doubleRank = white ? kRank4 : kRank5;
    auto ahead = [white](Bitboard b) { return white ? North(b) : South(b); };

    const Bitboard single = ahead(pawns) & empty;
    Bitboard pushes = single & c.evasion;
    if (set == MoveSet::Noisy) pushes &= lastRank;
    while (pushes) {
        const int to = PopLowest(pushes), from = to - forward;
        if (!PinAllows(c, from, to)) continue;
        if (SquareBit(to) & lastRank) {
            AddPromotions(list, from, to, false);
        } else {
            list.Add(Move(from, to, kQuiet));
        }
    }
    if (set == MoveSet::All) {
        Bitboard doubles = ahead(single) & empty & doubleRank & c.evasion;
        while (doubles) {
            const int to = PopLowest(doubles), from = to - 2 * forward;
            if (PinAllows(c, from, to)) list.Add(Move(from, to, kDoublePush));
        }
    }
    // Captures towards each side: the shift drops pawns that would wrap around the board.
    for (int toward = -1; toward <= 1; toward += 2) {
        Bitboard targets =
            (toward < 0 ? West(ahead(pawns)) : East(ahead(pawns))) & c.enemy & c.evasion;
        while (targets) {
            const int to = PopLowest(targets), from = to - forward - toward;
            if (!PinAllows(c, from, to)) continue;
            if (SquareBit(to) & lastRank) {
                AddPromotions(list, from, to, true);
            } else {
                list.Add(Move(from, to, kCapture));
            }
        }
    }
    const int ep = board.EnPassant();
    if (ep >= 0) {
        Bitboard takers = kTables.pawn[c.them][ep] & pawns;
        while (takers) {
            const int from = PopLowest(takers);
            if (EnPassantIsSafe(board, c, from, ep)) list.Add(Move(from, ep, kEnPassant));
        }
    }
}

// Adds the moves of a non-pawn piece from from onto the targets.
inline void AddPieceMoves(const Context& c, MoveList& list, int from, Bitboard targets) {
    if (c.pinned & SquareBit(from)) targets &= kTables.line[c.king][from];
    while (targets) {
        const int to = PopLowest(targets);
        list.Add(Move(from, to, (c.enemy & SquareBit(to)) ? kCapture : kQuiet));
    }
}

void GenerateCastling(const Board& board, const Context& c, MoveList& list) {
    const int rights = board.Castling() & (c.us == kWhiteSide ? 3 : 12);
    if (rights == 0 || c.checkers) return;
    const int home = c.us == kWhiteSide ? 4 : 60;
    auto safe = [&](int square) { return !board.IsAttacked(square, c.them); };
    // King side: the squares between king and rook empty, and the two the king crosses safe.
    if ((rights & (kWhiteKingSide | kBlackKingSide)) &&
        (c.occupied & (SquareBit(home + 1) | SquareBit(home + 2))) == 0 && safe(home + 1) &&
        safe(home + 2)) {
        list.Add(Move(home, home + 2, kCastleKing));
    }
    // Queen side: three squares empty, the king crosses two.
    if ((rights & (kWhiteQueenSide | kBlackQueenSide)) &&
        (c.occupied & (SquareBit(home - 1) | SquareBit(home - 2) | SquareBit(home - 3))) == 0 &&
        safe(home - 1) && safe(home - 2)) {
        list.Add(Move(home, home - 2, kCastleQueen));
    }
}

}  // namespace

void GenerateMoves(const Board& board, MoveList& list, MoveSet set) {
    const Context c = MakeContext(board);
    const Bitboard reach = set == MoveSet::All ? ~c.own : c.enemy;

    // King moves: the king must not step onto an attacked square; it is lifted off the board
    // for the test so that it does not hide squares behind itself from a slider.
    Bitboard kingTargets = kTables.king[c.king] & reach;
    const Bitboard withoutKing = c.occupied ^ SquareBit(c.king);
    while (kingTargets) {
        const int to = PopLowest(kingTargets);
        if ((board.AttackersTo(to, withoutKing) & c.enemy) == 0)
            list.Add(Move(c.king, to, (c.enemy & SquareBit(to)) ? kCapture : kQuiet));
    }
    // In double check only the king can move.
    if (MoreThanOne(c.checkers)) return;

    GeneratePawnMoves(board, c, list, set);
    const Bitboard targets = reach & c.evasion;
    Bitboard knights = board.Pieces(c.us, kKnightKind) & ~c.pinned;  // a pinned knight never moves
    while (knights) {
        const int from = PopLowest(knights);
        AddPieceMoves(c, list, from, kTables.knight[from] & targets);
    }
    Bitboard diagonal = board.Pieces(c.us, kBishopKind) | board.Pieces(c.us, kQueenKind);
    while (diagonal) {
        const int from = PopLowest(diagonal);
        AddPieceMoves(c, list, from, BishopAttacks(from, c.occupied) & targets);
    }
    Bitboard straight = board.Pieces(c.us, kRookKind) | board.Pieces(c.us, kQueenKind);
    while (straight) {
        const int from = PopLowest(straight);
        AddPieceMoves(c, list, from, RookAttacks(from, c.occupied) & targets);
    }
    if (set == MoveSet::All) GenerateCastling(board, c, list);
}

Move ParseMove(const Board& board, const char* text) {
    MoveList list;
    GenerateMoves(board, list);
    for (Move m : list) {
        const std::string written = MoveText(m);
        if (std::strncmp(written.c_str(), text, written.size()) == 0 &&
            (text[written.size()] == '\0' || text[written.size()] == ' ')) {
            return m;
        }
    }
    return Move();
}

std::uint64_t Perft(Board& board, int depth) {
    MoveList list;
    GenerateMoves(board, list);
    // The last ply is counted without being played.
    if (depth <= 1) return depth <= 0 ? 1 : static_cast<std::uint64_t>(list.size);
    std::uint64_t nodes = 0;
    for (Move move : list) {
        board.MakeMove(move);
        nodes += Perft(board, depth - 1);
        board.UnmakeMove();
    }
    return nodes;
}

}  // namespace velmora::engine
