// GameListDialog: the games of one file in a sortable list; a tap on a game chooses it.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstdint>
#include <vector>

#include "game/GameListOrder.h"
#include "ui/DialogBase.h"

namespace velmora {

class GameIndex;

class GameListDialog : public DialogBase {
  public:
    explicit GameListDialog(GameIndex& index);

    // Shows the games of the index (rescanning its file); 1 with the chosen game's offset and
    // the file's game count, 2 when cancelled.
    INT_PTR Run(HWND parent, std::uint32_t* offsetOut, int* countOut);

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

    // For tests and the main window: the list view, and the position of the game chosen in
    // the index (-1 while none is).
    HWND List() const { return list_; }
    int Chosen() const { return chosen_; }
    const GameListSort& Sort() const { return sort_; }

  private:
    void Fill();
    void SortBy(int column);
    void Layout();
    // Gives the list the text of a cell it is about to show.
    void ProvideText(NMLVDISPINFOW& request);
    void Choose(int item);

    GameIndex& index_;
    std::uint32_t* offsetOut_ = nullptr;
    int* countOut_ = nullptr;
    HWND list_ = nullptr;
    int listTop_ = 0;
    GameListSort sort_;
    // The games in the order the list shows them, by their position in the index.
    std::vector<int> rows_;
    int chosen_ = -1;
};

}  // namespace velmora
