// Bitboards: a set of squares as one 64-bit word, and the small operations on it.
#pragma once

#include <bit>
#include <cstdint>

namespace velmora::engine {

// Bit n stands for square n (a1 = 0, h8 = 63), as the core numbers squares.
using Bitboard = std::uint64_t;

constexpr Bitboard kFileA = 0x0101010101010101ULL;
constexpr Bitboard kFileH = kFileA << 7;
constexpr Bitboard kRank1 = 0xFFULL;
constexpr Bitboard kRank2 = kRank1 << 8;
constexpr Bitboard kRank4 = kRank1 << 24;
constexpr Bitboard kRank5 = kRank1 << 32;
constexpr Bitboard kRank7 = kRank1 << 48;
constexpr Bitboard kRank8 = kRank1 << 56;

constexpr Bitboard SquareBit(int square) {
    return Bitboard{1} << square;
}
constexpr Bitboard FileBits(int file) {
    return kFileA << file;
}
constexpr Bitboard RankBits(int rank) {
    return kRank1 << (8 * rank);
}
inline int PopCount(Bitboard b) {
    return std::popcount(b);
}
// The lowest square of a non-empty set.
inline int LowestSquare(Bitboard b) {
    return std::countr_zero(b);
}
// Removes the lowest square of a non-empty set and returns it.
inline int PopLowest(Bitboard& b) {
    const int square = std::countr_zero(b);
    b &= b - 1;
    return square;
}
constexpr bool MoreThanOne(Bitboard b) {
    return (b & (b - 1)) != 0;
}

// Shifts every square one step, dropping those that would wrap around an edge.
constexpr Bitboard North(Bitboard b) {
    return b << 8;
}
constexpr Bitboard South(Bitboard b) {
    return b >> 8;
}
constexpr Bitboard East(Bitboard b) {
    return (b & ~kFileH) << 1;
}
constexpr Bitboard West(Bitboard b) {
    return (b & ~kFileA) >> 1;
}

}  // namespace velmora::engine
