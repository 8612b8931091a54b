// Board: FEN, make and unmake with incremental keys, attacks, repetition.
#include "engine/search/Board.h"

#include <cstring>

#include "engine/search/Zobrist.h"

namespace velmora::engine {

namespace {

constexpr char kPieceLetters[] = "PNBRQKpnbrqk";

// Castling rights kept when a piece leaves or arrives on a square: moving the king or a rook
// from home, or capturing a rook at home, gives up the matching rights.
constexpr struct CastlingMasks {
    int keep[64];
    constexpr CastlingMasks() : keep() {
        for (int& k : keep)
            k = 15;
        keep[4] = 15 & ~(kWhiteKingSide | kWhiteQueenSide);
        keep[7] = 15 & ~kWhiteKingSide;
        keep[0] = 15 & ~kWhiteQueenSide;
        keep[60] = 15 & ~(kBlackKingSide | kBlackQueenSide);
        keep[63] = 15 & ~kBlackKingSide;
        keep[56] = 15 & ~kBlackQueenSide;
    }
} kCastlingMasks;

}  // namespace

std::string SquareText(int square) {
    return {static_cast<char>('a' + (square & 7)), static_cast<char>('1' + (square >> 3))};
}

std::string MoveText(Move move) {
    if (move.IsNone()) return "0000";
    std::string text = SquareText(move.From()) + SquareText(move.To());
    if (move.IsPromotion()) text += "nbrq"[move.PromotionKind() - kKnightKind];
    return text;
}

Board::Board() {
    states_.reserve(512);
    SetFromFen(kStartFen);
}

void Board::Clear() {
    std::memset(pieces_, 0, sizeof pieces_);
    sides_[0] = sides_[1] = 0;
    std::memset(squares_, kEmpty, sizeof squares_);
    states_.clear();
    states_.emplace_back();
}

void Board::Put(int piece, int square) {
    const Bitboard bit = SquareBit(square);
    pieces_[SideOf(piece)][KindOf(piece)] |= bit;
    sides_[SideOf(piece)] |= bit;
    squares_[square] = static_cast<std::uint8_t>(piece);
}

void Board::Remove(int square) {
    const int piece = squares_[square];
    const Bitboard bit = SquareBit(square);
    pieces_[SideOf(piece)][KindOf(piece)] &= ~bit;
    sides_[SideOf(piece)] &= ~bit;
    squares_[square] = kEmpty;
}

void Board::MovePiece(int from, int to) {
    const int piece = squares_[from];
    const Bitboard both = SquareBit(from) | SquareBit(to);
    pieces_[SideOf(piece)][KindOf(piece)] ^= both;
    sides_[SideOf(piece)] ^= both;
    squares_[to] = static_cast<std::uint8_t>(piece);
    squares_[from] = kEmpty;
}

bool Board::SetFromFen(std::string_view fen) {
    Clear();
    State& st = states_.back();
    std::size_t i = 0;
    int rank = 7, file = 0;
    for (; i < fen.size() && fen[i] != ' '; ++i) {
        const char c = fen[i];
        if (c == '/') {
            if (file != 8 || rank == 0) return false;
            --rank;
            file = 0;
        } else if (c >= '1' && c <= '8') {
            file += c - '0';
            if (file > 8) return false;
        } else {
            const char* letter = std::strchr(kPieceLetters, c);
            if (letter == nullptr || c == '\0' || file > 7) return false;
            Put(static_cast<int>(letter - kPieceLetters), rank * 8 + file);
            ++file;
        }
    }
    if (rank != 0 || file != 8) return false;
    if (PopCount(pieces_[0][kKingKind]) != 1 || PopCount(pieces_[1][kKingKind]) != 1) return false;

    auto field = [&](std::string_view& out) {
        while (i < fen.size() && fen[i] == ' ')
            ++i;
        const std::size_t start = i;
        while (i < fen.size() && fen[i] != ' ')
            ++i;
        out = fen.substr(start, i - start);
        return !out.empty();
    };
    std::string_view side, castling, enPassant, halfmove, fullmove;
    if (!field(side) || (side != "w" && side != "b")) return false;
    side_ = startSide_ = side == "w" ? kWhiteSide : kBlackSide;
    if (field(castling)) {
        for (char c : castling) {
            // A right is kept only when king and rook stand at home, so that castling never
            // moves a piece that is not there.
            if (c == 'K' && squares_[4] == MakePiece(0, kKingKind) &&
                squares_[7] == MakePiece(0, kRookKind))
                st.castling |= kWhiteKingSide;
            if (c == 'Q' && squares_[4] == MakePiece(0, kKingKind) &&
                squares_[0] == MakePiece(0, kRookKind))
                st.castling |= kWhiteQueenSide;
            if (c == 'k' && squares_[60] == MakePiece(1, kKingKind) &&
                squares_[63] == MakePiece(1, kRookKind))
                st.castling |= kBlackKingSide;
            if (c == 'q' && squares_[60] == MakePiece(1, kKingKind) &&
                squares_[56] == MakePiece(1, kRookKind))
                st.castling |= kBlackQueenSide;
        }
    }
    if (field(enPassant) && enPassant.size() == 2 && enPassant[0] >= 'a' && enPassant[0] <= 'h' &&
        enPassant[1] == (side_ == kWhiteSide ? '6' : '3')) {
        const int square = (enPassant[0] - 'a') + 8 * (enPassant[1] - '1');
        const int pushed = square + (side_ == kWhiteSide ? -8 : 8);
        if (squares_[pushed] == MakePiece(side_ ^ 1, kPawnKind) && squares_[square] == kEmpty &&
            (kTables.pawn[side_ ^ 1][square] & pieces_[side_][kPawnKind]) != 0) {
            st.enPassant = static_cast<std::int8_t>(square);
        }
    }
    int clock = 0, number = 1;
    if (field(halfmove)) {
        clock = 0;
        for (char c : halfmove)
            if (c >= '0' && c <= '9' && clock < 10000) clock = clock * 10 + (c - '0');
    }
    if (field(fullmove)) {
        number = 0;
        for (char c : fullmove)
            if (c >= '0' && c <= '9' && number < 100000) number = number * 10 + (c - '0');
        if (number < 1) number = 1;
    }
    st.halfmoveClock = static_cast<std::int16_t>(clock);
    fullmoveStart_ = number;

    // The side not to move must not be in check: such a position cannot arise.
    const int them = side_ ^ 1;
    if ((AttackersTo(KingSquare(them), Occupied()) & sides_[side_]) != 0) return false;

    for (int square = 0; square < 64; ++square) {
        const int piece = squares_[square];
        if (piece == kEmpty) continue;
        st.key ^= kZobrist.piece[piece][square];
        if (KindOf(piece) == kPawnKind) st.pawnKey ^= kZobrist.piece[piece][square];
    }
    st.key ^= kZobrist.castling[st.castling];
    if (st.enPassant >= 0) st.key ^= kZobrist.enPassantFile[st.enPassant & 7];
    if (side_ == kBlackSide) st.key ^= kZobrist.sideToMove;
    st.checkers = AttackersTo(KingSquare(side_), Occupied()) & sides_[them];
    return true;
}

std::string Board::Fen() const {
    std::string text;
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        for (int file = 0; file < 8; ++file) {
            const int piece = squares_[rank * 8 + file];
            if (piece == kEmpty) {
                ++empty;
                continue;
            }
            if (empty > 0) text += static_cast<char>('0' + empty);
            empty = 0;
            text += kPieceLetters[piece];
        }
        if (empty > 0) text += static_cast<char>('0' + empty);
        if (rank > 0) text += '/';
    }
    text += side_ == kWhiteSide ? " w " : " b ";
    const int rights = Castling();
    if (rights == 0) text += '-';
    if (rights & kWhiteKingSide) text += 'K';
    if (rights & kWhiteQueenSide) text += 'Q';
    if (rights & kBlackKingSide) text += 'k';
    if (rights & kBlackQueenSide) text += 'q';
    text += ' ';
    text += EnPassant() >= 0 ? SquareText(EnPassant()) : "-";
    text += ' ' + std::to_string(HalfmoveClock()) + ' ' + std::to_string(FullmoveNumber());
    return text;
}

