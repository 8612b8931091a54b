// MaterialDialog: "Material Balance", the pieces each side still has on the board and those it
// has lost, drawn with the board's piece images.
#pragma once

#include "models/MaterialBalance.h"
#include "ui/DialogBase.h"

namespace velmora {

class MaterialDialog : public DialogBase {
  public:
    explicit MaterialDialog(const PositionValue& position);

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    void Paint();
    // Draws a side's counts in one row from x, y: each piece type present, then its number.
    void DrawRow(HDC dc, const PieceCounts& counts, Colour colour, int x, int y);

    MaterialBalance balance_;
};

}  // namespace velmora
