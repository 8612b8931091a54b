// SAN: moves in short algebraic notation, read in two steps (text, then position) and written.
#pragma once

#include <cstdint>

#include "core/ChessTypes.h"
#include "core/PositionValue.h"

namespace velmora {

enum class SanKind : std::uint8_t { CastleShort, CastleLong, Pawn, Piece };

// What the text of a move says, before any position is looked at. Only the leading characters
// that name the move are read; check marks and glyphs after them are ignored.
struct SanMove {
    SanKind kind = SanKind::Piece;
    // Piece: the type moving (a letter other than B, N, Q or R reads as the king).
    std::uint8_t pieceType = kKing;
    // Pawn: the file it captures from, -1 for a push. Piece: the file hint, -1 for none.
    std::int8_t fromFile = -1;
    // Piece: the rank hint, -1 for none.
    std::int8_t fromRank = -1;
    Square to = kNoSquare;
    // Pawn: the type of the upper-case letter B, N, R or Q at the promotion place (after an
    // optional "="), 0 when something else stands there. Looked at only on the last rank.
    std::uint8_t promotion = 0;
};

// Reads the text of a move. Returns false when it names no square to move to.
bool ParseSan(const char16_t* text, SanMove* move);
bool ParseSan(const char* text, SanMove* move);

enum class SanStatus : std::uint8_t {
    Ok,
    Unreadable,  // no target square, or a pawn reaching the last rank without a promotion
    NoSuchMove,  // no piece of that kind can legally go there (or not the hinted one)
    Ambiguous,   // several pieces could: the move holds the first in square order
};

// How far ResolveSan checks a move. Tested: every move passes the legality test. Trusted:
// castling, pawn moves and piece moves with both hints are taken as written (game search
// replays files this way); other piece moves still come from the legal candidates.
enum class SanLegality : std::uint8_t { Tested, Trusted };

struct SanResolution {
    Move move;
    SanStatus status = SanStatus::Unreadable;
    // Ambiguous text still names a move: the first candidate in square order, kept that way.
    bool Found() const { return status == SanStatus::Ok || status == SanStatus::Ambiguous; }
};

// Finds the move the text means on position. A pawn push to the fourth rank (fifth for Black)
// comes from the third (sixth) when anything stands there. Piece moves take the legal
// candidates in square order: exactly one is taken whatever the hints say; among several the
// first that agrees with the hints.
SanResolution ResolveSan(const PositionValue& position, const SanMove& san,
                         SanLegality legality = SanLegality::Tested);
// Parses and resolves in one call.
SanResolution ReadSanMove(const PositionValue& position, const char16_t* text,
                          SanLegality legality = SanLegality::Tested);
SanResolution ReadSanMove(const PositionValue& position, const char* text,
                          SanLegality legality = SanLegality::Tested);

// Room a SAN buffer needs for any move, number prefix and " $255" included.
constexpr int kSanBufferSize = 32;

struct SanStyle {
    // Prefix the move with its number: "12. " for White, "12... " for Black.
    bool withNumber = false;
    // Write the glyph as " $n" instead of a symbol.
    bool nagAsDollar = false;
};

// Writes move, played from before, as SAN into buffer (kSanBufferSize characters) and returns
// the length. The piece is the one on the from square of before; a checking move ends in "+",
// a mating one too. A "move" of an empty square writes just its target square. The glyph nag
// follows: 1..6 as "!", "?", "!!", "??", "!?", "?!", or any nonzero one as " $n" when asked.
int WriteSan(const PositionValue& before, Move move, std::uint8_t nag, SanStyle style,
             char16_t* buffer);
// Writes the move as from square, to square and a lower-case promotion letter ("e7e8q") and
// returns the length.
int WriteCoordinates(Move move, char16_t* buffer);

}  // namespace velmora
