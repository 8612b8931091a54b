// Move rules: geometry, attacks, the full legality test and the promotion chooser.
#pragma once

#include <cstdint>

#include "core/ChessTypes.h"

namespace velmora {

class Position;

// Returns 1 when the piece on from moves to to geometrically (clear paths, pawn rules), else
// 0. Neither the side to move nor king safety is looked at; an empty from square answers 1.
int PieceMoves(const Position& position, Square from, Square to);
// Returns 1 when every square strictly between from and to is empty, stepping by step.
int RayClear(const Position& position, Square from, Square to, int step);
// Returns 1 when a piece not of colour can move to square under PieceMoves. A square of -1
// means the square of colour's king; without that king the answer is 0.
int IsAttacked(const Position& position, Colour colour, int square);
// Runs the full legality test of from -> to, stores the pair and the result in the position's
// tested fields and returns the result. needsPromotion (may be null) is set to 1 for a pawn
// reaching the last rank, legal or not.
int TestMove(Position& position, Square from, Square to, int* needsPromotion);
// Fills squares (room for 64) with every square other than from that holds the piece code
// (the code on from when code is 0) and whose piece may legally move to to, in square order.
// Returns the count. Each candidate goes through TestMove, so the tested pair changes.
int CandidateOrigins(Position& position, PieceCode code, Square from, Square to, Square* squares);

// What playing a move did to the board besides moving the piece.
struct MoveEffects {
    bool captured = false;            // to held a piece
    bool enPassantCapture = false;    // a pawn moved to the en-passant square
    PieceCode capturedCode = 0;       // the code taken (en passant: the pawn beside to)
    std::uint8_t castlingKind = 0;    // 1 king-side, 2 queen-side
    Square newEnPassant = kNoSquare;  // the square passed over by a pawn's double step
};
// Moves the piece on from to to on a bare board, taking an en-passant pawn, moving the
// castling rook and noting a double step. Promotion and castle flags are left to the caller.
MoveEffects ApplyMoveToBoard(PieceCode* board, Square from, Square to, Square enPassant);
// Clears the castle flags that a piece leaving square gives up (king or rook home squares).
void ClearCastleFlags(Position& position, Square left);

// The program-wide promotion chooser: given the caller's context it returns the piece type
// (2..5) to promote to, or 0 for no choice (the queen is taken then).
using PromotionChooser = int (*)(void* context);
void SetPromotionChooser(PromotionChooser chooser);
PromotionChooser GetPromotionChooser();

}  // namespace velmora
