// Move: a move of the engine packed in 16 bits (from, to and a kind), and its coordinate text.
#pragma once

#include <cstdint>
#include <string>

namespace velmora::engine {

// Piece types and colours as the engine numbers them (the core's codes are converted at the
// edges): a piece is colour * 6 + type, and kEmpty marks an empty square.
enum PieceKind : int { kPawnKind, kKnightKind, kBishopKind, kRookKind, kQueenKind, kKingKind };
constexpr int kWhiteSide = 0, kBlackSide = 1;
constexpr int kEmpty = 12;
constexpr int MakePiece(int side, int kind) {
    return side * 6 + kind;
}
constexpr int KindOf(int piece) {
    return piece % 6;
}
constexpr int SideOf(int piece) {
    return piece / 6;
}

// Kinds of move, in the top four bits. Bit 2 marks captures, bit 3 promotions; the low two
// bits of a promotion give the piece (knight, bishop, rook, queen).
enum MoveKind : int {
    kQuiet = 0,
    kDoublePush = 1,
    kCastleKing = 2,
    kCastleQueen = 3,
    kCapture = 4,
    kEnPassant = 5,
    kPromotion = 8,
    kPromotionCapture = 12,
};

class Move {
  public:
    constexpr Move() = default;
    constexpr Move(int from, int to, int kind)
        : bits_(static_cast<std::uint16_t>(from | (to << 6) | (kind << 12))) {}
    // A promotion to the piece kind (knight..queen), with or without a capture.
    static constexpr Move Promotion(int from, int to, int pieceKind, bool capture) {
        return Move(from, to,
                    (capture ? kPromotionCapture : kPromotion) | (pieceKind - kKnightKind));
    }
    static constexpr Move FromBits(std::uint16_t bits) {
        Move move;
        move.bits_ = bits;
        return move;
    }

    constexpr int From() const { return bits_ & 63; }
    constexpr int To() const { return (bits_ >> 6) & 63; }
    constexpr int Kind() const { return bits_ >> 12; }
    constexpr bool IsCapture() const { return (Kind() & kCapture) != 0; }
    constexpr bool IsPromotion() const { return (Kind() & kPromotion) != 0; }
    // Captures and promotions: the moves quiescence search looks at.
    constexpr bool IsNoisy() const { return (Kind() & (kCapture | kPromotion)) != 0; }
    constexpr bool IsCastle() const { return Kind() == kCastleKing || Kind() == kCastleQueen; }
    // The piece kind a promotion makes (knight..queen).
    constexpr int PromotionKind() const { return kKnightKind + (Kind() & 3); }
    constexpr std::uint16_t Bits() const { return bits_; }
    constexpr bool IsNone() const { return bits_ == 0; }

    friend constexpr bool operator==(Move, Move) = default;

  private:
    std::uint16_t bits_ = 0;
};

// Writes the move as from square, to square and a promotion letter ("e7e8q"); the empty move
// writes "0000".
std::string MoveText(Move move);
// Writes a square as a file letter and a rank digit ("e4").
std::string SquareText(int square);

}  // namespace velmora::engine
