// SAN reading: castling, pawn moves with their from square inferred, piece moves with hints.
#include <cstddef>

#include "core/MoveRules.h"
#include "core/Position.h"
#include "core/San.h"

namespace velmora {

namespace {

constexpr unsigned Unit(char c) {
    return static_cast<unsigned char>(c);
}
constexpr unsigned Unit(char16_t c) {
    return c;
}

bool IsFileLetter(unsigned c) {
    return c >= 'a' && c <= 'h';
}
bool IsRankDigit(unsigned c) {
    return c >= '1' && c <= '8';
}

// Reads the characters of a move token; every index at or past the end reads as 0.
template <typename Ch>
class Token {
  public:
    explicit Token(const Ch* text) : text_(text) {
        while (text_[length_] != 0)
            ++length_;
    }
    unsigned At(std::size_t i) const { return i < length_ ? Unit(text_[i]) : 0u; }
    bool StartsWith(const char* prefix) const {
        for (std::size_t i = 0; prefix[i] != 0; ++i) {
            if (At(i) != Unit(prefix[i])) return false;
        }
        return true;
    }
    // The square named by a file letter at i and a rank digit at i + 1, or -1.
    int SquareAt(std::size_t i) const {
        if (!IsFileLetter(At(i)) || !IsRankDigit(At(i + 1))) return -1;
        return MakeSquare(At(i) - 'a', At(i + 1) - '1');
    }

  private:
    const Ch* text_;
    std::size_t length_ = 0;
};

struct ParsedMove {
    int from = -1;
    int to = -1;
    int promotion = 0;
};

// Reads a pawn move: a push, or a capture written "exd5" or "ed5". Fails (false) on a target
// that is no square or a missing or unknown promotion letter on the last rank.
template <typename Ch>
bool ReadPawnMove(const Position& position, const Token<Ch>& token, ParsedMove* move) {
    bool white = position.sideToMove == kWhite;
    int fromFile = static_cast<int>(token.At(0) - 'a');
    std::size_t targetAt = 0;
    std::size_t promotionAt = 2;
    bool capture = true;
    if (token.At(1) == 'x') {
        targetAt = 2;
        promotionAt = 4;
    } else if (IsFileLetter(token.At(1))) {
        targetAt = 1;
        promotionAt = 3;
    } else {
        capture = false;
    }
    int to = token.SquareAt(targetAt);
    if (to < 0) return false;
    int rank = RankOf(to);
    int from;
    if (capture) {
        from = fromFile + 8 * (white ? rank - 1 : rank + 1);
    } else if (white) {
        // A push to the fourth rank comes from the third when anything stands there.
        from = rank == 3 ? (position.board[to - 8] ? to - 8 : to - 16) : to - 8;
    } else {
        from = rank == 4 ? (position.board[to + 8] ? to + 8 : to + 16) : to + 8;
    }
    move->from = from;
    move->to = to;
    if ((white && rank == 7) || (!white && rank == 0)) {
        unsigned letter = token.At(promotionAt);
        if (letter == '=') letter = token.At(promotionAt + 1);
        switch (letter) {
            case 'B':
                move->promotion = kBishop;
                break;
            case 'N':
                move->promotion = kKnight;
                break;
            case 'R':
                move->promotion = kRook;
                break;
            case 'Q':
                move->promotion = kQueen;
                break;
            default:
                return false;
        }
    }
    return true;
}

// Reads a piece move such as "Nf3", "Nbd7", "R1e2" or "Kxe2" and finds its from square among
// the pieces that may legally go there. Ambiguous text takes the first candidate in square
// order that agrees with the hint.
template <typename Ch>
bool ReadPieceMove(Position& position, const Token<Ch>& token, ParsedMove* move) {
    int type;
    switch (token.At(0)) {
        case 'B':
            type = kBishop;
            break;
        case 'N':
            type = kKnight;
            break;
        case 'Q':
            type = kQueen;
            break;
        case 'R':
            type = kRook;
            break;
        default:
            type = kKing;
            break;
    }
    PieceCode code = static_cast<PieceCode>(position.sideToMove + type);
    int fileHint = -1;
    int rankHint = -1;
    int to = -1;
    std::size_t i = 1;
    if (IsFileLetter(token.At(1))) {
        if (IsRankDigit(token.At(2))) {
            to = token.SquareAt(1);
        } else {
            fileHint = static_cast<int>(token.At(1) - 'a');
            i = 2;
        }
    }
    if (to < 0) {
        if (IsRankDigit(token.At(i))) rankHint = static_cast<int>(token.At(i++) - '1');
        if (token.At(i) == 'x') ++i;
        to = token.SquareAt(i);
        if (to < 0) return false;
    }
    move->to = to;
    if (fileHint >= 0 && rankHint >= 0) {
        move->from = MakeSquare(fileHint, rankHint);
        return true;
    }
    Square candidates[64];
    int count = CandidateOrigins(position, code, kNoSquare, static_cast<Square>(to), candidates);
    for (int k = 0; k < count; ++k) {
        Square s = candidates[k];
        if (count == 1 ||
            ((fileHint < 0 || FileOf(s) == fileHint) && (rankHint < 0 || RankOf(s) == rankHint))) {
            move->from = s;
            // Every candidate passed the legality test just now: record the chosen one as the
            // tested pair, so that playing it does not test it again.
            position.testedFrom = s;
            position.testedTo = static_cast<Square>(to);
            position.testedResult = 1;
            return true;
        }
    }
    return false;
}

template <typename Ch>
Position* ReadSanText(Position* position, const Ch* text) {
    Token<Ch> token(text);
    bool white = position->sideToMove == kWhite;
    ParsedMove move;
    if (token.StartsWith("O-O-O") || token.StartsWith("0-0-0")) {
        move.from = white ? 4 : 60;
        move.to = white ? 2 : 58;
    } else if (token.StartsWith("O-O") || token.StartsWith("0-0")) {
        move.from = white ? 4 : 60;
        move.to = white ? 6 : 62;
    } else if (IsFileLetter(token.At(0))) {
        if (!ReadPawnMove(*position, token, &move)) return nullptr;
    } else if (!ReadPieceMove(*position, token, &move)) {
        return nullptr;
    }
    if (Position* known = position->FindContinuation(move.from, move.to, move.promotion)) {
        return known;
    }
    return position->PlayMove(move.from, move.to, nullptr, move.promotion, nullptr);
}

}  // namespace

Position* ReadSan(Position* position, const char16_t* text) {
    return ReadSanText(position, text);
}

Position* ReadSan(Position* position, const char* text) {
    return ReadSanText(position, text);
}

}  // namespace velmora
