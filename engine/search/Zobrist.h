// Zobrist keys: the random numbers whose exclusive-or names a position in the hash table.
#pragma once

#include <cstdint>

namespace velmora::engine {

struct ZobristKeys {
    std::uint64_t piece[12][64];
    std::uint64_t castling[16];
    std::uint64_t enPassantFile[8];
    std::uint64_t sideToMove;

    constexpr ZobristKeys() : piece(), castling(), enPassantFile(), sideToMove() {
        // A fixed seed: the same keys in every build, so results repeat from run to run.
        std::uint64_t state = 0x56454C4D4F5241ULL;
        auto next = [&state]() {
            // splitmix64: well spread 64-bit numbers from a counter.
            std::uint64_t z = (state += 0x9E3779B97F4A7C15ULL);
            z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
            z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
            return z ^ (z >> 31);
        };
        for (auto& squares : piece)
            for (auto& key : squares)
                key = next();
        for (auto& key : castling)
            key = next();
        for (auto& key : enPassantFile)
            key = next();
        sideToMove = next();
    }
};
inline constexpr ZobristKeys kZobrist;

}  // namespace velmora::engine
