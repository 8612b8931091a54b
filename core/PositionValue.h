// PositionValue: one chess position as a plain value, the thing every rule works on.
#pragma once

#include <cstdint>

#include "core/ChessTypes.h"

namespace velmora {

class PositionValue;
struct Move;
struct PlayedMove;
PlayedMove PlayOnValue(PositionValue& position, Move move);
bool ReadPositionText(const char16_t* text, PositionValue* position);

// Squares, castle flags, en-passant square, side to move, move number and the evaluation
// glyph. It owns nothing and copies with memcpy, so replaying a game on it allocates nothing.
// The squares are private: writing one goes through Put (or MutableSquares), which forgets
// what the rules had learnt about the kings on this board (where they stand, and whether they
// are safe).
class PositionValue {
  public:
    // The initial position: white to move, all castle flags set, move number 0.
    PositionValue();
    // An empty board with no castle flags, white to move, move number 0.
    static PositionValue Empty();

    PieceCode At(int square) const { return board_[square]; }
    // Square arguments are taken modulo 256; 64..255 name no square: writes to them are
    // dropped and reads give 0 (empty).
    PieceCode SquareOrEmpty(int square) const {
        return (square & 255) < 64 ? board_[square & 255] : PieceCode{0};
    }
    void Put(int square, PieceCode code) {
        if ((square & 255) >= 64) return;
        board_[square & 255] = code;
        Forget();
    }
    const PieceCode* Squares() const { return board_; }
    // Gives write access to all 64 squares for a caller that moves pieces itself.
    PieceCode* MutableSquares() {
        Forget();
        return board_;
    }
    // The square of colour's king, -1 without one; a set-up board with several gives the first
    // in square order.
    int KingSquare(Colour colour) const {
        const Square known = kings_[colour == kWhite ? 0 : 1];
        return known != kNoSquare ? known : FindKing(colour);
    }
    // Whether the colour is known to have exactly one king, on KingSquare.
    bool KnowsOnlyKing(Colour colour) const {
        return kings_[colour == kWhite ? 0 : 1] != kNoSquare;
    }
    // Empties the 64 squares and nothing else.
    void ClearSquares();
    // Whether the squares are those of the initial position (nothing else is compared).
    bool HasStandardSquares() const;
    bool SameSquares(const PositionValue& other) const;
    void SetCastling(bool whiteKing, bool whiteQueen, bool blackKing, bool blackQueen);

    // What the rules know about the king of a colour: true only when it was worked out that no
    // enemy piece reaches it. Kept by PlayOnValue and the position text reader, forgotten by
    // every write to a square.
    bool KnownSafe(Colour colour) const { return (kingSafe_ & SafetyBit(colour)) != 0; }
    void SetKnownSafe(Colour colour, bool safe) {
        if (safe) {
            kingSafe_ |= SafetyBit(colour);
        } else {
            kingSafe_ &= static_cast<std::uint8_t>(~SafetyBit(colour));
        }
    }

    std::uint8_t castleWhiteKing = 1;
    std::uint8_t castleWhiteQueen = 1;
    std::uint8_t castleBlackKing = 1;
    std::uint8_t castleBlackQueen = 1;
    // The square a pawn just passed over on a double step, kNoSquare for none. A value read
    // from position text lies beyond the board (see ReadPositionText).
    Square enPassant = kNoSquare;
    Colour sideToMove = kWhite;
    // Evaluation glyph of the position as a NAG number (11 and above), 0 for none.
    std::uint8_t evaluation = 0;
    // Number of the last move played: 0 at the start, wrapping at 256.
    std::uint8_t moveNumber = 0;

  private:
    friend PlayedMove PlayOnValue(PositionValue& position, Move move);
    friend bool ReadPositionText(const char16_t* text, PositionValue* position);

    static constexpr std::uint8_t SafetyBit(Colour colour) { return colour == kWhite ? 1 : 2; }
    int FindKing(Colour colour) const;
    void Forget() {
        kingSafe_ = 0;
        kings_[0] = kings_[1] = kNoSquare;
    }
    // Notes where each colour's king stands when it has exactly one.
    void LocateKings();

    PieceCode board_[64];
    std::uint8_t kingSafe_ = 0;
    // The square of each colour's only king (white, then black), or kNoSquare when not known:
    // it is looked for then.
    Square kings_[2] = {kNoSquare, kNoSquare};
};

}  // namespace velmora
