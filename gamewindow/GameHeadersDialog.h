// GameHeadersDialog: the seven headers of a game (players, site, event, round, date, result),
// the names offered from the recent lists; "More..." opens the game's other tags.
#pragma once

#include "ui/DialogBase.h"

namespace velmora {

class Game;

class GameHeadersDialog : public DialogBase {
  public:
    explicit GameHeadersDialog(Game& game);

    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    void Store();

    Game& game_;
};

}  // namespace velmora
