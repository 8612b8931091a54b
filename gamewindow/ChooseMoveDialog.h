// ChooseMoveDialog: "Choose move", the continuation of a position and its alternatives in a
// list, asked when moving forward at a branch.
#pragma once

#include "ui/DialogBase.h"

namespace velmora {

class MoveNode;

// Fills a list box with first and the alternatives after it (SAN with the move number), each
// row carrying its node, and selects the first row.
void FillMoveList(HWND list, MoveNode* first);
// The node of the list box's selected row, or null.
MoveNode* SelectedMove(HWND list);

class ChooseMoveDialog : public DialogBase {
  public:
    // Lists first and the alternatives after it; the first row starts selected.
    explicit ChooseMoveDialog(MoveNode* first);

    // The move taken with OK or a double tap, or null.
    MoveNode* Chosen() const { return chosen_; }

    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    MoveNode* first_;
    MoveNode* chosen_ = nullptr;
};

}  // namespace velmora
