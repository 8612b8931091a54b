// The game window layout: invariants over every layout, orientation and clock mode.
#include "models/BoardLayout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace velmora {
namespace {

constexpr std::uint32_t kCodes[] = {0, 4, 2, 1, 3};

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

std::string Describe(const BoardLayoutInput& in) {
    return std::to_string(in.clientWidth) + "x" + std::to_string(in.clientHeight) + " menu " +
           std::to_string(in.menuBarHeight) + " code " + std::to_string(in.layoutCode) + " text " +
           std::to_string(in.textHeight) + (in.clockShown ? " clock" : "") +
           (in.largeClocks ? " large" : "");
}

// Checks what holds for every layout: the parts lie inside the usable area without
// overlapping, the board is where the rules put it, the clock strip or the list's place goes
// to the clock. With roomy set, each pane also shows at least two lines of text.
void ExpectSound(const BoardLayoutInput& in, bool roomy) {
    SCOPED_TRACE(Describe(in));
    const BoardLayout layout = ComputeBoardLayout(in);
    const Rect client{0, 0, in.clientWidth, in.clientHeight - in.menuBarHeight};
    const bool portrait = in.clientHeight > in.clientWidth;
    const bool large = portrait && (in.layoutCode == 1 || in.layoutCode == 3);
    EXPECT_EQ(layout.portrait, portrait);
    EXPECT_EQ(layout.squareSize, large ? 25 : 19);
    EXPECT_EQ(layout.boardTop, 3);
    const int centred = (in.clientWidth - 8 * layout.squareSize) / 2;
    EXPECT_EQ(layout.boardLeft, portrait ? std::max(3, centred) : 3);

    const Rect frame = layout.Frame();
    const Rect indicator = layout.IndicatorRect();
    const Rect parts[] = {frame, layout.notation, layout.comment, layout.clock, indicator};
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
        EXPECT_EQ(layout.clock.Height(), 2 * in.textHeight + 6);
    }
    if (roomy) {
        const int twoLines = 2 * in.textHeight + 4;  // two lines and the borders
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

TEST(BoardLayout, EveryLayoutFitsTheHandheldScreens) {
    for (const auto& [width, height] : {std::pair{240, 320}, {320, 240}})
        for (std::uint32_t code : kCodes)
            for (int textHeight : {13, 16})
                for (int mode = 0; mode < 4; ++mode)
                    ExpectSound(Input(width, height, 26, code, mode, textHeight), true);
}

TEST(BoardLayout, OtherClientSizesStillFitWithoutOverlap) {
    const struct {
        int width, height, menu;
    } sizes[] = {{240, 294, 0}, {480, 640, 26}, {640, 480, 26}, {240, 400, 26}, {400, 240, 0}};
    for (const auto& size : sizes)
        for (std::uint32_t code : kCodes)
            for (int mode = 0; mode < 4; ++mode)
                ExpectSound(Input(size.width, size.height, size.menu, code, mode), false);
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
