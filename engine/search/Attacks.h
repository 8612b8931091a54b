// Attack tables: the squares each piece reaches from each square, worked out at compile time.
#pragma once

#include <bit>

#include "engine/search/Bitboard.h"

namespace velmora::engine {

// Ray directions. The first four walk towards higher squares, the last four towards lower
// ones: the nearest blocker on a ray is then its lowest (first four) or highest square.
// Direction d and d + 4 (mod 8) are opposite.
enum Direction : int {
    kNorth,
    kEast,
    kNorthEast,
    kNorthWest,
    kSouth,
    kWest,
    kSouthWest,
    kSouthEast
};

// The tables use plain rays rather than magic multiplication: they fit in about 70 KB, which
// matters on a handheld, and a slider's attacks cost four bit scans.
struct AttackTables {
    Bitboard ray[8][64];
    Bitboard knight[64];
    Bitboard king[64];
    Bitboard pawn[2][64];      // squares a pawn of that side (0 white, 1 black) captures on
    Bitboard between[64][64];  // squares strictly between two squares on a line, else empty
    Bitboard line[64][64];     // the whole line through two squares (edge to edge), else empty

    constexpr AttackTables() : ray(), knight(), king(), pawn(), between(), line() {
        constexpr int kSteps[8][2] = {{0, 1},  {1, 0},  {1, 1},   {-1, 1},
                                      {0, -1}, {-1, 0}, {-1, -1}, {1, -1}};
        constexpr int kJumps[8][2] = {{1, 2},   {2, 1},   {2, -1}, {1, -2},
                                      {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
        auto on = [](int f, int r) { return f >= 0 && f < 8 && r >= 0 && r < 8; };
        for (int s = 0; s < 64; ++s) {
            const int f = s & 7, r = s >> 3;
            for (int i = 0; i < 8; ++i) {
                if (on(f + kJumps[i][0], r + kJumps[i][1]))
                    knight[s] |= Bitboard{1} << (s + kJumps[i][0] + 8 * kJumps[i][1]);
                if (on(f + kSteps[i][0], r + kSteps[i][1]))
                    king[s] |= Bitboard{1} << (s + kSteps[i][0] + 8 * kSteps[i][1]);
                for (int g = f + kSteps[i][0], h = r + kSteps[i][1]; on(g, h);
                     g += kSteps[i][0], h += kSteps[i][1]) {
                    ray[i][s] |= Bitboard{1} << (g + 8 * h);
                }
            }
            for (int side = 0; side < 2; ++side) {
                const int forward = side == 0 ? 1 : -1;
                for (int df = -1; df <= 1; df += 2) {
                    if (on(f + df, r + forward))
                        pawn[side][s] |= Bitboard{1} << (s + df + 8 * forward);
                }
            }
        }
        for (int a = 0; a < 64; ++a) {
            for (int d = 0; d < 8; ++d) {
                for (Bitboard walk = ray[d][a]; walk != 0; walk &= walk - 1) {
                    const int b = std::countr_zero(walk);
                    const int opposite = (d + 4) & 7;
                    between[a][b] = ray[d][a] & ray[opposite][b];
                    line[a][b] = ray[d][a] | ray[opposite][a] | (Bitboard{1} << a);
                }
            }
        }
    }
};
inline constexpr AttackTables kTables;

// The squares a slider reaches along one ray: up to and including the first piece met.
inline Bitboard RayAttacks(int direction, int square, Bitboard occupied) {
    Bitboard attacks = kTables.ray[direction][square];
    const Bitboard blockers = attacks & occupied;
    if (blockers != 0) {
        const int first =
            direction < 4 ? std::countr_zero(blockers) : 63 - std::countl_zero(blockers);
        attacks ^= kTables.ray[direction][first];
    }
    return attacks;
}
inline Bitboard RookAttacks(int square, Bitboard occupied) {
    return RayAttacks(kNorth, square, occupied) | RayAttacks(kEast, square, occupied) |
           RayAttacks(kSouth, square, occupied) | RayAttacks(kWest, square, occupied);
}
inline Bitboard BishopAttacks(int square, Bitboard occupied) {
    return RayAttacks(kNorthEast, square, occupied) | RayAttacks(kNorthWest, square, occupied) |
           RayAttacks(kSouthEast, square, occupied) | RayAttacks(kSouthWest, square, occupied);
}
inline Bitboard QueenAttacks(int square, Bitboard occupied) {
    return RookAttacks(square, occupied) | BishopAttacks(square, occupied);
}

}  // namespace velmora::engine
