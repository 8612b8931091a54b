// BoardLayout: the game window's rectangles for each layout code, in portrait and landscape.
//
// Portrait: the board sits at the top, 3 pixels from the top edge; the panes go below it.
//   0 "Std board, list & large cmt": board at x = 3, the list to its right as high as the
//     board, the comment below the board across the whole width.
//   4 "Std board, list & cmt": board at x = 3, the list to its right running down to the bottom,
//     the comment below the board and only as wide as the board.
//   2 "Std board, no list": board centred, the comment below it.
//   1 "Lrg board, list & cmt": 25-pixel squares centred, list and comment side by side below.
//   3 "Lrg board, no list": 25-pixel squares centred, the comment below.
// Landscape: the board at (3, 3) with 19-pixel squares, the panes in the column to its right:
// the list above the comment (40 % of the height for the list in layout 0, 60 % in layouts 4
// and 1), or the comment alone.
// The clock, when shown, takes a strip two lines high at the top of the pane area; with large
// clocks it takes the list's rectangle instead, or the upper half of the pane area in the
// layouts without a list. The side-to-move indicator sits at the top of the list column when
// the list is beside the board, beside the lower right corner of a centred board, and below
// the board in landscape.
#include "gamewindow/BoardLayout.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr int kBoardMargin = 3;  // from the client area's edges to the squares
constexpr int kEdge = 2;         // from the client area's edges to the panes
constexpr int kGap = 2;          // between two parts of the window
constexpr int kStandardSquare = 19;
constexpr int kLargeSquare = 25;

enum class ListPlace {
    kNone,
    kBesideBoard,        // right of the board, as high as the board
    kBesideAndBelow,     // right of the board, down to the bottom
    kBelowBesideComment  // below the board, left of the comment
};

struct Style {
    bool largeBoard;
    ListPlace list;
    int landscapeListPercent;
};

Style StyleOf(std::uint32_t code) {
    switch (code) {
        case 4:
            return {false, ListPlace::kBesideAndBelow, 60};
        case 2:
            return {false, ListPlace::kNone, 0};
        case 1:
            return {true, ListPlace::kBelowBesideComment, 60};
        case 3:
            return {true, ListPlace::kNone, 0};
        default:
            return {false, ListPlace::kBesideBoard, 40};
    }
}

// Cuts a strip of the given height off the top of area; area keeps what lies below the strip
// and the gap after it.
Rect TakeTop(Rect& area, int height) {
    const Rect strip{area.left, area.top, area.right, std::min(area.bottom, area.top + height)};
    area.top = std::min(area.bottom, strip.bottom + kGap);
    return strip;
}

// Gives a rectangle that came out inverted on a tiny client area no size at all.
Rect Clamped(Rect rect) {
    if (rect.IsEmpty()) return {};
    return rect;
}

}  // namespace

BoardLayout ComputeBoardLayout(const BoardLayoutInput& input) {
    BoardLayout layout;
    const int width = input.clientWidth;
    const int height = input.clientHeight - input.menuBarHeight;
    const Style style = StyleOf(input.layoutCode);
    const bool hasList = style.list != ListPlace::kNone;
    layout.portrait = input.clientHeight > input.clientWidth;
    const bool largeBoard = layout.portrait && style.largeBoard;
    layout.squareSize = largeBoard ? kLargeSquare : kStandardSquare;
    layout.boardTop = kBoardMargin;
    layout.boardLeft = kBoardMargin;
    if (layout.portrait && (largeBoard || !hasList))
        layout.boardLeft = std::max(kBoardMargin, (width - 8 * layout.squareSize) / 2);
    const Rect frame = layout.Frame();

    Rect list;
    Rect panes;
    if (layout.portrait) {
        panes = {kEdge, frame.bottom + kGap, width - kEdge, height - kEdge};
        if (style.list == ListPlace::kBesideBoard || style.list == ListPlace::kBesideAndBelow) {
            const bool down = style.list == ListPlace::kBesideAndBelow;
            list = {frame.right + kGap, kEdge, width - kEdge, down ? height - kEdge : frame.bottom};
            layout.indicator = {list.left, list.top};
            list.top += kIndicatorSize + kGap;
            if (down) panes.right = frame.right;
        } else if (frame.right + kGap + kIndicatorSize <= width - kEdge) {
            layout.indicator = {frame.right + kGap, frame.bottom - kIndicatorSize};
        } else if (frame.left - kGap - kIndicatorSize >= kEdge) {
            layout.indicator = {frame.left - kGap - kIndicatorSize, frame.bottom - kIndicatorSize};
        } else {
            layout.indicator = {panes.left, panes.top};
            panes.top += kIndicatorSize + kGap;
        }
    } else {
        panes = {frame.right + kGap, kEdge, width - kEdge, height - kEdge};
        if (frame.bottom + kGap + kIndicatorSize <= height - kEdge) {
            layout.indicator = {kEdge, frame.bottom + kGap};
        } else {
            layout.indicator = {panes.left, panes.top};
            panes.top += kIndicatorSize + kGap;
        }
    }

    const bool largeClocks = input.clockShown && input.largeClocks;
    const int clockStrip = 2 * input.textHeight + 6;
    if (input.clockShown && !largeClocks) layout.clock = TakeTop(panes, clockStrip);
    if (largeClocks && !hasList)
        layout.clock = TakeTop(panes, std::max(clockStrip, (panes.Height() - kGap) / 2));

    if (style.list == ListPlace::kBelowBesideComment && layout.portrait) {
        const int middle = panes.left + (panes.Width() - kGap) / 2;
        list = {panes.left, panes.top, middle, panes.bottom};
        layout.comment = {middle + kGap, panes.top, panes.right, panes.bottom};
    } else if (hasList && !layout.portrait) {
        const int listHeight = (panes.Height() - kGap) * style.landscapeListPercent / 100;
        list = TakeTop(panes, listHeight);
        layout.comment = panes;
    } else {
        layout.comment = panes;
    }
    if (largeClocks && hasList) {
        layout.clock = list;
        list = {};
    }
    layout.notation = Clamped(list);
    layout.comment = Clamped(layout.comment);
    layout.clock = Clamped(layout.clock);
    return layout;
}

}  // namespace velmora
