// SAN reading: the text of a move parsed on its own, then resolved on a position.
#include <cstddef>

#include "core/MoveRules.h"
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

// Reads the characters of a move token; every index at or past its end reads as 0. No move
// needs more than its first kLookedAt characters, so only those are copied.
template <typename Ch>
class Token {
  public:
    static constexpr std::size_t kLookedAt = 8;

    explicit Token(const Ch* text) {
        for (std::size_t i = 0; i < kLookedAt && text[i] != 0; ++i)
            units_[i] = Unit(text[i]);
    }
    unsigned At(std::size_t i) const { return i < kLookedAt ? units_[i] : 0u; }
    bool StartsWith(const char* prefix) const {
        for (std::size_t i = 0; prefix[i] != 0; ++i) {
            if (At(i) != Unit(prefix[i])) return false;
        }
        return true;
    }
    // The square named by a file letter at i and a rank digit at i + 1, or -1.
    int SquareAt(std::size_t i) const {
        unsigned file = At(i);
        if (!IsFileLetter(file)) return -1;
        unsigned rank = At(i + 1);
        if (!IsRankDigit(rank)) return -1;
        return MakeSquare(static_cast<int>(file - 'a'), static_cast<int>(rank - '1'));
    }

  private:
    unsigned units_[kLookedAt] = {};
};

std::uint8_t PromotionType(unsigned letter) {
    switch (letter) {
        case 'B':
            return kBishop;
        case 'N':
            return kKnight;
        case 'R':
            return kRook;
        case 'Q':
            return kQueen;
        default:
            return 0;
    }
}

// Reads a pawn move: a push, or a capture written "exd5" or "ed5".
template <typename Ch>
bool ParsePawnMove(const Token<Ch>& token, SanMove* move) {
    std::size_t targetAt = 0;
    std::size_t promotionAt = 2;
    move->kind = SanKind::Pawn;
    move->fromFile = -1;
    if (token.At(1) == 'x') {
        targetAt = 2;
        promotionAt = 4;
        move->fromFile = static_cast<std::int8_t>(token.At(0) - 'a');
    } else if (IsFileLetter(token.At(1))) {
        targetAt = 1;
        promotionAt = 3;
        move->fromFile = static_cast<std::int8_t>(token.At(0) - 'a');
    }
    int to = token.SquareAt(targetAt);
    if (to < 0) return false;
    move->to = static_cast<Square>(to);
    unsigned letter = token.At(promotionAt);
    if (letter == '=') letter = token.At(promotionAt + 1);
    move->promotion = PromotionType(letter);
    return true;
}

// Reads a piece move such as "Nf3", "Nbd7", "R1e2" or "Kxe2".
template <typename Ch>
bool ParsePieceMove(const Token<Ch>& token, SanMove* move) {
    move->kind = SanKind::Piece;
    switch (token.At(0)) {
        case 'B':
            move->pieceType = kBishop;
            break;
        case 'N':
            move->pieceType = kKnight;
            break;
        case 'Q':
            move->pieceType = kQueen;
            break;
        case 'R':
            move->pieceType = kRook;
            break;
        default:
            move->pieceType = kKing;
            break;
    }
    int to = -1;
    std::size_t i = 1;
    if (IsFileLetter(token.At(1))) {
        if (IsRankDigit(token.At(2))) {
            to = token.SquareAt(1);
        } else {
            move->fromFile = static_cast<std::int8_t>(token.At(1) - 'a');
            i = 2;
        }
    }
    if (to < 0) {
        if (IsRankDigit(token.At(i)))
            move->fromRank = static_cast<std::int8_t>(token.At(i++) - '1');
        if (token.At(i) == 'x') ++i;
        to = token.SquareAt(i);
        if (to < 0) return false;
    }
    move->to = static_cast<Square>(to);
    return true;
}

template <typename Ch>
bool ParseSanText(const Ch* text, SanMove* move) {
    Token<Ch> token(text);
    *move = SanMove{};
    if (token.StartsWith("O-O-O") || token.StartsWith("0-0-0")) {
        move->kind = SanKind::CastleLong;
        return true;
    }
    if (token.StartsWith("O-O") || token.StartsWith("0-0")) {
        move->kind = SanKind::CastleShort;
        return true;
    }
    if (IsFileLetter(token.At(0))) return ParsePawnMove(token, move);
    return ParsePieceMove(token, move);
}

