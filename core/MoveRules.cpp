// Move rules: geometry, attacks, legality and playing a move into the tree.
#include "core/MoveRules.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "core/Position.h"
#include "game/MoveTree.h"

namespace velmora {

namespace {

PromotionChooser promotionChooser = nullptr;

constexpr Square kA1 = 0, kC1 = 2, kD1 = 3, kE1 = 4, kF1 = 5, kG1 = 6, kH1 = 7;
constexpr Square kA8 = 56, kC8 = 58, kD8 = 59, kE8 = 60, kF8 = 61, kG8 = 62, kH8 = 63;
constexpr PieceCode kWhitePawn = kPawn, kBlackPawn = kBlack + kPawn;
constexpr PieceCode kWhiteKing = kKing, kBlackKing = kBlack + kKing;

// Walks from from towards to by step (8-bit arithmetic) and answers 1 when every square
// strictly between is empty. A walk that leaves the board answers 0.
int RayClearOn(const PieceCode* board, Square from, Square to, int step) {
    Square s = static_cast<Square>(from + step);
    for (;;) {
        if (s == to) return 1;
        if (s > 63 || board[s] != 0) return 0;
        s = static_cast<Square>(s + step);
    }
}

int RookMovesOn(const PieceCode* board, Square from, Square to) {
    if (RankOf(from) == RankOf(to)) {
        return RayClearOn(board, from, to, FileOf(to) < FileOf(from) ? -1 : 1);
    }
    if (FileOf(from) == FileOf(to)) {
        return RayClearOn(board, from, to, RankOf(to) > RankOf(from) ? 8 : -8);
    }
    return 0;
}

int BishopMovesOn(const PieceCode* board, Square from, Square to) {
    int df = std::abs(FileOf(to) - FileOf(from));
    int dr = RankOf(to) - RankOf(from);
    if (df != std::abs(dr)) return 0;
    int step;
    if (FileOf(from) >= FileOf(to)) {
        step = dr > 0 ? 7 : -9;
    } else {
        step = RankOf(from) >= RankOf(to) ? -7 : 9;
    }
    return RayClearOn(board, from, to, step);
}

// Geometry of the piece on from, as PieceMoves describes it, on a bare board.
int PieceMovesOn(const PieceCode* board, Square from, Square to) {
    PieceCode code = board[from];
    int type = TypeOf(code);
    int df = std::abs(FileOf(to) - FileOf(from));
    int dr = RankOf(to) - RankOf(from);
    switch (type) {
        case kPawn: {
            bool white = ColourOf(code) == kWhite;
            if (df == 1) return board[to] != 0 && dr == (white ? 1 : -1);
            if (df != 0 || board[to] != 0) return 0;
            // The square passed over by a double step is not looked at: kept that way.
            if (white) return dr == 1 || (RankOf(from) == 1 && dr == 2);
            return dr == -1 || (RankOf(from) == 6 && dr == -2);
        }
        case kRook:
            return RookMovesOn(board, from, to);
        case kKnight:
            return (df == 2 && std::abs(dr) == 1) || (df == 1 && std::abs(dr) == 2);
        case kBishop:
            return BishopMovesOn(board, from, to);
        case kQueen:
            // A queen moves as a rook of its colour or, failing that, as a bishop. The square
            // itself is never rewritten, so it always holds the queen afterwards.
            return RookMovesOn(board, from, to) || BishopMovesOn(board, from, to);
        case kKing:
            return df < 2 && std::abs(dr) < 2;
        default:
            return 1;  // an empty square "moves" anywhere; callers pick their from squares
    }
}

// Squares reachable from each square, worked out once: the knight's jumps, the king's
// neighbours and, for each of the eight directions (four straight, then four diagonal), the
// ray of squares in order until the edge. Lists end at kNoSquare.
struct AttackTables {
    Square knight[64][9];
    Square king[64][9];
    Square ray[64][8][8];

