// PositionValue: the initial and the empty board, and comparisons of squares.
#include "core/PositionValue.h"

#include <cstring>

namespace velmora {

namespace {

constexpr PieceCode kInitialBoard[64] = {
    2,  3,  4,  5,  6,  4,  3,  2,  // rank 1
    1,  1,  1,  1,  1,  1,  1,  1,  // rank 2
    0,  0,  0,  0,  0,  0,  0,  0,  0, 0, 0, 0, 0,  0,  0,  0,  0,  0,  0,  0,
    0,  0,  0,  0,  0,  0,  0,  0,  0, 0, 0, 0, 33, 33, 33, 33, 33, 33, 33, 33,  // rank 7
    34, 35, 36, 37, 38, 36, 35, 34,                                              // rank 8
};

}  // namespace

PositionValue::PositionValue() {
    std::memcpy(board_, kInitialBoard, sizeof board_);
    // Neither king is attacked at the start.
    kingSafe_ = SafetyBit(kWhite) | SafetyBit(kBlack);
    kings_[0] = 4;
    kings_[1] = 60;
}

int PositionValue::FindKing(Colour colour) const {
    const void* found = std::memchr(board_, colour + kKing, 64);
    return found ? static_cast<int>(static_cast<const PieceCode*>(found) - board_) : -1;
}

void PositionValue::LocateKings() {
    for (int side = 0; side < 2; ++side) {
        const PieceCode king = static_cast<PieceCode>((side == 0 ? kWhite : kBlack) + kKing);
        int count = 0;
        Square at = kNoSquare;
        for (int square = 0; square < 64; ++square) {
            if (board_[square] == king) {
                ++count;
                at = static_cast<Square>(square);
            }
        }
        kings_[side] = count == 1 ? at : kNoSquare;
    }
}

PositionValue PositionValue::Empty() {
    PositionValue value;
    value.ClearSquares();
    value.SetCastling(false, false, false, false);
    return value;
}

void PositionValue::ClearSquares() {
    std::memset(board_, 0, sizeof board_);
    Forget();
}

bool PositionValue::HasStandardSquares() const {
    return std::memcmp(board_, kInitialBoard, sizeof board_) == 0;
}

bool PositionValue::SameSquares(const PositionValue& other) const {
    return std::memcmp(board_, other.board_, sizeof board_) == 0;
}

void PositionValue::SetCastling(bool whiteKing, bool whiteQueen, bool blackKing, bool blackQueen) {
    castleWhiteKing = whiteKing;
    castleWhiteQueen = whiteQueen;
    castleBlackKing = blackKing;
    castleBlackQueen = blackQueen;
}

}  // namespace velmora
