// The board editor's rules: taps, copies and the validation of a set-up position.
#include "core/PositionSetup.h"

#include "core/MoveRules.h"

namespace velmora {

void TapSetupSquare(PositionValue& board, int square, PieceCode piece) {
    board.Put(square, board.SquareOrEmpty(square) == piece ? PieceCode{0} : piece);
}

SetupChoices ChoicesShowing(const PositionValue& board) {
    SetupChoices choices;
    choices.castling[0] = board.castleWhiteKing != 0;
    choices.castling[1] = board.castleWhiteQueen != 0;
    choices.castling[2] = board.castleBlackKing != 0;
    choices.castling[3] = board.castleBlackQueen != 0;
    choices.whiteToPlay = board.sideToMove == kWhite;
    choices.moveNumber = board.moveNumber + 1u;
    return choices;
}

namespace {

constexpr PieceCode kWhiteKing = 6;
constexpr PieceCode kBlackKing = kBlack + 6;
constexpr PieceCode kWhiteRook = 2;
constexpr PieceCode kBlackRook = kBlack + 2;

// One castling right: the king's and the rook's home squares and the text of its warning.
struct CastlingRule {
    int kingSquare;
    PieceCode king;
    int rookSquare;
    PieceCode rook;
    const char16_t* warning;
};

constexpr CastlingRule kCastlingRules[4] = {
    {4, kWhiteKing, 7, kWhiteRook, u"White O-O,"},
    {4, kWhiteKing, 0, kWhiteRook, u"White O-O-O,"},
    {60, kBlackKing, 63, kBlackRook, u"Black O-O,"},
    {60, kBlackKing, 56, kBlackRook, u"Black O-O-O,"},
};

// Returns the error of a board without exactly one king of each colour, or null. The first
// duplicate met in square order is the one reported.
const char16_t* KingError(const PositionValue& board) {
    bool whiteKing = false;
    bool blackKing = false;
    for (int square = 0; square < 64; ++square) {
        const PieceCode code = board.At(square);
        if (code == kBlackKing) {
            if (blackKing) return u"Only one black king please";
            blackKing = true;
        } else if (code == kWhiteKing) {
            if (whiteKing) return u"Only one white king please";
            whiteKing = true;
        }
    }
    if (!whiteKing) return u"I need a white king !";
    if (!blackKing) return u"I need a black king !";
    return nullptr;
}

}  // namespace

SetupVerdict ValidateSetup(PositionValue& board, const SetupChoices& choices) {
    SetupVerdict verdict;
    if (const char16_t* error = KingError(board)) {
        verdict.error = error;
        for (int i = 0; i < 4; ++i)
            verdict.castling[i] = choices.castling[i];
        return verdict;
    }
    for (int i = 0; i < 4; ++i) {
        const CastlingRule& rule = kCastlingRules[i];
        bool kept = choices.castling[i];
        if (kept &&
            (board.At(rule.kingSquare) != rule.king || board.At(rule.rookSquare) != rule.rook)) {
            kept = false;
            verdict.castlingWarning += rule.warning;
        }
        verdict.castling[i] = kept;
    }
    board.SetCastling(verdict.castling[0], verdict.castling[1], verdict.castling[2],
                      verdict.castling[3]);
    // The parts keep their commas; the last one gives way to the verdict.
    if (!verdict.castlingWarning.empty()) {
        verdict.castlingWarning.pop_back();
        verdict.castlingWarning += u" disabled";
    }
    const Colour side = choices.whiteToPlay ? kWhite : kBlack;
    // The side that has just moved cannot stand in check.
    if (IsAttacked(board, OtherSide(side), -1)) {
        verdict.error = choices.whiteToPlay ? u"Black in check incompatible with white to move"
                                            : u"White in check incompatible with black to move";
        return verdict;
    }
    board.sideToMove = side;
    // The stored number is the last move played: for white to play the one before.
    board.moveNumber = static_cast<std::uint8_t>(choices.whiteToPlay ? choices.moveNumber - 1
                                                                     : choices.moveNumber);
    verdict.accepted = true;
    return verdict;
}

}  // namespace velmora