Bitboard Board::AttackersTo(int square, Bitboard occupied) const {
    const Bitboard rooks = PiecesOfKind(kRookKind) | PiecesOfKind(kQueenKind);
    const Bitboard bishops = PiecesOfKind(kBishopKind) | PiecesOfKind(kQueenKind);
    return (kTables.pawn[kWhiteSide][square] & pieces_[kBlackSide][kPawnKind]) |
           (kTables.pawn[kBlackSide][square] & pieces_[kWhiteSide][kPawnKind]) |
           (kTables.knight[square] & PiecesOfKind(kKnightKind)) |
           (kTables.king[square] & PiecesOfKind(kKingKind)) |
           (RookAttacks(square, occupied) & rooks) | (BishopAttacks(square, occupied) & bishops);
}

void Board::NoteDoubleStep(State& next, int to) {
    const int passed = side_ == kWhiteSide ? to - 8 : to + 8;
    if ((kTables.pawn[side_][passed] & pieces_[side_ ^ 1][kPawnKind]) != 0) {
        next.enPassant = static_cast<std::int8_t>(passed);
        next.key ^= kZobrist.enPassantFile[passed & 7];
    }
}

void Board::MakeMove(Move move) {
    states_.push_back(states_.back());
    State& next = states_.back();
    next.move = move;
    next.captured = kEmpty;
    ++next.halfmoveClock;
    next.key ^= kZobrist.castling[next.castling];
    if (next.enPassant >= 0) next.key ^= kZobrist.enPassantFile[next.enPassant & 7];
    next.enPassant = -1;

    const int us = side_, them = us ^ 1;
    const int from = move.From(), to = move.To(), kind = move.Kind();
    const int piece = squares_[from];
    if (move.IsCapture()) {
        // En passant takes the pawn behind the target square, on the mover's rank.
        const int taken = kind == kEnPassant ? to ^ 8 : to;
        next.captured = static_cast<std::int8_t>(squares_[taken]);
        next.key ^= kZobrist.piece[next.captured][taken];
        if (KindOf(next.captured) == kPawnKind)
            next.pawnKey ^= kZobrist.piece[next.captured][taken];
        Remove(taken);
        next.halfmoveClock = 0;
    }
    MovePiece(from, to);
    next.key ^= kZobrist.piece[piece][from] ^ kZobrist.piece[piece][to];
    if (KindOf(piece) == kPawnKind) {
        next.halfmoveClock = 0;
        next.pawnKey ^= kZobrist.piece[piece][from] ^ kZobrist.piece[piece][to];
        if (move.IsPromotion()) {
            const int promoted = MakePiece(us, move.PromotionKind());
            Remove(to);
            Put(promoted, to);
            next.key ^= kZobrist.piece[piece][to] ^ kZobrist.piece[promoted][to];
            next.pawnKey ^= kZobrist.piece[piece][to];
        } else if (kind == kDoublePush) {
            NoteDoubleStep(next, to);
        }
    } else if (move.IsCastle()) {
        const int rookFrom = kind == kCastleKing ? from + 3 : from - 4;
        const int rookTo = kind == kCastleKing ? from + 1 : from - 1;
        const int rook = squares_[rookFrom];
        MovePiece(rookFrom, rookTo);
        next.key ^= kZobrist.piece[rook][rookFrom] ^ kZobrist.piece[rook][rookTo];
    }
    next.castling = static_cast<std::int8_t>(next.castling & kCastlingMasks.keep[from] &
                                             kCastlingMasks.keep[to]);
    next.key ^= kZobrist.castling[next.castling] ^ kZobrist.sideToMove;
    side_ = them;
    next.checkers = AttackersTo(KingSquare(them), Occupied()) & sides_[us];
}