// The result for a move whose squares are known: tested when asked to be. A from square off
// the board (a pawn "captured" from beyond the edge) is never a move.
SanResolution Checked(const PositionValue& position, Move move, SanLegality legality) {
    SanResolution result;
    result.move = move;
    bool legal = move.from < 64 &&
                 (legality == SanLegality::Trusted || IsLegalMove(position, move.from, move.to));
    result.status = legal ? SanStatus::Ok : SanStatus::NoSuchMove;
    return result;
}

SanResolution ResolvePawn(const PositionValue& position, const SanMove& san, SanLegality legality) {
    const bool white = position.sideToMove == kWhite;
    const int to = san.to;
    const int rank = RankOf(to);
    int from;
    if (san.fromFile >= 0) {
        from = san.fromFile + 8 * (white ? rank - 1 : rank + 1);
    } else if (white) {
        // A push to the fourth rank comes from the third when anything stands there.
        from = rank == 3 ? (position.At(to - 8) ? to - 8 : to - 16) : to - 8;
    } else {
        from = rank == 4 ? (position.At(to + 8) ? to + 8 : to + 16) : to + 8;
    }
    Move move{static_cast<Square>(from < 0 ? kNoSquare : from), san.to, 0};
    if ((white && rank == 7) || (!white && rank == 0)) {
        if (san.promotion == 0) return SanResolution{move, SanStatus::Unreadable};
        move.promotion = san.promotion;
    }
    return Checked(position, move, legality);
}

SanResolution ResolvePiece(const PositionValue& position, const SanMove& san,
                           SanLegality legality) {
    const int fileHint = san.fromFile;
    const int rankHint = san.fromRank;
    if (fileHint >= 0 && rankHint >= 0) {
        return Checked(position, Move{MakeSquare(fileHint, rankHint), san.to, 0}, legality);
    }
    const PieceCode code = static_cast<PieceCode>(position.sideToMove + san.pieceType);
    Square candidates[64];
    const int count = CandidateOrigins(position, code, kNoSquare, san.to, candidates);
    SanResolution result;
    result.status = SanStatus::NoSuchMove;
    for (int k = 0; k < count; ++k) {
        Square s = candidates[k];
        if (count == 1 ||
            ((fileHint < 0 || FileOf(s) == fileHint) && (rankHint < 0 || RankOf(s) == rankHint))) {
            if (result.status == SanStatus::Ok) {
                result.status = SanStatus::Ambiguous;
                break;
            }
            result.move = Move{s, san.to, 0};
            result.status = SanStatus::Ok;
        }
    }
    return result;
}

template <typename Ch>
SanResolution ReadSanText(const PositionValue& position, const Ch* text, SanLegality legality) {
    SanMove san;
    if (!ParseSanText(text, &san)) return SanResolution{};
    return ResolveSan(position, san, legality);
}

}  // namespace

bool ParseSan(const char16_t* text, SanMove* move) {
    return ParseSanText(text, move);
}

bool ParseSan(const char* text, SanMove* move) {
    return ParseSanText(text, move);
}

SanResolution ResolveSan(const PositionValue& position, const SanMove& san, SanLegality legality) {
    const bool white = position.sideToMove == kWhite;
    switch (san.kind) {
        case SanKind::CastleLong:
            return Checked(position, white ? Move{4, 2, 0} : Move{60, 58, 0}, legality);
        case SanKind::CastleShort:
            return Checked(position, white ? Move{4, 6, 0} : Move{60, 62, 0}, legality);
        case SanKind::Pawn:
            return ResolvePawn(position, san, legality);
        case SanKind::Piece:
            break;
    }
    return ResolvePiece(position, san, legality);
}

SanResolution ReadSanMove(const PositionValue& position, const char16_t* text,
                          SanLegality legality) {
    return ReadSanText(position, text, legality);
}

SanResolution ReadSanMove(const PositionValue& position, const char* text, SanLegality legality) {
    return ReadSanText(position, text, legality);
}

}  // namespace velmora
