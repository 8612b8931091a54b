// Move rules: legality, candidates, and playing a move on a position value.
#include "core/MoveRules.h"

#include <algorithm>
#include <cstring>

#include "core/Attacks.h"

namespace velmora {

using namespace board;

namespace {

PromotionChooser promotionChooser = nullptr;

// Decides castling for a king on its home square moving two files. Returns -1 when the move
// is not a castling whose flag and empty squares allow it (ordinary geometry then decides),
// else 1 or 0. Only the flag and the empty squares are looked at, never the rook itself.
int CastlingVerdict(const PositionValue& p, PieceCode code, Square from, Square to) {
    const PieceCode* b = p.Squares();
    if (code == kWhiteKing && from == kE1) {
        const int king = p.KingSquare(kWhite);
        if (to == kG1 && !b[kF1] && !b[kG1] && p.castleWhiteKing) {
            return !IsAttackedOn(b, kWhite, king) && !IsAttackedOn(b, kWhite, kF1);
        }
        if (to == kC1 && !b[1] && !b[kC1] && !b[kD1] && p.castleWhiteQueen) {
            return !IsAttackedOn(b, kWhite, king) && !IsAttackedOn(b, kWhite, kD1);
        }
    } else if (code == kBlackKing && from == kE8) {
        const int king = p.KingSquare(kBlack);
        if (to == kG8 && !b[kF8] && !b[kG8] && p.castleBlackKing) {
            return !IsAttackedOn(b, kBlack, king) && !IsAttackedOn(b, kBlack, kF8);
        }
        if (to == kC8 && !b[57] && !b[kC8] && !b[kD8] && p.castleBlackQueen) {
            return !IsAttackedOn(b, kBlack, king) && !IsAttackedOn(b, kBlack, kD8);
        }
    }
    return -1;
}

// The second half of the legality test, for a move whose geometry passed: whether the king of
// the mover's colour is not attacked once the move is made.
bool KingStaysSafe(const PositionValue& position, Square from, Square to) {
    const PieceCode* board = position.Squares();
    const PieceCode code = board[from];
    const Colour mover = ColourOf(code);
    if (code != 0 && TypeOf(code) != kKing && to != position.enPassant &&
        position.KnownSafe(mover)) {
        // The king was not attacked before and stays where it is: a move that neither takes
        // en passant nor castles can only uncover a line through from, which is all that needs
        // looking at. A "move" of an empty square takes the full test: it leaves to empty, so
        // it may uncover a line through to as well.
        return !OpensLineToKing(board, from, to, mover, position.KingSquare(mover));
    }
    PieceCode scratch[64];
    std::memcpy(scratch, board, sizeof scratch);
    ApplyMoveToBoard(scratch, from, to, position.enPassant);
    // The king stands where it stood unless it is the piece moved. Where the position does not
    // know it (several kings of a colour), it is looked for on the scratch board.
    int king = position.KingSquare(mover);
    if (code == mover + kKing && king == from) king = to;
    if (king >= 0 && scratch[king] != mover + kKing) king = -1;
    return !IsAttackedOn(scratch, mover, king);
}

// Whether the king of the side to move in after is attacked, where after is before with move
// played. When that king was known safe in before and the move was made by the other colour,
// neither castling nor taking en passant, only the piece moved and the line through the square
// it left can reach the king now.
bool ChecksAfter(const PositionValue& after, PieceCode moverCode, Move move,
                 const MoveEffects& effects, bool defenderWasSafe) {
    const Colour defender = after.sideToMove;
    const PieceCode* board = after.Squares();
    // A "move" of an empty square leaves nothing on to that could give check, and the
    // piece-moves test below would answer yes for the empty square: it takes the full test.
    const int king = after.KingSquare(defender);
    if (!defenderWasSafe || effects.castlingKind != 0 || effects.enPassantCapture ||
        moverCode == 0 || ColourOf(moverCode) == defender) {
        return king >= 0 && IsAttackedOn(board, defender, king);
    }
    if (king < 0) return false;
    if (PieceMovesOn(board, move.to, static_cast<Square>(king))) return true;
    const int d = RayIndex(king, move.from);
    return d >= 0 && SlidesAlong(FirstOnRay(board, king, d), d, defender);
}

}  // namespace

bool PieceMoves(const PositionValue& position, Square from, Square to) {
    if (from > 63 || to > 63) return false;
    return PieceMovesOn(position.Squares(), from, to);
}

bool RayClear(const PositionValue& position, Square from, Square to, int step) {
    return RayClearOn(position.Squares(), from, to, step);
}

bool IsAttacked(const PositionValue& position, Colour colour, int square) {
    if (square == -1) {
        square = position.KingSquare(colour);
        if (square < 0) return false;
    }
    return IsAttackedOn(position.Squares(), colour, square);
}

bool InCheck(const PositionValue& position) {
    return IsAttacked(position, position.sideToMove, -1);
}

MoveEffects ApplyMoveToBoard(PieceCode* board, Square from, Square to, Square enPassant) {
    MoveEffects effects;
    PieceCode code = board[from];
    if (board[to] != 0) {
        effects.captured = true;
        effects.capturedCode = board[to];
    } else if (TypeOf(code) == kPawn && to == enPassant) {
        // The pawn taken stands beside the mover, on the file of to.
        Square taken = static_cast<Square>(FileOf(to) + 8 * RankOf(from));
        effects.enPassantCapture = true;
        effects.capturedCode = board[taken];
        board[taken] = 0;
    } else if (code == kWhiteKing && from == kE1 && (to == kG1 || to == kC1)) {
        Square rookFrom = to == kG1 ? kH1 : kA1;
        board[to == kG1 ? kF1 : kD1] = board[rookFrom];
        board[rookFrom] = 0;
        effects.castlingKind = to == kG1 ? 1 : 2;
    } else if (code == kBlackKing && from == kE8 && (to == kG8 || to == kC8)) {
        Square rookFrom = to == kG8 ? kH8 : kA8;
        board[to == kG8 ? kF8 : kD8] = board[rookFrom];
        board[rookFrom] = 0;
        effects.castlingKind = to == kG8 ? 1 : 2;
    } else if (code == kWhitePawn && RankOf(from) == 1 && RankOf(to) == 3) {
        effects.newEnPassant = static_cast<Square>(FileOf(to) + 16);
    } else if (code == kBlackPawn && RankOf(from) == 6 && RankOf(to) == 4) {
        effects.newEnPassant = static_cast<Square>(FileOf(to) + 40);
    }
    board[to] = code;
    board[from] = 0;
    return effects;
}

bool IsPromotion(const PositionValue& position, Square from, Square to) {
    if (from > 63 || to > 63) return false;
    const PieceCode code = position.At(from);
    return (code == kWhitePawn && RankOf(to) == 7) || (code == kBlackPawn && RankOf(to) == 0);
}

// Runs the full legality test. King safety is checked on a scratch board on the stack, so the
// test allocates nothing.
bool IsLegalMove(const PositionValue& position, Square from, Square to, bool* needsPromotion) {
    if (needsPromotion) *needsPromotion = IsPromotion(position, from, to);
    if (from > 63 || to > 63) return false;
    const PieceCode* board = position.Squares();
    const PieceCode code = board[from];
    const Colour mover = ColourOf(code);

    int result;
    if (board[to] != 0 && ColourOf(board[to]) == mover) {
        result = 0;
    } else if (to == position.enPassant && TypeOf(code) == kPawn) {
        // Judge the capture as if an enemy pawn stood on the en-passant square.
        PieceCode scratch[64];
        std::memcpy(scratch, board, sizeof scratch);
        scratch[to] = mover == kWhite ? kBlackPawn : kWhitePawn;
        result = PieceMovesOn(scratch, from, to);
    } else {
        result = CastlingVerdict(position, code, from, to);
        if (result < 0) result = PieceMovesOn(board, from, to);
    }
    return result && KingStaysSafe(position, from, to);
}

int CandidateOrigins(const PositionValue& position, PieceCode code, Square from, Square to,
                     Square* squares) {
    const PieceCode* board = position.Squares();
    if (code == 0) code = position.SquareOrEmpty(from);
    int count = 0;
    if (to > 63 || code == 0) return 0;
    // A knight, rook, bishop or queen can only come from a square its geometry links to to: a
    // jump away, or the first piece along a ray. Those are the only squares worth testing, in
    // increasing order as a scan of the board would meet them. Kings (castling) and pawns (en
    // passant) have moves beyond that geometry and are looked for on every square.
    Square near[16];
    int nearCount = 0;
    int type = TypeOf(code);
    if (type == kKnight) {
        for (const Square* s = kAttacks.knight[to]; *s != kNoSquare; ++s) {
            if (board[*s] == code) near[nearCount++] = *s;
        }
    } else if (type == kRook || type == kBishop || type == kQueen) {
        for (int d = type == kBishop ? 4 : 0; d < (type == kRook ? 4 : 8); ++d) {
            const Square* ray = kAttacks.ray[to][d];
            for (int i = 0; i < 8 && ray[i] != kNoSquare; ++i) {
                if (board[ray[i]] == 0) continue;
                if (board[ray[i]] == code) near[nearCount++] = ray[i];
                break;
            }
        }
    } else {
        // Kings: none before the first, and nothing after it when the position knows that one
        // to be the only king of its colour.
        int first = 0, last = 63;
        if (code == ColourOf(code) + kKing) {
            first = position.KingSquare(ColourOf(code));
            if (first < 0) return 0;
            if (position.KnowsOnlyKing(ColourOf(code))) last = first;
        }
        for (int s = first; s <= last; ++s) {
            if (s == from || board[s] != code) continue;
            if (IsLegalMove(position, static_cast<Square>(s), to)) {
                squares[count++] = static_cast<Square>(s);
            }
        }
        return count;
    }
    for (int k = 1; k < nearCount; ++k) {  // at most eight: sorted in place
        for (int j = k; j > 0 && near[j] < near[j - 1]; --j)
            std::swap(near[j], near[j - 1]);
    }
    // Their geometry holds by the way they were found; what the legality test would add is
    // the rest: not onto a piece of their own colour, and the king safe afterwards.
    const bool ownPieceOnTo = board[to] != 0 && ColourOf(board[to]) == ColourOf(code);
    if (ownPieceOnTo) return 0;
    for (int k = 0; k < nearCount; ++k) {
        Square s = near[k];
        if (s != from && KingStaysSafe(position, s, to)) squares[count++] = s;
    }
    return count;
}

// Clears the castle flags that the square a piece left gives up. A rook taken on its home
// square leaves the flag set (kept that way).
void ClearCastleFlags(PositionValue& p, Square left) {
    switch (left) {
        case kE1:
            p.castleWhiteKing = p.castleWhiteQueen = 0;
            break;
        case kH1:
            p.castleWhiteKing = 0;
            break;
        case kA1:
            p.castleWhiteQueen = 0;
            break;
        case kE8:
            p.castleBlackKing = p.castleBlackQueen = 0;
            break;
        case kH8:
            p.castleBlackKing = 0;
            break;
        case kA8:
            p.castleBlackQueen = 0;
            break;
        default:
            break;
    }
}

std::uint8_t EffectivePromotion(const PositionValue& position, Move move) {
    if (!IsPromotion(position, move.from, move.to)) return 0;
    return move.promotion != 0 ? move.promotion : static_cast<std::uint8_t>(kQueen);
}

PlayedMove PlayOnValue(PositionValue& position, Move move) {
    PlayedMove played;
    const PieceCode code = position.At(move.from);
    const Colour defender = OtherSide(position.sideToMove);
    const bool defenderWasSafe = position.KnownSafe(defender);
    played.promotion = EffectivePromotion(position, move);
    Square kings[2] = {position.kings_[0], position.kings_[1]};

    PieceCode* board = position.MutableSquares();
    played.effects = ApplyMoveToBoard(board, move.from, move.to, position.enPassant);
    if (played.promotion != 0) {
        board[move.to] = static_cast<PieceCode>(played.promotion + ColourOf(code));
    }
    // The kings stay where they were but for the one moved; a king taken, or made by a
    // promotion, is looked for again.
    const PieceCode placed = board[move.to];
    for (int side = 0; side < 2; ++side) {
        const PieceCode king = static_cast<PieceCode>((side == 0 ? kWhite : kBlack) + kKing);
        if (code == king && kings[side] == move.from) {
            kings[side] = move.to;
        } else if (played.effects.capturedCode == king || (placed == king && code != king)) {
            kings[side] = kNoSquare;
        }
    }
    position.kings_[0] = kings[0];
    position.kings_[1] = kings[1];
    position.enPassant = played.effects.newEnPassant;
    position.sideToMove = defender;
    if (defender == kBlack) ++position.moveNumber;
    position.evaluation = 0;
    ClearCastleFlags(position, move.from);

    played.givesCheck = ChecksAfter(position, code, move, played.effects, defenderWasSafe);
    // The legality test made sure the king of the mover's colour is safe now.
    position.SetKnownSafe(ColourOf(code), true);
    if (ColourOf(code) != defender) position.SetKnownSafe(defender, !played.givesCheck);
    return played;
}

void SetPromotionChooser(PromotionChooser chooser) {
    promotionChooser = chooser;
}

PromotionChooser GetPromotionChooser() {
    return promotionChooser;
}

}  // namespace velmora