    constexpr AttackTables() : knight(), king(), ray() {
        constexpr int kJumps[8][2] = {{1, 2},   {2, 1},   {2, -1}, {1, -2},
                                      {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
        constexpr int kSteps[8][2] = {{1, 0}, {-1, 0}, {0, 1},  {0, -1},
                                      {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
        auto on = [](int f, int r) { return f >= 0 && f < 8 && r >= 0 && r < 8; };
        for (int s = 0; s < 64; ++s) {
            int f = FileOf(s), r = RankOf(s), n = 0, k = 0;
            for (int i = 0; i < 8; ++i) {
                if (on(f + kJumps[i][0], r + kJumps[i][1])) {
                    knight[s][n++] = MakeSquare(f + kJumps[i][0], r + kJumps[i][1]);
                }
                if (on(f + kSteps[i][0], r + kSteps[i][1])) {
                    king[s][k++] = MakeSquare(f + kSteps[i][0], r + kSteps[i][1]);
                }
                int length = 0;
                for (int g = f + kSteps[i][0], h = r + kSteps[i][1]; on(g, h);
                     g += kSteps[i][0], h += kSteps[i][1]) {
                    ray[s][i][length++] = MakeSquare(g, h);
                }
                for (int j = length; j < 8; ++j)
                    ray[s][i][j] = kNoSquare;
            }
            for (; n < 9; ++n)
                knight[s][n] = kNoSquare;
            for (; k < 9; ++k)
                king[s][k] = kNoSquare;
        }
    }
};
constexpr AttackTables kAttacks;

// The square of colour's king, or -1 when it has none.
int KingSquare(const PieceCode* board, Colour colour) {
    const void* found = std::memchr(board, colour + kKing, 64);
    return found ? static_cast<int>(static_cast<const PieceCode*>(found) - board) : -1;
}

// The first piece met from square in direction d (an index of the ray tables), or 0.
PieceCode FirstOnRay(const PieceCode* board, int square, int d) {
    for (const Square* r = kAttacks.ray[square][d]; *r != kNoSquare; ++r) {
        if (board[*r] != 0) return board[*r];
    }
    return 0;
}

// The index of the ray from square a through square b, or -1 when they share no line.
int RayIndex(int a, int b) {
    const int df = FileOf(b) - FileOf(a), dr = RankOf(b) - RankOf(a);
    if (df == 0 && dr == 0) return -1;
    if (df == 0 || dr == 0) return df > 0 ? 0 : df < 0 ? 1 : dr > 0 ? 2 : 3;
    if (std::abs(df) != std::abs(dr)) return -1;
    return df > 0 ? (dr > 0 ? 4 : 5) : (dr > 0 ? 6 : 7);
}

// Whether code, met first along ray d, is a rook, bishop or queen of colour's enemy that
// reaches back along that ray.
bool SlidesAlong(PieceCode code, int d, Colour colour) {
    const PieceCode base = colour == kWhite ? kBlack : kWhite;
    return code == base + (d < 4 ? kRook : kBishop) || code == base + kQueen;
}

// Answers whether a piece of the other colour could move to square by the geometry of
// PieceMovesOn, looking outwards from the square instead of at every piece: the rays for the
// sliders, the jumps, the neighbours, and the pawn moves (a pawn "attacks" an occupied square
// diagonally and an empty one straight ahead, double step included). An enemy king standing on
// the square itself counts, as a king "moves" to its own square. Square -1 means the king of
// colour.
int IsAttackedOn(const PieceCode* board, Colour colour, int square) {
    if (square == -1) square = KingSquare(board, colour);
    if (square < 0 || square > 63) return 0;
    const PieceCode base = colour == kWhite ? kBlack : kWhite;
    const PieceCode pawn = base + kPawn, knight = base + kKnight, king = base + kKing;

    if (board[square] == king) return 1;
    for (const Square* s = kAttacks.knight[square]; *s != kNoSquare; ++s) {
        if (board[*s] == knight) return 1;
    }
    for (const Square* s = kAttacks.king[square]; *s != kNoSquare; ++s) {
        if (board[*s] == king) return 1;
    }
    for (int d = 0; d < 8; ++d) {
        if (SlidesAlong(FirstOnRay(board, square, d), d, colour)) return 1;
    }
    // An enemy white pawn stands below the square, a black one above.
    const int file = FileOf(square), rank = RankOf(square);
    const int behind = base == kWhite ? -1 : 1;
    const int pawnRank = rank + behind;
    if (pawnRank < 0 || pawnRank > 7) return 0;
    const PieceCode* row = board + 8 * pawnRank;
    if (board[square] != 0) {
        return (file > 0 && row[file - 1] == pawn) || (file < 7 && row[file + 1] == pawn);
    }
    if (row[file] == pawn) return 1;
    const int doubleFrom = base == kWhite ? 1 : 6;
    return rank + 2 * behind == doubleFrom && board[file + 8 * doubleFrom] == pawn;
}

// After from -> to (the mover's piece, not its king), tells whether an enemy rook, bishop or
// queen now reaches the mover's king along the line from the king through from.
bool OpensLineToKing(const PieceCode* board, Square from, Square to, Colour mover) {
    const int king = KingSquare(board, mover);
    const int d = king < 0 ? -1 : RayIndex(king, from);
    if (d < 0) return false;
    for (const Square* r = kAttacks.ray[king][d]; *r != kNoSquare; ++r) {
        constexpr PieceCode kMovedPiece = 0xFF;  // stands on to: blocks, attacks nothing here
        PieceCode code = *r == from ? PieceCode{0} : *r == to ? kMovedPiece : board[*r];
        if (code != 0) return SlidesAlong(code, d, mover);
    }
    return false;
}

// Decides castling for a king on its home square moving two files. Returns -1 when the move
// is not a castling whose flag and empty squares allow it (ordinary geometry then decides),
// else 1 or 0. Only the flag and the empty squares are looked at, never the rook itself.
int CastlingVerdict(const Position& p, PieceCode code, Square from, Square to) {
    const PieceCode* b = p.board;
    if (code == kWhiteKing && from == kE1) {
        if (to == kG1 && !b[kF1] && !b[kG1] && p.castleWhiteKing) {
            return !IsAttackedOn(b, kWhite, -1) && !IsAttackedOn(b, kWhite, kF1);
        }
        if (to == kC1 && !b[1] && !b[kC1] && !b[kD1] && p.castleWhiteQueen) {
            return !IsAttackedOn(b, kWhite, -1) && !IsAttackedOn(b, kWhite, kD1);
        }
    } else if (code == kBlackKing && from == kE8) {
        if (to == kG8 && !b[kF8] && !b[kG8] && p.castleBlackKing) {
            return !IsAttackedOn(b, kBlack, -1) && !IsAttackedOn(b, kBlack, kF8);
        }
        if (to == kC8 && !b[57] && !b[kC8] && !b[kD8] && p.castleBlackQueen) {
            return !IsAttackedOn(b, kBlack, -1) && !IsAttackedOn(b, kBlack, kD8);
        }
    }
    return -1;
}

}  // namespace

int PieceMoves(const Position& position, Square from, Square to) {
    if (from > 63 || to > 63) return 0;
    return PieceMovesOn(position.board, from, to);
}

int RayClear(const Position& position, Square from, Square to, int step) {
    return RayClearOn(position.board, from, to, step);
}

int IsAttacked(const Position& position, Colour colour, int square) {
    return IsAttackedOn(position.board, colour, square);
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

namespace {

// The second half of the legality test, for a move whose geometry passed: whether the mover's
// king is not attacked once the move is made.
bool KingStaysSafe(const Position& position, Square from, Square to) {
    const PieceCode* board = position.board;
    const PieceCode code = board[from];
    const Colour mover = ColourOf(code);
    if (code != 0 && TypeOf(code) != kKing && to != position.enPassant &&
        mover == position.sideToMove && position.ArrivalNode() != nullptr &&
        !position.ArrivalNode()->givesCheck) {
        // The king was not attacked before (the move that led here says so) and stays where
        // it is: a move that neither takes en passant nor castles can only uncover a line
        // through from, which is all that needs looking at. A "move" of an empty square is
        // left to the full test: it leaves to empty, so it may uncover a line through to as
        // well.
        return !OpensLineToKing(board, from, to, mover);
    }
    PieceCode scratch[64];
    std::memcpy(scratch, board, sizeof scratch);
    ApplyMoveToBoard(scratch, from, to, position.enPassant);
    return !IsAttackedOn(scratch, mover, -1);
}

}  // namespace

// Runs the full legality test and records it as the position's tested pair. King safety is
// checked on a scratch board on the stack, so the test allocates nothing.
int TestMove(Position& position, Square from, Square to, int* needsPromotion) {
    position.testedFrom = from;
    position.testedTo = to;
    if (from > 63 || to > 63) {
        if (needsPromotion) *needsPromotion = 0;
        position.testedResult = 0;
        return 0;
    }
    const PieceCode* board = position.board;
    PieceCode code = board[from];
    Colour mover = ColourOf(code);
    PieceCode scratch[64];

    int result;
    if (board[to] != 0 && ColourOf(board[to]) == mover) {
        result = 0;
    } else if (to == position.enPassant && TypeOf(code) == kPawn) {
        // Judge the capture as if an enemy pawn stood on the en-passant square.
        std::memcpy(scratch, board, sizeof scratch);
        scratch[to] = mover == kWhite ? kBlackPawn : kWhitePawn;
        result = PieceMovesOn(scratch, from, to);
    } else {
        result = CastlingVerdict(position, code, from, to);
        if (result < 0) result = PieceMovesOn(board, from, to);
    }

    if (result && !KingStaysSafe(position, from, to)) result = 0;

    if (needsPromotion) {
        *needsPromotion =
            (code == kWhitePawn && RankOf(to) == 7) || (code == kBlackPawn && RankOf(to) == 0);
    }
    position.testedResult = static_cast<std::uint32_t>(result);
    return result;
}

int CandidateOrigins(Position& position, PieceCode code, Square from, Square to, Square* squares) {
    if (code == 0) code = position.GetSquare(from);
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
            if (position.board[*s] == code) near[nearCount++] = *s;
        }
    } else if (type == kRook || type == kBishop || type == kQueen) {
        for (int d = type == kBishop ? 4 : 0; d < (type == kRook ? 4 : 8); ++d) {
            const Square* ray = kAttacks.ray[to][d];
            for (int i = 0; i < 8 && ray[i] != kNoSquare; ++i) {
                if (position.board[ray[i]] == 0) continue;
                if (position.board[ray[i]] == code) near[nearCount++] = ray[i];
                break;
            }
        }
    } else {
        for (int s = 0; s < 64; ++s) {
            if (s == from || position.board[s] != code) continue;
            if (TestMove(position, static_cast<Square>(s), to, nullptr)) {
                squares[count++] = static_cast<Square>(s);
            }
        }
        return count;
    }
    for (int k = 1; k < nearCount; ++k) {  // at most eight: sorted in place
        for (int j = k; j > 0 && near[j] < near[j - 1]; --j)
            std::swap(near[j], near[j - 1]);
    }
    // Their geometry holds by the way they were found; what TestMove would add is the rest:
    // not onto a piece of their own colour, and the king safe afterwards. The verdict is
    // recorded as the tested pair, as TestMove records it.
    const bool ownPieceOnTo =
        position.board[to] != 0 && ColourOf(position.board[to]) == ColourOf(code);
    for (int k = 0; k < nearCount; ++k) {
        Square s = near[k];
        if (s == from) continue;
        int result = !ownPieceOnTo && KingStaysSafe(position, s, to);
        position.testedFrom = s;
        position.testedTo = to;
        position.testedResult = static_cast<std::uint32_t>(result);
        if (result) squares[count++] = s;
    }
    return count;
}

// Clears the castle flags that the square a piece left gives up. A rook taken on its home
// square leaves the flag set (kept that way).
void ClearCastleFlags(Position& p, Square left) {
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

void SetPromotionChooser(PromotionChooser chooser) {
    promotionChooser = chooser;
}

PromotionChooser GetPromotionChooser() {
    return promotionChooser;
}

namespace {

// Whether the king of the side to move in after is attacked. When before was reached by a move
// of that side (which left its king unattacked, or it would not have been played) and this move
// is by the other side, neither castling nor taking en passant, only the piece moved and the
// line through the square it left can attack the king now.
int ChecksAfter(const Position& before, const Position& after, const MoveNode& node) {
    const Colour defender = after.sideToMove;
    const MoveNode* arrival = before.ArrivalNode();
    // A "move" of an empty square leaves nothing on node.to that could give check, and the
    // piece-moves test below would answer yes for the empty square: it takes the full test.
    if (arrival == nullptr || node.castlingKind != 0 || node.enPassantSquare != 0 ||
        before.board[node.from] == 0 || ColourOf(before.board[node.from]) != before.sideToMove ||
        ColourOf(before.board[arrival->to]) != defender) {
        return IsAttackedOn(after.board, defender, -1);
    }
    const int king = KingSquare(after.board, defender);
    if (king < 0) return 0;
    if (PieceMovesOn(after.board, node.to, static_cast<Square>(king))) return 1;
    const int d = RayIndex(king, node.from);
    return d >= 0 && SlidesAlong(FirstOnRay(after.board, king, d), d, defender);
}

}  // namespace

// Plays from -> to: re-tests only a pair that differs from the cached one, builds the new
// position, hangs its node into the tree, settles promotion and the check flag.
Position* Position::PlayMove(int from, int to, MoveNode* replace, int promotionType,
                             void* promotionContext) {
    if (from < 0 || to < 0 || from > 63 || to > 63) return nullptr;
    if (from != testedFrom || to != testedTo) {
        TestMove(*this, static_cast<Square>(from), static_cast<Square>(to), nullptr);
    }
    if (testedResult == 0) return nullptr;

    Position* next = new Position(*this, static_cast<Square>(from), static_cast<Square>(to));
    MoveNode* node = next->arrivalNode_;
    ClearCastleFlags(*next, static_cast<Square>(from));

    if (firstContinuation_ == nullptr) {
        firstContinuation_ = node;
        node->level = static_cast<std::uint8_t>(ArrivalLevel());
    } else if (replace != nullptr) {
        node->level = replace->level;
        if (node->ReplaceNode(replace)) firstContinuation_ = node;
        delete replace;
    } else {
        firstContinuation_->AppendAlternative(node, firstContinuation_->level);
    }

    PieceCode mover = board[from];
    if ((mover == kWhitePawn && RankOf(to) == 7) || (mover == kBlackPawn && RankOf(to) == 0)) {
        int type = promotionType;
        if (type == 0 && promotionChooser != nullptr) type = promotionChooser(promotionContext);
        if (type == 0) type = kQueen;
        node->promotion = static_cast<std::uint8_t>(type);
        next->board[to] = static_cast<PieceCode>(type + (mover == kBlackPawn ? kBlack : 0));
    }

    node->givesCheck = static_cast<std::uint32_t>(ChecksAfter(*this, *next, *node));
    return next;
}

}  // namespace velmora
