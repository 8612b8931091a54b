// StartGameDialog: "Start game", which engine to start, to play or to analyse, and its colour.
#pragma once

#include <windows.h>

#include "engine/host/StartGame.h"
#include "ui/DialogBase.h"

namespace velmora {

class StartGameDialog : public DialogBase {
  public:
    // choice gives the names and the loaded engine, and receives what the user chose on Start.
    explicit StartGameDialog(StartGameChoice& choice);

    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    // Enables "Engine plays Black" exactly while "Play" is checked.
    void FollowMode();

    StartGameChoice& choice_;
};

// Runs "Start game" over parent: 1 when the user pressed Start (choice then holds the engine
// index, -1 when the list is empty, and the two choices), 2 on Cancel, -1 when the dialog
// could not be created.
int RunStartGameDialog(HWND parent, StartGameChoice& choice);

}  // namespace velmora
