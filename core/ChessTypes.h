// Squares, piece codes and colours: the small value types every chess module shares.
#pragma once

#include <cstdint>

namespace velmora {

// A square is 0..63 with a1 = 0, b1 = 1, ..., h8 = 63; 255 means "no square".
using Square = std::uint8_t;
// A piece code: 0 empty, type = code & 31, white pieces are the bare type, black ones 32 + type.
using PieceCode = std::uint8_t;
// Colours are the values 0 (white) and 32 (black); the other side is 32 - colour.
using Colour = std::uint8_t;

constexpr Square kNoSquare = 255;
constexpr Colour kWhite = 0;
constexpr Colour kBlack = 32;

enum PieceType : std::uint8_t {
    kNoPiece = 0,
    kPawn = 1,
    kRook = 2,
    kKnight = 3,
    kBishop = 4,
    kQueen = 5,
    kKing = 6,
};

constexpr int FileOf(int square) {
    return square & 7;
}
constexpr int RankOf(int square) {
    return square >> 3;
}
constexpr Square MakeSquare(int file, int rank) {
    return static_cast<Square>((file + 8 * rank) & 255);
}

// Returns 0 for white and 32 for black; an empty square (code 0) reads as white.
constexpr Colour ColourOf(PieceCode code) {
    return code < 33 ? kWhite : kBlack;
}
constexpr int TypeOf(PieceCode code) {
    return code & 31;
}
constexpr Colour OtherSide(Colour colour) {
    return static_cast<Colour>(32 - colour);
}

// A move by its squares, with the promotion type (2..5, or 0 when the move promotes nothing
// or the piece is still to be chosen).
struct Move {
    Square from = kNoSquare;
    Square to = kNoSquare;
    std::uint8_t promotion = 0;

    friend bool operator==(const Move&, const Move&) = default;
};

// Maps a promotion letter (either case) to rook 2, knight 3, bishop 4 or queen 5; anything
// else, the king and pawn letters included, gives 0.
constexpr int TypeFromLetter(int ch) {
    switch (ch) {
        case 'R':
        case 'r':
            return kRook;
        case 'N':
        case 'n':
            return kKnight;
        case 'B':
        case 'b':
            return kBishop;
        case 'Q':
        case 'q':
            return kQueen;
        default:
            return kNoPiece;
    }
}

// Maps types 2..5 to the lower-case letters r, n, b, q; any other type gives 0.
constexpr char LetterFromType(int type) {
    return (type >= kRook && type <= kQueen) ? "rnbq"[type - kRook] : '\0';
}

}  // namespace velmora
