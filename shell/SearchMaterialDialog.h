// SearchMaterialDialog: edits the material a game search looks for, piece by piece and side
// by side.
#pragma once

#include "models/SearchForm.h"
#include "ui/DialogBase.h"

namespace velmora {

class SearchMaterialDialog : public DialogBase {
  public:
    // Edits wanted in place; it changes only when the dialog ends with OK (1).
    explicit SearchMaterialDialog(MaterialWanted& wanted);

    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    MaterialWanted& wanted_;
};

}  // namespace velmora
