// BoardLayout: where the game window puts the board, the notation list, the comment pane, the
// clock and the side-to-move indicator for a client size and a layout code.
#pragma once

#include <cstdint>

#include "models/BoardGeometry.h"

namespace velmora {

// Side of the side-to-move indicator image.
constexpr int kIndicatorSize = 14;

// What the layout depends on.
struct BoardLayoutInput {
    int clientWidth = 240;
    int clientHeight = 320;
    // The layout setting: 0 "Std board, list & large cmt", 4 "Std board, list & cmt",
    // 2 "Std board, no list", 1 "Lrg board, list & cmt", 3 "Lrg board, no list". Other
    // values lay out as 0.
    std::uint32_t layoutCode = 0;
    // Height of the menu bar that covers the bottom of the client area (0 when it lies outside
    // the client area).
    int menuBarHeight = 0;
    // Height of a line of text ("Ij" in the window's font).
    int textHeight = 13;
    // The clock takes the notation list's place ("Large clocks"); only while it is shown.
    bool largeClocks = false;
    // The clock is shown (a game against an engine or the chessboard has begun).
    bool clockShown = false;
};

// The result of the layout: every rectangle lies inside the client area above the menu bar,
// and no two of board frame, list, comment pane, clock and indicator overlap.
struct BoardLayout {
    bool portrait = true;
    int squareSize = 19;
    int boardLeft = 0;  // top-left corner of the top-left square; the frame is 1 pixel outside
    int boardTop = 0;
    Rect notation;  // empty when the layout has no list or the large clocks take its place
    Rect comment;
    Rect clock;  // empty when the clock is not shown
    Point indicator;

    BoardPlacement Placement(bool flipped) const {
        return {squareSize, boardLeft, boardTop, flipped};
    }
    Rect Frame() const { return BoardFrame(Placement(false)); }
    Rect IndicatorRect() const {
        return {indicator.x, indicator.y, indicator.x + kIndicatorSize,
                indicator.y + kIndicatorSize};
    }
};

// Lays the game window out.
BoardLayout ComputeBoardLayout(const BoardLayoutInput& input);

}  // namespace velmora
