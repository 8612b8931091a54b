// Board geometry: squares to pixels and back, taps on and around the board, the arrow.
#include "gamewindow/BoardGeometry.h"

#include <gtest/gtest.h>

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
        {kPlain, "a1", {3, 136}},   {kPlain, "h1", {136, 136}},
        {kPlain, "a8", {3, 3}},     {kPlain, "h8", {136, 3}},
        {kFlipped, "a1", {136, 3}}, {kFlipped, "h8", {3, 136}},
        {kPlain, "e2", {79, 117}},  {{25, 20, 3, false}, "b3", {45, 128}},
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
                int file = -1;
                int rank = -1;
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
        int x, y;
        int accepted;
        const char* square;  // when accepted
    } cases[] = {
        // Intended: less than one square left of or above the board still maps to the edge.
        {kPlain, 2, 50, 1, "a6"},  // the frame line left of the board
        {kFlipped, 2, 50, 1, "h3"},
        {kPlain, 3 - 18, 50, 1, "a6"},  // 18 pixels out
        {kPlain, 50, 3 - 18, 1, "c8"},
        {kFlipped, 50, 0, 1, "f1"},
        {kPlain, 3 - 19, 50, 0, ""},  // a whole square out
        {kPlain, 50, 3 - 19, 0, ""},
        {kPlain, edge, 50, 0, ""},
        {kPlain, 50, edge, 0, ""},
        {kFlipped, edge, 50, 0, ""},
        {kPlain, 3 - 300, 50, 0, ""},
        {kPlain, 3 + 300 * 19, 50, 0, ""},  // wraps through a byte, still off the board
        {{0, 3, 3, false}, 10, 10, 0, ""},  // no squares at all
    };
    for (const auto& c : cases) {
        int file = 9;
        int rank = 9;
        EXPECT_EQ(SquareFromPoint(c.placement, c.x, c.y, &file, &rank), c.accepted)
            << c.x << "," << c.y;
        const Square expected = c.accepted ? Sq(c.square) : 0;
        EXPECT_EQ(MakeSquare(file, rank), expected) << c.x << "," << c.y;
    }
}

TEST(BoardGeometry, ArrowDirections) {
    const struct {
        const char* move;
        bool flipped;
        int direction;
    } cases[] = {
        {"e4f4", false, 0},
        {"e4g5", false, 1},
        {"e4f5", false, 2},
        {"e4f6", false, 3},
        {"e4e5", false, 4},
        {"e4d6", false, 5},
        {"e4d5", false, 6},
        {"e4c5", false, 7},
        {"e4d4", false, 8},
        {"e4c3", false, 9},
        {"e4d3", false, 10},
        {"e4d2", false, 11},
        {"e4e3", false, 12},
        {"e4f2", false, 13},
        {"e4f3", false, 14},
        {"e4g3", false, 15},
        {"g1f3", false, 5},
        {"g1h3", false, 3},
        {"e2e4", false, 4},
        {"e2e4", true, 12},
        {"g1f3", true, 13},
        {"a1h8", true, 10},
        {"a1h1", true, 8},
        // A slope flatter than the knight's (2 |dy| < |dx|) falls to the steep direction.
        {"a1d2", false, 3},
        {"h8a7", false, 11},
    };
    for (const auto& c : cases) {
        const BoardPlacement placement = c.flipped ? kFlipped : kPlain;
        const Square from = Sq(c.move);
        const Square to = Sq(c.move + 2);
        EXPECT_EQ(ArrowDirection(SquareCentre(placement, FileOf(from), RankOf(from)),
                                 SquareCentre(placement, FileOf(to), RankOf(to))),
                  c.direction)
            << c.move << (c.flipped ? " flipped" : "");
    }
}

TEST(BoardGeometry, ArrowPolygonCorners) {
    // e2-e4 straight up, k = 3: shaft 6 wide from 3 behind e2's centre (88, 126), head 12 wide
    // at 12 before e4's centre (88, 88), tip 6 before it.
    const std::array<Point, 7> straight = {
        {{85, 129}, {91, 129}, {91, 100}, {94, 100}, {88, 94}, {82, 100}, {85, 100}}};
    EXPECT_EQ(ArrowPolygon(kPlain, Sq("e2"), Sq("e4")), straight);
    // g1-f3 along (-1, -2): offsets are scaled by 1 / sqrt(5) and truncated toward zero
    // (-3 / sqrt(5) = -1.34 gives -1).
    const std::array<Point, 7> knight = {
        {{125, 149}, {130, 146}, {115, 116}, {117, 115}, {109, 112}, {107, 120}, {109, 119}}};
    EXPECT_EQ(ArrowPolygon(kPlain, Sq("g1"), Sq("f3")), knight);
    // Flipped, the same move points down the screen: the tip is 6 above e4's centre (69, 69).
    EXPECT_EQ(ArrowPolygon(kFlipped, Sq("e2"), Sq("e4"))[4], (Point{69, 63}));
}

TEST(BoardGeometry, DarkSquaresStartWithA1) {
    const char* const dark[] = {"a1", "c1", "b2", "h8", "d4", "e5"};
    const char* const light[] = {"b1", "h1", "a8", "e4", "d5"};
    for (const char* name : dark)
        EXPECT_TRUE(IsDarkSquare(FileOf(Sq(name)), RankOf(Sq(name)))) << name;
    for (const char* name : light)
        EXPECT_FALSE(IsDarkSquare(FileOf(Sq(name)), RankOf(Sq(name)))) << name;
}

}  // namespace
}  // namespace velmora
