// Board: the engine's own position (bitboards and a square table) with make and unmake.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/search/Attacks.h"
#include "engine/search/Bitboard.h"
#include "engine/search/Move.h"

namespace velmora::engine {

// Castling rights, one bit each.
enum CastlingRight : int {
    kWhiteKingSide = 1,
    kWhiteQueenSide = 2,
    kBlackKingSide = 4,
    kBlackQueenSide = 8
};

constexpr char kStartFen[] = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// A position together with the moves that led to it, so that moves can be taken back and
// repetitions found. Standard chess rules: the castling rook must stand on its home square
// (a captured rook takes the right with it) and a double step needs both squares empty.
class Board {
  public:
    Board();

    // Reads a FEN text; returns false (leaving the board undefined) when it cannot be read.
    // An en-passant field that names no square of the third or sixth rank is ignored, and the
    // two counters may be missing. The move history is cleared.
    bool SetFromFen(std::string_view fen);
    std::string Fen() const;

    int PieceOn(int square) const { return squares_[square]; }
    Bitboard Pieces(int side, int kind) const { return pieces_[side][kind]; }
    Bitboard Pieces(int side) const { return sides_[side]; }
    Bitboard PiecesOfKind(int kind) const { return pieces_[0][kind] | pieces_[1][kind]; }
    Bitboard Occupied() const { return sides_[0] | sides_[1]; }
    int SideToMove() const { return side_; }
    int KingSquare(int side) const { return LowestSquare(pieces_[side][kKingKind]); }
    int Castling() const { return state().castling; }
    // The square a pawn may take en passant on now, -1 when there is none. It is set only when
    // an enemy pawn stands ready to take, so equal positions get equal keys.
    int EnPassant() const { return state().enPassant; }
    int HalfmoveClock() const { return state().halfmoveClock; }
    int FullmoveNumber() const { return fullmoveStart_ + (gamePly() + startSide_) / 2; }
    std::uint64_t Key() const { return state().key; }
    std::uint64_t PawnKey() const { return state().pawnKey; }
    // Pieces of the side not to move that give check.
    Bitboard Checkers() const { return state().checkers; }
    bool InCheck() const { return state().checkers != 0; }
    // The move that led here, or none.
    Move LastMove() const { return state().move; }
    int LastCaptured() const { return state().captured; }
    // How many moves were made since the position was set.
    int GamePly() const { return gamePly(); }

    // Pieces of either side that attack square when the board holds occupied.
    Bitboard AttackersTo(int square, Bitboard occupied) const;
    bool IsAttacked(int square, int bySide) const {
        return (AttackersTo(square, Occupied()) & sides_[bySide]) != 0;
    }
    // Whether the side has a piece other than pawns and king (null-move pruning needs one).
    bool HasNonPawnMaterial(int side) const {
        return (sides_[side] & ~pieces_[side][kPawnKind] & ~pieces_[side][kKingKind]) != 0;
    }

    // Plays a legal move (one the move generator produced).
    void MakeMove(Move move);
    void UnmakeMove();
    // Passes the turn: for null-move pruning only, never while in check.
    void MakeNullMove();
    void UnmakeNullMove();

    // Whether the position occurred before with the same side to move, castling rights and
    // en-passant square. Since is the number of plies at the end of the history that count with
    // one earlier occurrence (the search's own line); before them two are needed, as a game is
    // drawn only at the third occurrence.
    bool IsRepetition(int since) const;
    // The fifty-move rule: a hundred plies without a capture or a pawn move.
    bool IsFiftyMoveDraw() const { return state().halfmoveClock >= 100; }
    // Neither side can mate: kings alone, or a single knight or bishop beside them.
    bool IsInsufficientMaterial() const;

  private:
    struct State {
        std::uint64_t key = 0;
        std::uint64_t pawnKey = 0;
        Bitboard checkers = 0;
        Move move;
        std::int16_t halfmoveClock = 0;
        std::int8_t castling = 0;
        std::int8_t enPassant = -1;
        std::int8_t captured = kEmpty;
    };

    const State& state() const { return states_.back(); }
    int gamePly() const { return static_cast<int>(states_.size()) - 1; }
    void Put(int piece, int square);
    void Remove(int square);
    void MovePiece(int from, int to);
    void Clear();
    // Sets the en-passant square behind a double step when an enemy pawn can take there.
    void NoteDoubleStep(State& next, int to);

    Bitboard pieces_[2][6] = {};
    Bitboard sides_[2] = {};
    std::uint8_t squares_[64];
    int side_ = kWhiteSide;
    int startSide_ = kWhiteSide;
    int fullmoveStart_ = 1;
    std::vector<State> states_;
};

}  // namespace velmora::engine
