// Board geometry: squares to pixels and back, taps on and around the board, the arrow.
#include "models/BoardGeometry.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "core/ChessTypes.h"
#include "tests/core/TestBoards.h"

namespace velmora {
namespace {

using testing::Sq;

constexpr BoardPlacement kPlain{19, 3, 3, false};
constexpr BoardPlacement kFlipped{19, 3, 3, true};

TEST(BoardGeometry, CornersOfTheBoardInBothOrientations) {
    const struct {
        BoardPlacement placement;
        const char* square;
        Point origin;
    } cases[] = {
        {kPlain, "h1", {136, 136}},
        {kFlipped, "a1", {136, 3}},
        {{25, 20, 3, false}, "b3", {45, 128}},
    };
    for (const auto& c : cases) {
        const Square square = Sq(c.square);
        EXPECT_EQ(SquareOrigin(c.placement, FileOf(square), RankOf(square)), c.origin)
            << c.square << (c.placement.flipped ? " flipped" : "");
    }
    EXPECT_EQ(SquareCentre(kPlain, 4, 1), (Point{88, 126}));
    EXPECT_EQ(BoardFrame(kPlain), (Rect{2, 2, 156, 156}));
}

TEST(BoardGeometry, EveryPixelOfASquareMapsBackToIt) {
    for (const BoardPlacement& placement : {kPlain, kFlipped, BoardPlacement{25, 20, 3, true}}) {
        const int last = placement.squareSize - 1;
        for (int square = 0; square < 64; ++square) {
            const Point corner = SquareOrigin(placement, FileOf(square), RankOf(square));
            for (const auto& [dx, dy] : {std::pair{0, 0}, {last, 0}, {0, last}, {last, last}}) {
                int file = -1, rank = -1;
                ASSERT_EQ(SquareFromPoint(placement, corner.x + dx, corner.y + dy, &file, &rank),
                          1);
                EXPECT_EQ(MakeSquare(file, rank), square) << dx << "," << dy;
            }
        }
    }
}

TEST(BoardGeometry, TapsAroundTheBoard) {
    const int edge = 3 + 8 * 19;  // first pixel right of and below the squares
    const struct {
        BoardPlacement placement;
        int x, y, accepted;
        const char* square;  // when accepted
    } cases[] = {
        // Intended: less than one square left of or above the board still maps to the edge.
        {kPlain, 2, 50, 1, "a6"},       // the frame line left of the board
        {kPlain, 50, 3 - 18, 1, "c8"},  // 18 pixels out
        {kFlipped, 50, 0, 1, "f1"},    {kPlain, 3 - 19, 50, 0, ""},  // a whole square out
        {kPlain, 50, edge, 0, ""},
    };
    for (const auto& c : cases) {
        int file = 9, rank = 9;
        EXPECT_EQ(SquareFromPoint(c.placement, c.x, c.y, &file, &rank), c.accepted)
            << c.x << "," << c.y;
        EXPECT_EQ(MakeSquare(file, rank), c.accepted ? Sq(c.square) : 0) << c.x << "," << c.y;
    }
}

int Direction(const BoardPlacement& placement, const std::string& move) {
    const Square from = Sq(move.c_str());
    const Square to = Sq(move.c_str() + 2);
    return ArrowDirection(SquareCentre(placement, FileOf(from), RankOf(from)),
                          SquareCentre(placement, FileOf(to), RankOf(to)));
}

TEST(BoardGeometry, ArrowDirections) {
    // Counter-clockwise from east: the eight neighbours of e4 and the knight moves between them.
    const char* const around[] = {"f4", "g5", "f5", "f6", "e5", "d6", "d5", "c5",
                                  "d4", "c3", "d3", "d2", "e3", "f2", "f3", "g3"};
    for (int direction = 0; direction < 16; ++direction)
        EXPECT_EQ(Direction(kPlain, std::string("e4") + around[direction]), direction)
            << around[direction];
    // Each case: move, flipped, direction. A flipped board turns every arrow half round; a slope
    // flatter than the knight's (2 |dy| < |dx|) falls to the steep direction.
    for (const auto& c : testing::Cases("e2e4 1 12, g1f3 1 13, a1h8 1 10, a1h1 1 8, a1d2 0 3, "
                                        "h8a7 0 11")) {
        EXPECT_EQ(Direction(c[1] == "1" ? kFlipped : kPlain, c[0]), std::stoi(c[2])) << c[0];
    }
}

}  // namespace
}  // namespace velmora
