// SearchPosition: applying moves in place with piece counts, and the two match tests.
#include "core/SearchPosition.h"

#include <cstring>

#include "core/MoveRules.h"
#include "core/PositionText.h"

namespace velmora {

SearchPosition::SearchPosition(const PositionValue* target, const WantedCounts& wantedWhite,
                               const WantedCounts& wantedBlack)
    : target_(target), wantedWhite_(wantedWhite), wantedBlack_(wantedBlack) {
    if (target != nullptr) {
        for (int square = 0; square < 64; ++square)
            targetPieceCount += target->At(square) != 0;
    } else {
        targetPieceCount = 2;
        for (int type = kPawn; type <= kQueen; ++type) {
            targetPieceCount += wantedWhite[type] + wantedBlack[type];
        }
    }
    CountPieces();
    TestMatch();
}

// Counts the occupied squares (kings included) and the pieces of each type and colour.
void SearchPosition::CountPieces() {
    pieceCount = 0;
    whiteCounts.fill(0);
    blackCounts.fill(0);
    for (int square = 0; square < 64; ++square) {
        PieceCode code = value_.At(square);
        if (code == 0) continue;
        ++pieceCount;
        int type = TypeOf(code);
        if (type < kPawn || type > kQueen) continue;
        ++(ColourOf(code) == kWhite ? whiteCounts : blackCounts)[type - 1];
    }
}

bool SearchPosition::SetFromText(const char16_t* text) {
    bool result = ReadPositionText(text, &value_);
    if (result) {
        CountPieces();
        found = impossible = 0;
        TestMatch();
    }
    return result;
}

// Applies the move in place. An en-passant capture removes the pawn without lowering the
// counts, so the piece count stays one too high for the rest of the game: intended, it is how
// matching has always behaved.
SearchPosition* SearchPosition::ApplyMove(int from, int to, int promotion) {
    if (value_.sideToMove == kWhite) {
        ++value_.moveNumber;
        signedMoveNumber = value_.moveNumber;
    } else {
        signedMoveNumber = -value_.moveNumber;
    }
    value_.sideToMove = OtherSide(value_.sideToMove);

    PieceCode* board = value_.MutableSquares();
    PieceCode mover = board[from];
    if (PieceCode taken = board[to]) {
        int type = TypeOf(taken);
        if (type >= kPawn && type <= kQueen) {
            --(ColourOf(taken) == kWhite ? whiteCounts : blackCounts)[type - 1];
        }
        --pieceCount;
    }
    // The board moves as in play (en-passant pawn, castling rook); promotion and counts here.
    value_.enPassant = ApplyMoveToBoard(board, static_cast<Square>(from), static_cast<Square>(to),
                                        value_.enPassant)
                           .newEnPassant;
    // The square takes the promotion value as given (a bare type, for Black too), which keeps
    // the counts right because callers pass the type.
    if (mover == kPawn && RankOf(to) == 7) {
        board[to] = static_cast<PieceCode>(promotion);
        --whiteCounts[0];
        if (promotion >= kPawn && promotion <= kQueen) ++whiteCounts[promotion - 1];
    } else if (mover == kBlack + kPawn && RankOf(to) == 0) {
        board[to] = static_cast<PieceCode>(promotion);
        --blackCounts[0];
        if (promotion >= kPawn && promotion <= kQueen) ++blackCounts[promotion - 1];
    }
    ClearCastleFlags(value_, static_cast<Square>(from));

    TestMatch();
    return found || impossible ? nullptr : this;
}

// Sets found and impossible. A target matches on equal squares once the piece counts agree;
// fewer pieces than it has can never match again. A material balance matches when every
// count equals the wanted one; fewer pawns than wanted, or more pawns plus missing pieces
// than eight (each missing piece needs a promotion), can never match again.
void SearchPosition::TestMatch() {
    if (target_ != nullptr) {
        if (pieceCount == targetPieceCount) {
            found = value_.SameSquares(*target_);
        } else {
            found = 0;
            if (pieceCount < targetPieceCount) impossible = 1;
        }
        return;
    }
    if (pieceCount != targetPieceCount) {
        found = 0;
        if (pieceCount < targetPieceCount) impossible = 1;
        return;
    }
    found = 1;
    int shortfall[2] = {0, 0};
    for (int type = kPawn; type <= kQueen; ++type) {
        for (int side = 0; side < 2; ++side) {
            const auto& counts = side == 0 ? whiteCounts : blackCounts;
            const WantedCounts& wanted = side == 0 ? wantedWhite_ : wantedBlack_;
            int have = counts[type - 1];
            if (have > wanted[type]) found = 0;
            if (have < wanted[type]) {
                found = 0;
                if (type == kPawn) {
                    impossible = 1;
                } else {
                    shortfall[side] = wanted[type] - have;
                }
            }
            if (counts[0] + shortfall[side] > 8) impossible = 1;
        }
    }
}

}  // namespace velmora