void Board::UnmakeMove() {
    const Move move = states_.back().move;
    const int captured = states_.back().captured;
    states_.pop_back();
    side_ ^= 1;
    const int us = side_;
    const int from = move.From(), to = move.To(), kind = move.Kind();
    if (move.IsPromotion()) {
        Remove(to);
        Put(MakePiece(us, kPawnKind), to);
    }
    MovePiece(to, from);
    if (move.IsCastle()) {
        const int rookFrom = kind == kCastleKing ? from + 3 : from - 4;
        const int rookTo = kind == kCastleKing ? from + 1 : from - 1;
        MovePiece(rookTo, rookFrom);
    }
    if (captured != kEmpty) Put(captured, kind == kEnPassant ? to ^ 8 : to);
}

void Board::MakeNullMove() {
    states_.push_back(states_.back());
    State& next = states_.back();
    next.move = Move();
    next.captured = kEmpty;
    ++next.halfmoveClock;
    if (next.enPassant >= 0) next.key ^= kZobrist.enPassantFile[next.enPassant & 7];
    next.enPassant = -1;
    next.key ^= kZobrist.sideToMove;
    next.checkers = 0;
    side_ ^= 1;
}

void Board::UnmakeNullMove() {
    states_.pop_back();
    side_ ^= 1;
}

bool Board::IsRepetition(int since) const {
    const int last = static_cast<int>(states_.size()) - 1;
    const std::uint64_t key = states_[last].key;
    int earlier = 0;
    // Only positions since the last capture or pawn move can repeat; a null move ends the walk
    // as well, since the line through it was not played.
    const int reach = states_[last].halfmoveClock < last ? states_[last].halfmoveClock : last;
    for (int distance = 1; distance <= reach; ++distance) {
        if (states_[last - distance + 1].move.IsNone()) break;
        if ((distance & 1) != 0 || states_[last - distance].key != key) continue;
        if (distance <= since || ++earlier == 2) return true;
    }
    return false;
}

bool Board::IsInsufficientMaterial() const {
    if (PiecesOfKind(kPawnKind) | PiecesOfKind(kRookKind) | PiecesOfKind(kQueenKind)) return false;
    return PopCount(PiecesOfKind(kKnightKind) | PiecesOfKind(kBishopKind)) <= 1;
}

}  // namespace velmora::engine
