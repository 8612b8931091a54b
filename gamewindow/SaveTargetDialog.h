// SaveTargetDialog: where a game is saved, chosen with one tap: a new file, one of the recent
// files (the game is appended), or another existing file.
#pragma once

#include <string>

#include "ui/DialogBase.h"

namespace velmora {

class SaveTargetDialog : public DialogBase {
  public:
    SaveTargetDialog();

    // True when a path was chosen; it is then in *path.
    bool Run(HWND owner, std::u16string* path);

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    void Stack();
    // Runs the save or open file picker; true with the path chosen.
    bool PickFile(bool forSaving, std::u16string* path);
    void Choose(const std::u16string& path, bool remember);

    std::u16string* path_ = nullptr;
    int recentCount_ = 0;
};

}  // namespace velmora
