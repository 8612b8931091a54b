// TagsDialog: a game's other tags in a list ("Tag", "Value"); a name from the tag dictionary or
// typed, a value, and "Set" or "Del" change the game at once.
#pragma once

#include <memory>
#include <string>

#include "models/TagEditor.h"
#include "ui/DialogBase.h"

namespace velmora {

class TagsDialog : public DialogBase {
  public:
    explicit TagsDialog(Game& game);

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    void SetTag();
    void DeleteTag();
    void ShowRow(int row, bool insert);
    void SelectRow(int row);
    void FitList();
    void Warn(const std::wstring& text);

    TagEditor editor_;
};

}  // namespace velmora
