// BoardGeometry: where the board's squares lie in the window, which square a tap hits, and the
// polygon of the move arrow.
#pragma once

#include <array>

namespace velmora {

// A pixel position in the window, x to the right and y downwards.
struct Point {
    int x = 0;
    int y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

// A pixel rectangle; right and bottom lie just outside it, as in a Win32 RECT.
struct Rect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool IsEmpty() const { return right <= left || bottom <= top; }
    friend bool operator==(const Rect&, const Rect&) = default;
};

// Where the board is drawn: side of a square, the top-left corner of the top-left square,
// and whether black is at the bottom.
struct BoardPlacement {
    int squareSize = 19;
    int left = 0;
    int top = 0;
    bool flipped = false;
};

// One of the 16 directions an arrow can take, as a step in pixels.
struct ArrowVector {
    int a;  // x step
    int c;  // y step (downwards)
};

// The arrow directions by number: 0 is to the right, 4 up, 8 to the left, 12 down, and the
// numbers in between turn counter-clockwise through the knight and diagonal steps.
constexpr std::array<ArrowVector, 16> kArrowDirections = {{
    {1, 0},
    {2, -1},
    {1, -1},
    {1, -2},
    {0, -1},
    {-1, -2},
    {-1, -1},
    {-2, -1},
    {-1, 0},
    {-2, 1},
    {-1, 1},
    {-1, 2},
    {0, 1},
    {1, 2},
    {1, 1},
    {2, 1},
}};

// The top-left corner of the square (file, rank), 0..7 each, a1 = (0, 0).
Point SquareOrigin(const BoardPlacement& placement, int file, int rank);

// The centre of the square (file, rank): its corner plus half a square (rounded down).
Point SquareCentre(const BoardPlacement& placement, int file, int rank);

// The rectangle of the board's frame line, one pixel outside the squares.
Rect BoardFrame(const BoardPlacement& placement);

// Hit-tests a tap: returns 1 with the square's file and rank, or 0 with both set to 0. A tap
// less than one square left of or above the board still lands on the first file or top rank.
int SquareFromPoint(const BoardPlacement& placement, int x, int y, int* file, int* rank);

// The direction number (0..15) of an arrow from one square centre to another.
int ArrowDirection(Point fromCentre, Point toCentre);

// The seven corners of the arrow from one square (0..63) to another, in drawing order: the two
// tail corners, the head's right side, the tip, the head's left side.
std::array<Point, 7> ArrowPolygon(const BoardPlacement& placement, int fromSquare, int toSquare);

// True for a1 and every square whose file and rank have the same parity.
constexpr bool IsDarkSquare(int file, int rank) {
    return ((file ^ rank) & 1) == 0;
}

}  // namespace velmora
