// Position: one chess position plus the links that hang a game's move tree on it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/ChessTypes.h"

namespace velmora {

class MoveNode;

// The first line of every move-tree list is the main line; a Position owns its first
// continuation (and through it every line that follows) and its comment. It does not own the
// node that produced it: that node owns the position.
class Position {
  public:
    // Builds the initial position of a game.
    Position();
    Position(const Position&) = delete;
    Position& operator=(const Position&) = delete;
    // Frees the comment and every line that follows this position.
    virtual ~Position();
    // Positions are made and freed once a move when games are loaded: their blocks are
    // recycled.
    static void* operator new(std::size_t size);
    static void operator delete(void* block, std::size_t size);

    // Plays from -> to and returns the new position hung into the move tree, or null when a
    // square is above 63 or the move is illegal. A given replace node (one of this position's
    // continuations) is swapped out for the new move and destroyed with its line; otherwise the
    // move becomes the first
    // continuation or a new variation. A promotion type of 0 asks the promotion chooser.
    virtual Position* PlayMove(int from, int to, MoveNode* replace, int promotionType,
                               void* promotionContext);

    // Reads a position text (board, side, castling, en passant, half-move clock, move number).
    // Returns 0 on an unknown castling character or an en-passant letter without a rank digit,
    // leaving whatever was already read in place; 1 otherwise.
    virtual int SetFromText(const char16_t* text);

    // Writes the position text into buffer (at least kTextBufferSize characters) and returns
    // its length.
    int WriteText(char16_t* buffer) const;
    static constexpr int kTextBufferSize = 96;

    // Copies board and state from other and marks this position as set up. Comment and tree
    // links are cleared without being freed: use on fresh objects only.
    void CopyFrom(const Position& other);
    // Empties all 64 squares and nothing else.
    void Clear();
    // Square arguments are taken modulo 256; values 64..255 name no square, so writes to
    // them are dropped and reads give 0 (empty).
    void SetSquare(int square, PieceCode code) {
        if ((square & 255) < 64) board[square & 255] = code;
    }
    PieceCode GetSquare(int square) const {
        return (square & 255) < 64 ? board[square & 255] : PieceCode{0};
    }
    PieceCode GetSquare(int file, int rank) const { return GetSquare(file + 8 * rank); }
    void SetState(int castleWK, int castleWQ, int castleBK, int castleBQ, int enPassantSquare);
    // Sets the set-up flag to 1 when any square differs from the initial position, else to 0.
    void CheckIfStandardStart();

    // Replaces the comment. Null leaves none; with copy 0 the position takes ownership of text,
    // which must have been allocated with new char16_t[]; otherwise it keeps a copy.
    void SetComment(char16_t* text, int copy);
    void SetComment(const char16_t* text) { SetComment(const_cast<char16_t*>(text), 1); }
    const char16_t* Comment() const { return comment_.get(); }

    MoveNode* ArrivalNode() const { return arrivalNode_; }
    MoveNode* FirstContinuation() const { return firstContinuation_; }
    // The variation level of the arrival node, 0 at the start of the game.
    int ArrivalLevel() const;
    // The position before the arrival node's move; null at the start of the game.
    Position* PreviousPosition() const;
    // Returns the position after the continuation from -> to with that promotion, or null.
    Position* FindContinuation(int from, int to, int promotion) const;

    // Board and state, public because the rules, the readers and the set-up editor work on
    // them directly. Square indices are 0..63.
    PieceCode board[64];
    std::uint8_t castleWhiteKing;
    std::uint8_t castleWhiteQueen;
    std::uint8_t castleBlackKing;
    std::uint8_t castleBlackQueen;
    Square enPassant;
    // One-entry cache of the last legality test: PlayMove re-tests only a different pair.
    Square testedFrom;
    Square testedTo;
    std::uint32_t testedResult;
    Colour sideToMove;
    // Evaluation glyph of the position as a NAG number, 0 for none.
    std::uint8_t evaluation;
    // Number of the last move played: 0 at the start, wrapping at 256.
    std::uint8_t moveNumber;
    std::uint32_t setUp;

  protected:
    // Builds the position that from -> to produces on previous, together with its arrival
    // node (not yet linked into previous's list). Legality is not checked here.
    Position(Position& previous, Square from, Square to);

  private:
    friend class MoveNode;

    std::unique_ptr<char16_t[]> comment_;
    MoveNode* arrivalNode_ = nullptr;        // not owned
    MoveNode* firstContinuation_ = nullptr;  // owned
};

}  // namespace velmora
