// BoardGeometry: square and pixel mapping, tap hit-testing and the move arrow's polygon.
#include "models/BoardGeometry.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace velmora {

Point SquareOrigin(const BoardPlacement& placement, int file, int rank) {
    const int column = placement.flipped ? 7 - file : file;
    const int row = placement.flipped ? rank : 7 - rank;
    return {placement.left + placement.squareSize * column,
            placement.top + placement.squareSize * row};
}

Point SquareCentre(const BoardPlacement& placement, int file, int rank) {
    const Point corner = SquareOrigin(placement, file, rank);
    return {corner.x + placement.squareSize / 2, corner.y + placement.squareSize / 2};
}

Rect BoardFrame(const BoardPlacement& placement) {
    const int side = 8 * placement.squareSize;
    return {placement.left - 1, placement.top - 1, placement.left + side + 1,
            placement.top + side + 1};
}

// Divides with truncation toward zero and keeps the low byte, so a point up to one square
// outside the left or top edge still gives file or row 0, and farther ones wrap to large
// values that fail the range test.
int SquareFromPoint(const BoardPlacement& placement, int x, int y, int* file, int* rank) {
    *file = 0;
    *rank = 0;
    if (placement.squareSize <= 0) return 0;
    auto f = static_cast<std::uint8_t>((x - placement.left) / placement.squareSize);
    auto r = static_cast<std::uint8_t>(7 - (y - placement.top) / placement.squareSize);
    if (placement.flipped) {
        f = static_cast<std::uint8_t>(7 - f);
        r = static_cast<std::uint8_t>(7 - r);
    }
    if (f >= 8 || r >= 8) return 0;
    *file = f;
    *rank = r;
    return 1;
}

// Picks the direction from the slope: q = 2|dy| / |dx| (integer) gives 1 for the flat knight
// step, 2 for the diagonal and anything else for the steep knight step, a flat slope with
// q = 0 included.
int ArrowDirection(Point fromCentre, Point toCentre) {
    const int dx = toCentre.x - fromCentre.x;
    const int dy = toCentre.y - fromCentre.y;
    if (dx == 0) return dy < 0 ? 4 : 12;
    if (dy == 0) return dx > 0 ? 0 : 8;
    const int q = 2 * std::abs(dy) / std::abs(dx);
    const int step = q == 1 ? 0 : (q == 2 ? 1 : 2);
    if (dx > 0) return dy < 0 ? 1 + step : 15 - step;
    return dy < 0 ? 7 - step : 9 + step;
}

// Each corner is a square centre plus an offset that is an integer combination of the
// direction vector (a, c) times k, scaled by 1 / |(a, c)| in floating point and truncated
// toward zero.
std::array<Point, 7> ArrowPolygon(const BoardPlacement& placement, int fromSquare, int toSquare) {
    const int k = placement.squareSize / 6;
    const Point from = SquareCentre(placement, fromSquare & 7, (fromSquare >> 3) & 7);
    const Point to = SquareCentre(placement, toSquare & 7, (toSquare >> 3) & 7);
    const ArrowVector v = kArrowDirections[ArrowDirection(from, to)];
    const int a = v.a;
    const int c = v.c;
    const double inverse = 1.0 / std::sqrt(static_cast<double>(a * a + c * c));
    auto scaled = [&](int combination) {
        return static_cast<int>(static_cast<double>(combination * k) * inverse);
    };
    auto at = [&](Point base, int xCombination, int yCombination) {
        return Point{base.x + scaled(xCombination), base.y + scaled(yCombination)};
    };
    return {
        at(from, -a + c, -c - a),                // F - k u + k p
        at(from, -a - c, -c + a),                // F - k u - k p
        at(to, -4 * a - c, -4 * c + a),          // T - 4k u - k p
        at(to, -4 * a - 2 * c, -4 * c + 2 * a),  // T - 4k u - 2k p
        at(to, -2 * a, -2 * c),                  // T - 2k u: the tip
        at(to, -4 * a + 2 * c, -4 * c - 2 * a),  // T - 4k u + 2k p
        at(to, -4 * a + c, -4 * c - a),          // T - 4k u + k p
    };
}

}  // namespace velmora
