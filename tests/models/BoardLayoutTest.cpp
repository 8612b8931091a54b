// The game window layout: invariants over every layout, orientation and clock mode.
#include "models/BoardLayout.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace velmora {
namespace {

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
    SCOPED_TRACE(testing::Message()
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
