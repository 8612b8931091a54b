// Position: one position of a game's move tree, a position value plus the tree's links.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "core/ChessTypes.h"
#include "core/PositionText.h"
#include "core/PositionValue.h"

namespace velmora {

class MoveNode;

// Positions and moves alternate in a game's tree. A Position owns its first continuation (and
// through it every line that follows) and its comment. It does not own the node that produced
// it: that node owns the position.
class Position {
  public:
    // Builds the initial position of a game.
    Position();
    Position(const Position&) = delete;
    Position& operator=(const Position&) = delete;
    // Frees the comment and every line that follows this position.
    ~Position();
    // Positions are made and freed once a move when games are loaded: their blocks are
    // recycled.
    static void* operator new(std::size_t size);
    static void operator delete(void* block, std::size_t size);

    // Plays from -> to and returns the new position hung into the move tree, or null when a
    // square is above 63 or the move is illegal. A given replace node (one of this position's
    // continuations) is swapped out for the new move and destroyed with its line; otherwise the
    // move becomes the first continuation or a new variation. A promotion type of 0 asks the
    // promotion chooser with promotionContext, and takes the queen when it gives none.
    Position* PlayMove(int from, int to, MoveNode* replace, int promotionType,
                       void* promotionContext);
    // The same for a move already known to be legal here (read from SAN, say): nothing is
    // tested again.
    Position* AddMove(Move move, MoveNode* replace, void* promotionContext);

    // Reads a position text into this position and marks it set up. Returns false on an
    // unknown castling character or an en-passant letter without a rank digit, leaving
    // whatever was already read in place.
    bool SetFromText(const char16_t* text);
    // Writes the position text into buffer (kTextBufferSize characters); returns its length.
    int WriteText(char16_t* buffer) const { return WritePositionText(value_, buffer); }
    static constexpr int kTextBufferSize = kPositionTextSize;

    // Copies board and state from other and marks this position as set up. Comment and tree
    // links are cleared without being freed: use on fresh objects only.
    void CopyFrom(const Position& other);
    // Empties all 64 squares and nothing else.
    void Clear() { value_.ClearSquares(); }
    // Square arguments are taken modulo 256; values 64..255 name no square, so writes to
    // them are dropped and reads give 0 (empty).
    void SetSquare(int square, PieceCode code) { value_.Put(square, code); }
    PieceCode GetSquare(int square) const { return value_.SquareOrEmpty(square); }
    PieceCode GetSquare(int file, int rank) const { return GetSquare(file + 8 * rank); }
    void SetState(bool castleWK, bool castleWQ, bool castleBK, bool castleBQ, int enPassantSquare);
    // Marks the position set up when any square differs from the initial position.
    void CheckIfStandardStart() { setUp = !value_.HasStandardSquares(); }

    const PositionValue& Value() const { return value_; }
    PositionValue& Value() { return value_; }
    Colour SideToMove() const { return value_.sideToMove; }

    // Replaces the comment; null leaves none.
    void SetComment(const char16_t* text);
    void SetComment(std::u16string_view text);
    // Takes ownership of text, which must have been allocated with new char16_t[].
    void TakeComment(char16_t* text) { comment_.reset(text); }
    const char16_t* Comment() const { return comment_.get(); }

    MoveNode* ArrivalNode() const { return arrivalNode_; }
    MoveNode* FirstContinuation() const { return firstContinuation_; }
    // The variation level of the arrival node, 0 at the start of the game.
    int ArrivalLevel() const;
    // The position before the arrival node's move; null at the start of the game.
    Position* PreviousPosition() const;
    // Returns the position after the continuation from -> to with that promotion, or null.
    Position* FindContinuation(int from, int to, int promotion) const;

    // True when this position was set up (from text, by copy, or differs from the initial
    // position) rather than reached by moves from the start of a game.
    bool setUp = false;

  private:
    friend class MoveNode;

    // Builds the position move produces on previous, together with its arrival node (not yet
    // linked into previous's list). The move must be legal.
    Position(Position& previous, Move move, void* promotionContext);

    PositionValue value_;
    std::unique_ptr<char16_t[]> comment_;
    MoveNode* arrivalNode_ = nullptr;        // not owned
    MoveNode* firstContinuation_ = nullptr;  // owned
};

}  // namespace velmora
