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
}

PositionValue PositionValue::Empty() {
    PositionValue value;
    value.ClearSquares();
    value.SetCastling(false, false, false, false);
    return value;
}

void PositionValue::ClearSquares() {
    std::memset(board_, 0, sizeof board_);
    kingSafe_ = 0;
}

bool PositionValue::HasStandardSquares() const {
    return std::memcmp(board_, kInitialBoard, sizeof board_) == 0;
}

bool PositionValue::SameSquares(const PositionValue& other) const {
    return std::memcmp(board_, other.board_, sizeof board_) == 0;
}

void PositionValue::SetCastling(bool whiteKing, bool whiteQueen, bool blackKing,
                                bool blackQueen) {
    castleWhiteKing = whiteKing;
    castleWhiteQueen = whiteQueen;
    castleBlackKing = blackKing;
    castleBlackQueen = blackQueen;
}

}  // namespace velmora
