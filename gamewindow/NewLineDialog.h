// NewLineDialog: "New line", asked when a move entered on the board differs from every move
// that already follows the position: add it as a variation, or put it in place of the move
// selected in the list.
#pragma once

#include "models/MoveEntry.h"
#include "ui/DialogBase.h"

namespace velmora {

class NewLineDialog : public DialogBase {
  public:
    // Lists the moves that follow position, the first one selected.
    explicit NewLineDialog(Position& position);

    NewLineChoice Choice() const { return choice_; }
    // The move selected when the dialog ended with "Replace".
    MoveNode* Replaced() const { return replaced_; }

    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    Position& position_;
    NewLineChoice choice_ = NewLineChoice::Cancel;
    MoveNode* replaced_ = nullptr;
};

}  // namespace velmora
