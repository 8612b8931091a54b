// CommentDialog: the comment editor of a position, a text box with the menu "Reset" (the text
// it had when the editor opened), "Clear" and "Close" (keep the text and leave).
#pragma once

#include <string>

#include "ui/DialogBase.h"

namespace velmora {

class Position;

class CommentDialog : public DialogBase {
  public:
    explicit CommentDialog(Position& position);

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    void FitText();
    void Store();

    Position& position_;
    std::wstring original_;
};

}  // namespace velmora
