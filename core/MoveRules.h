// Move rules: geometry, attacks, the legality test and playing a move on a position value.
#pragma once

#include <cstdint>

#include "core/ChessTypes.h"
#include "core/PositionValue.h"

namespace velmora {

// Whether the piece on from moves to to geometrically (clear paths, pawn rules). Neither the
// side to move nor king safety is looked at; an empty from square answers true.
bool PieceMoves(const PositionValue& position, Square from, Square to);
// Whether every square strictly between from and to is empty, stepping by step.
bool RayClear(const PositionValue& position, Square from, Square to, int step);
// Whether a piece not of colour can move to square under PieceMoves. A square of -1 means the
// square of colour's king; without that king the answer is false.
bool IsAttacked(const PositionValue& position, Colour colour, int square);
// Whether the king of the side to move is attacked.
bool InCheck(const PositionValue& position);

// Runs the full legality test of from -> to. Whose turn it is does not matter: the callers
// choose the from square, and an empty one is judged by its colour's king safety alone.
// needsPromotion (may be null) is set for a pawn reaching the last rank, legal or not.
bool IsLegalMove(const PositionValue& position, Square from, Square to,
                 bool* needsPromotion = nullptr);
// Whether the piece on from is a pawn that reaches its last rank on to.
bool IsPromotion(const PositionValue& position, Square from, Square to);
// Fills squares (room for 64) with every square other than from that holds the piece code
// (the code on from when code is 0) and whose piece may legally move to to, in square order.
// Returns the count.
int CandidateOrigins(const PositionValue& position, PieceCode code, Square from, Square to,
                     Square* squares);

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
void ClearCastleFlags(PositionValue& position, Square left);
// The promotion a move really makes: its own type, the queen when it gives none, and 0 when
// the piece on from is not a pawn reaching its last rank.
std::uint8_t EffectivePromotion(const PositionValue& position, Move move);

// What PlayOnValue did.
struct PlayedMove {
    MoveEffects effects;
    std::uint8_t promotion = 0;  // the type promoted to, 0 for none
    bool givesCheck = false;     // the king of the new side to move is attacked
};
// Plays a move that passed IsLegalMove: the board, en passant, castle flags, side to move,
// move number and promotion (the queen when the move gives no type). The evaluation glyph
// goes back to 0.
PlayedMove PlayOnValue(PositionValue& position, Move move);

// The program-wide promotion chooser: given the caller's context it returns the piece type
// (2..5) to promote to, or 0 for no choice (the queen is taken then).
using PromotionChooser = int (*)(void* context);
void SetPromotionChooser(PromotionChooser chooser);
PromotionChooser GetPromotionChooser();

}  // namespace velmora
