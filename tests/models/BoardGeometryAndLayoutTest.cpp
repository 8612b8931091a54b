// Where things go on the game window: squares to pixels and back, taps, the arrow, and the
// layout's invariants over every layout, orientation and clock mode.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "core/ChessTypes.h"
#include "models/BoardGeometry.h"
#include "models/BoardLayout.h"
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
    for (int direction = 0; direction < 16; ++direction) {
        const std::string move = std::string("e4") + around[direction];
        EXPECT_EQ(Direction(kPlain, move), direction) << move;
        EXPECT_EQ(Direction(kFlipped, move), (direction + 8) % 16) << move;  // turned half round
    }
}

bool HasList(std::uint32_t code) {
    return code != 2 && code != 3;
}

bool Inside(const Rect& inner, const Rect& outer) {
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

bool Overlap(const Rect& a, const Rect& b) {
    if (a.IsEmpty() || b.IsEmpty()) return false;
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// What holds for every layout: the parts fit without overlapping, the board lies top centre or
// top left, the clock gets its strip or the list's place.
void ExpectSound(const BoardLayoutInput& in) {
    SCOPED_TRACE(::testing::Message()
                 << in.clientWidth << "x" << in.clientHeight << " menu " << in.menuBarHeight
                 << " code " << in.layoutCode << " text " << in.textHeight
                 << (in.clockShown ? " clock" : "") << (in.largeClocks ? " large" : ""));
    const BoardLayout layout = ComputeBoardLayout(in);
    const Rect client{0, 0, in.clientWidth, in.clientHeight - in.menuBarHeight};
    const bool portrait = in.clientHeight > in.clientWidth;
    const bool large = portrait && (in.layoutCode == 1 || in.layoutCode == 3);
    const Rect frame = layout.Frame();
    EXPECT_EQ(layout.squareSize, large ? 25 : 19);
    if (portrait) {
        EXPECT_LE(std::abs(frame.left - (in.clientWidth - frame.right)), 1);
    } else {
        EXPECT_EQ(layout.boardLeft, 3);
    }

    const Rect parts[] = {frame, layout.notation, layout.comment, layout.clock,
                          layout.IndicatorRect()};
    const char* const names[] = {"frame", "list", "comment", "clock", "indicator"};
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(parts[i].IsEmpty() || Inside(parts[i], client)) << names[i];
        for (int j = i + 1; j < 5; ++j)
            EXPECT_FALSE(Overlap(parts[i], parts[j])) << names[i] << " and " << names[j];
    }
    EXPECT_FALSE(layout.comment.IsEmpty());
    const bool largeClocks = in.clockShown && in.largeClocks;
    EXPECT_EQ(layout.clock.IsEmpty(), !in.clockShown);
    EXPECT_EQ(layout.notation.IsEmpty(), !HasList(in.layoutCode) || largeClocks);
    BoardLayoutInput withoutClock = in;
    withoutClock.clockShown = false;
    const BoardLayout plain = ComputeBoardLayout(withoutClock);
    if (largeClocks && HasList(in.layoutCode)) {
        EXPECT_EQ(layout.clock, plain.notation);  // the clock takes the list's place
        EXPECT_EQ(layout.comment, plain.comment);
    } else if (in.clockShown && !largeClocks) {
        EXPECT_GE(layout.clock.Height(), 2 * in.textHeight + 4);  // two lines and the borders
    }
}

// The handheld's screens in both orientations and other client sizes; an unknown layout code
// (7) lays out as the default. Clock modes: bit 0 shows the clock, bit 1 asks for large clocks.
TEST(BoardLayout, EveryLayoutFitsEveryClientSize) {
    const int sizes[][3] = {{240, 320, 26}, {320, 240, 26}, {240, 294, 0}, {480, 640, 26},
                            {640, 480, 26}, {240, 400, 26}, {400, 240, 0}};
    for (const auto& [width, height, menu] : sizes)
        for (std::uint32_t code : {0u, 4u, 2u, 1u, 3u, 7u})
            for (int textHeight : {13, 16})
                for (int mode = 0; mode < 4; ++mode)
                    ExpectSound({.clientWidth = width,
                                 .clientHeight = height,
                                 .layoutCode = code,
                                 .menuBarHeight = menu,
                                 .textHeight = textHeight,
                                 .largeClocks = (mode & 2) != 0,
                                 .clockShown = (mode & 1) != 0});
}

}  // namespace
}  // namespace velmora
