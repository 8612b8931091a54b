// Where things go on the game window: squares to pixels and back, taps on and around the
// board, the arrow, and the layout's invariants over every layout, orientation and clock mode.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

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

// Checks what holds for every layout: the parts lie inside the usable area without
// overlapping, the board is centred at the top in portrait and at the top left in landscape,
// the clock strip or the list's place goes to the clock. With roomy set, each pane also shows
// at least two lines of text.
void ExpectSound(const BoardLayoutInput& in, bool roomy) {
    SCOPED_TRACE(::testing::Message()
                 << in.clientWidth << "x" << in.clientHeight << " menu " << in.menuBarHeight
                 << " code " << in.layoutCode << " text " << in.textHeight
                 << (in.clockShown ? " clock" : "") << (in.largeClocks ? " large" : ""));
    const BoardLayout layout = ComputeBoardLayout(in);
    const Rect client{0, 0, in.clientWidth, in.clientHeight - in.menuBarHeight};
    const bool portrait = in.clientHeight > in.clientWidth;
    const bool large = portrait && (in.layoutCode == 1 || in.layoutCode == 3);
    const Rect frame = layout.Frame();
    EXPECT_EQ(layout.portrait, portrait);
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
    // The panes go below the board in portrait, right of it in landscape.
    const bool largeClocks = in.clockShown && in.largeClocks;
    std::vector<Rect> panes = {layout.comment, layout.notation};
    if (in.clockShown && !(largeClocks && HasList(in.layoutCode))) panes.push_back(layout.clock);
    for (const Rect& pane : panes) {
        if (pane.IsEmpty()) continue;
        EXPECT_GE(portrait ? pane.top : pane.left, portrait ? frame.bottom : frame.right);
    }

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
    if (roomy) {
        const int twoLines = 2 * in.textHeight + 4;
        EXPECT_GE(layout.comment.Height(), twoLines);
        EXPECT_GE(layout.comment.Width(), 60);
        if (!layout.notation.IsEmpty()) {
            EXPECT_GE(layout.notation.Height(), twoLines);
            EXPECT_GE(layout.notation.Width(), 60);
        }
        // The board bitmap is 240 x 240 pixels: the frame must fit in it.
        EXPECT_TRUE(Inside(frame, Rect{0, 0, 240, 240}));
    }
}

// Clock modes: bit 0 shows the clock, bit 1 asks for large clocks.
BoardLayoutInput Input(int width, int height, int menu, std::uint32_t code, int mode,
                       int textHeight = 13) {
    BoardLayoutInput in;
    in.clientWidth = width;
    in.clientHeight = height;
    in.menuBarHeight = menu;
    in.layoutCode = code;
    in.textHeight = textHeight;
    in.clockShown = (mode & 1) != 0;
    in.largeClocks = (mode & 2) != 0;
    return in;
}

// The handheld's screens in both orientations are roomy; other client sizes must still fit.
TEST(BoardLayout, EveryLayoutFitsEveryClientSize) {
    const struct {
        int width, height, menu;
        bool roomy;
    } sizes[] = {{240, 320, 26, true},  {320, 240, 26, true},  {240, 294, 0, false},
                 {480, 640, 26, false}, {640, 480, 26, false}, {240, 400, 26, false},
                 {400, 240, 0, false}};
    for (const auto& size : sizes)
        for (std::uint32_t code : {0u, 4u, 2u, 1u, 3u})
            for (int textHeight : {13, 16})
                for (int mode = 0; mode < 4; ++mode)
                    ExpectSound(Input(size.width, size.height, size.menu, code, mode, textHeight),
                                size.roomy);
}

TEST(BoardLayout, UnknownLayoutCodesLayOutAsTheDefault) {
    for (std::uint32_t code : {5u, 7u, 0xFFFFFFFFu}) {
        const BoardLayout layout = ComputeBoardLayout(Input(240, 320, 26, code, 1));
        const BoardLayout standard = ComputeBoardLayout(Input(240, 320, 26, 0, 1));
        EXPECT_EQ(layout.notation, standard.notation);
        EXPECT_EQ(layout.comment, standard.comment);
        EXPECT_EQ(layout.clock, standard.clock);
    }
}

}  // namespace
}  // namespace velmora
