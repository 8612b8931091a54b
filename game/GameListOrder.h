// GameListOrder: how the game list orders its games by a column, and the text of each cell.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "game/GameRow.h"

namespace velmora {

// The game list's columns, in the order they are inserted.
enum GameListColumn : int {
    kColumnWhite = 0,
    kColumnBlack = 1,
    kColumnResult = 2,
    kColumnEco = 3,
    kColumnEvent = 4,
    kColumnRound = 5,
    kColumnDate = 6,
    kColumnStart = 7,
};
constexpr int kGameListColumnCount = 8;

// Orders two texts the way the Windows word sort (lstrcmpW) orders the texts of PGN headers;
// returns -1, 0 or 1. See GameListOrder.cpp for what it matches and what it does not.
int CompareTextLikeLstrcmp(std::u16string_view a, std::u16string_view b);

// The number a Round text stands for: a decimal number read like the C library's string to
// integer conversion, 0 when the text is absent (read as empty), empty or begins with "?".
int RoundNumber(std::u16string_view round);

// Compares two games for the list sorted by sortKey = column * 2 + descending; returns -1, 0
// or 1 (0 for a column outside 0..7). The Result column runs from the highest result code
// down when ascending, and the Start column sorts by Date.
int CompareRows(const GameRow& a, const GameRow& b, int sortKey);

// Sorts the games by sortKey, keeping the order of games that compare equal.
void SortRows(std::vector<GameRow>& rows, int sortKey);

// The text the list shows in a column: the tag value (empty when absent), the result in its
// display form ("½-½" for a draw), the start text.
std::u16string CellText(const GameRow& row, int column);

// The sort chosen by tapping column headers: a new column sorts ascending, the same column
// again flips the order.
class GameListSort {
  public:
    // Applies a tap on the header of column and returns the new sort key.
    int TapColumn(int column);
    // column * 2 + descending, or -1 while no column was tapped.
    int Key() const { return column_ < 0 ? -1 : column_ * 2 + (descending_ ? 1 : 0); }

  private:
    int column_ = -1;
    bool descending_ = false;
};

}  // namespace velmora
