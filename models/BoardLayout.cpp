// BoardLayout: the game window's rectangles for each layout code, in portrait and landscape.
//
// Portrait: the board is centred at the top, 3 pixels from the top edge, with 19-pixel squares,
// or 25-pixel squares in layouts 1 and 3; the panes are stacked below it across the width.
// Landscape: the board at (3, 3) with 19-pixel squares, the panes in the column to its right.
// The panes, top to bottom: the clock (a strip two lines high, when shown), the notation list
// and the comment. The list takes 45 % of the room in layout 0 "Std board, list & large cmt"
// and 60 % in layouts 4 "Std board, list & cmt" and 1 "Lrg board, list & cmt", except below the
// large board, where the list and the comment share the low room side by side; layouts 2 and 3
// have no list and give the comment all of it. With large clocks the clock takes the list's
// rectangle, or the upper half of the room in the layouts without a list. The side-to-move
// indicator sits beside the lower right corner of the board in portrait (left of the lower left
// corner when the right has no room) and below the board in landscape.
#include "models/BoardLayout.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr int kBoardMargin = 3;  // from the client area's edges to the squares
constexpr int kEdge = 2;         // from the client area's edges to the panes
constexpr int kGap = 2;          // between two parts of the window
constexpr int kStandardSquare = 19;
constexpr int kLargeSquare = 25;

struct Style {
    bool largeBoard;
    int listPercent;  // share of the pane area the list takes; 0 for no list
};

Style StyleOf(std::uint32_t code) {
    switch (code) {
        case 4:
            return {false, 60};
        case 2:
            return {false, 0};
        case 1:
            return {true, 60};
        case 3:
            return {true, 0};
        default:
            return {false, 45};
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
    const bool hasList = style.listPercent > 0;
    layout.portrait = input.clientHeight > input.clientWidth;
    const bool largeBoard = layout.portrait && style.largeBoard;
    layout.squareSize = largeBoard ? kLargeSquare : kStandardSquare;
    layout.boardTop = kBoardMargin;
    layout.boardLeft = kBoardMargin;
    if (layout.portrait)
        layout.boardLeft = std::max(kBoardMargin, (width - 8 * layout.squareSize) / 2);
    const Rect frame = layout.Frame();

    Rect panes;
    if (layout.portrait) {
        panes = {kEdge, frame.bottom + kGap, width - kEdge, height - kEdge};
        if (frame.right + kGap + kIndicatorSize <= width - kEdge) {
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

    Rect list;
    layout.comment = panes;
    if (hasList && largeBoard) {
        // Below the large board the room is low but wide: list and comment side by side.
        const int middle = panes.left + (panes.Width() - kGap) / 2;
        list = {panes.left, panes.top, middle, panes.bottom};
        layout.comment.left = middle + kGap;
    } else if (hasList) {
        list = TakeTop(panes, (panes.Height() - kGap) * style.listPercent / 100);
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
