// Helpers the engine tests share: boards from FEN and the core's view of an engine board.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "core/PositionValue.h"
#include "engine/search/Board.h"

namespace velmora::engine::testing {

inline Board BoardOf(const std::string& fen) {
    Board board;
    EXPECT_TRUE(board.SetFromFen(fen)) << fen;
    return board;
}

// The same position as the core's value: squares, castle flags, side to move and the
// en-passant square (set directly: the core's position text never yields a usable one).
inline PositionValue CoreValueOf(const Board& board) {
    PositionValue value = PositionValue::Empty();
    constexpr PieceCode kCodes[6] = {kPawn, kKnight, kBishop, kRook, kQueen, kKing};
    for (int square = 0; square < 64; ++square) {
        const int piece = board.PieceOn(square);
        if (piece != kEmpty)
            value.Put(square, static_cast<PieceCode>(kCodes[KindOf(piece)] +
                                                     (SideOf(piece) ? kBlack : kWhite)));
    }
    const int rights = board.Castling();
    value.SetCastling(rights & kWhiteKingSide, rights & kWhiteQueenSide, rights & kBlackKingSide,
                      rights & kBlackQueenSide);
    value.sideToMove = board.SideToMove() == kWhiteSide ? kWhite : kBlack;
    value.enPassant = board.EnPassant() >= 0 ? static_cast<Square>(board.EnPassant()) : kNoSquare;
    return value;
}

// The core's form of an engine move: promotion types rook 2, knight 3, bishop 4, queen 5.
inline velmora::Move CoreMoveOf(engine::Move move) {
    constexpr std::uint8_t kPromotionTypes[4] = {kKnight, kBishop, kRook, kQueen};
    return velmora::Move{
        static_cast<Square>(move.From()), static_cast<Square>(move.To()),
        move.IsPromotion() ? kPromotionTypes[move.PromotionKind() - kKnightKind] : std::uint8_t{0}};
}

}  // namespace velmora::engine::testing
