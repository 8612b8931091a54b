// PromotionDialog: "Promotion in", the piece a pawn becomes, and the promotion chooser the game
// window installs for the whole program.
#pragma once

#include <windows.h>

#include "ui/DialogBase.h"

namespace velmora {

class PromotionDialog : public DialogBase {
  public:
    PromotionDialog();
    // The piece type chosen (5 queen, 2 rook, 3 knight, 4 bishop), or 0 when the dialog was
    // closed without a choice.
    int Piece() const { return piece_; }
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    int piece_ = 0;
};

// The promotion chooser: shows "Promotion in" over the window context (an HWND) and returns the
// piece type; 0 with no window.
int ChoosePromotionPiece(void* context);

}  // namespace velmora
