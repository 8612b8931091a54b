// NotationRows: the rows of the notation list (one a move, variations indented after the move
// they replace and closed by parentheses), independent of the list box that shows them.
#pragma once

#include <string>
#include <vector>

namespace velmora {

class Game;
class MoveNode;

// One row of the list: its text and the move it shows (null for row 0, the start position).
struct NotationRow {
    std::u16string text;
    MoveNode* node = nullptr;
};

// The text of row 0, which stands for the start position.
inline constexpr const char16_t* kStartRowText = u"   ";

// The text of a move's row: two blanks a variation level, "(" for an alternative, the move with
// its number and glyph symbol, " [...]" when indicateComment is set and the position after the
// move has a comment, then a ")" for each variation that ends at this row, judged from the
// node of the row below it (null when there is none).
std::u16string FormatRow(MoveNode* node, MoveNode* nodeOfRowBelow, bool indicateComment);

// All rows of the game: row 0, then the main line with each move's variations after it and
// before its continuation.
std::vector<NotationRow> BuildRows(Game& game, bool indicateComment);

// The row that shows node; 0 for a null node or one that no row shows.
int RowOfNode(const std::vector<NotationRow>& rows, MoveNode* node);

// Inserts the row of a newly played node just after the row of the node printed before it
// (row 1 when there is none or no row shows it), and formats the row before it again, whose
// parentheses may change; returns the new row's index.
int InsertRow(std::vector<NotationRow>& rows, MoveNode* node, bool indicateComment);

// The top row after selecting row: a row above the top becomes the top row, a row at or below
// top + visibleRows makes row - visibleRows the top row, any other leaves the top as it is.
int TopRowToShow(int row, int topRow, int visibleRows);

// How many rows fit in a list of the given height: height / itemHeight, or 20 when the item
// height is unknown (0 or less).
int VisibleRowCount(int height, int itemHeight);

}  // namespace velmora
