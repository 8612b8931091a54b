// NotationRows: row texts, closing parentheses, the whole list and where a new move's row goes.
#include "models/NotationRows.h"

#include "game/Position.h"
#include "game/MoveText.h"
#include "game/Game.h"
#include "game/MoveTree.h"

namespace velmora {
namespace {

std::u16string RowText(MoveNode* node, bool indicateComment, int closingParens) {
    std::u16string text(2 * static_cast<std::size_t>(node->level), u' ');
    if (node->IsVariation()) text += u'(';
    char16_t san[kSanBufferSize];
    text.append(san, static_cast<std::size_t>(WriteSan(node, san, {.withNumber = true})));
    const char16_t* comment = node->positionAfter->Comment();
    if (indicateComment && comment != nullptr) text += u" [...]";
    if (closingParens > 0) text.append(static_cast<std::size_t>(closingParens), u')');
    return text;
}

// Counts the levels the row below climbs back, plus one when it opens another alternative of
// the same list; with no row below every open variation ends here.
int ClosingParens(MoveNode* node, MoveNode* nodeOfRowBelow) {
    int count = node->level;
    if (nodeOfRowBelow != nullptr)
        count = node->level - nodeOfRowBelow->level + (nodeOfRowBelow->IsVariation() ? 1 : 0);
    return count > 0 ? count : 0;
}

// Where a newly played node's row goes: just after the row of the node printed before it, or
// row 1 when there is none or no row shows it.
int InsertionRow(const std::vector<NotationRow>& rows, MoveNode* node) {
    const int row = RowOfNode(rows, node->PreviousInNotation());
    return row == 0 ? 1 : row + 1;
}

}  // namespace

std::u16string FormatRow(MoveNode* node, MoveNode* nodeOfRowBelow, bool indicateComment) {
    return RowText(node, indicateComment, ClosingParens(node, nodeOfRowBelow));
}

// Lists each line move by move, a move's variations right after it: a variation is entered
// by pushing where to go on (the list's next alternative, then the continuation), and when a
// line runs out its last row gets its ")" and the walk resumes from the stack. The stack grows
// with the nesting of variations only, never with the length of a line.
std::vector<NotationRow> BuildRows(Game& game, bool indicateComment) {
    struct Resume {
        MoveNode* nextAlternative;  // the next variation of the list still to list
        MoveNode* continuation;     // the move after the list's first node
    };
    std::vector<NotationRow> rows;
    rows.push_back({kStartRowText, nullptr});
    std::vector<Resume> stack;
    MoveNode* node = game.StartPosition().FirstContinuation();
    for (;;) {
        if (node != nullptr) {
            rows.push_back({RowText(node, indicateComment, 0), node});
            MoveNode* continuation = node->positionAfter->FirstContinuation();
            if (MoveNode* variation = node->FirstVariation()) {
                stack.push_back({variation->NextVariation(), continuation});
                node = variation;
            } else {
                node = continuation;
            }
            continue;
        }
        if (stack.empty()) break;
        rows.back().text += u')';
        Resume& resume = stack.back();
        if (resume.nextAlternative != nullptr) {
            node = resume.nextAlternative;
            resume.nextAlternative = node->NextVariation();
        } else {
            node = resume.continuation;
            stack.pop_back();
        }
    }
    return rows;
}

int RowOfNode(const std::vector<NotationRow>& rows, MoveNode* node) {
    if (node == nullptr) return 0;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (rows[row].node == node) return static_cast<int>(row);
    }
    return 0;
}

int InsertRow(std::vector<NotationRow>& rows, MoveNode* node, bool indicateComment) {
    if (rows.empty()) rows.push_back({kStartRowText, nullptr});
    int row = InsertionRow(rows, node);
    if (row > static_cast<int>(rows.size())) row = static_cast<int>(rows.size());
    MoveNode* below = row < static_cast<int>(rows.size()) ? rows[row].node : nullptr;
    rows.insert(rows.begin() + row, {FormatRow(node, below, indicateComment), node});
    NotationRow& before = rows[row - 1];
    if (before.node != nullptr) before.text = FormatRow(before.node, node, indicateComment);
    return row;
}

int TopRowToShow(int row, int topRow, int visibleRows) {
    if (row < topRow) return row;
    if (row >= topRow + visibleRows) return row - visibleRows;
    return topRow;
}

int VisibleRowCount(int height, int itemHeight) {
    return itemHeight > 0 ? height / itemHeight : 20;
}

}  // namespace velmora
