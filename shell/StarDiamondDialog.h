// StarDiamondDialog: "Import Star Diamond Game", which fetches the game stored in a Star Diamond
// chess computer over a serial port and hands it to the main window.
#pragma once

#include <windows.h>

#include <memory>

#include "devices/StarDiamondImport.h"
#include "platform/SerialPort.h"
#include "ui/DialogBase.h"

namespace velmora {

class Game;

class StarDiamondDialog : public DialogBase, private StarDiamondHost {
  public:
    // Sent by the serial reader thread with a line from the chess computer in lParam.
    static constexpr UINT kLineMessage = WM_USER + 1;

    StarDiamondDialog();
    ~StarDiamondDialog() override;

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

    // The imported game, once the dialog ended with 1.
    std::unique_ptr<Game> TakeGame() { return import_.TakeGame(); }
    // For tests: the import's state.
    const StarDiamondImport& Import() const { return import_; }

  private:
    void Connect();
    void StartImport();
    void Close();
    void StretchMessages();
    static void LineArrived(const char* line, void* context);

    bool SendToComputer(const char* text) override;
    void SetTimer(int id, int milliseconds) override;
    void KillTimer(int id) override;
    void AppendMessage(const char16_t* text) override;
    void ShowMessage(const char16_t* text, const char16_t* caption, bool error) override;
    void ImportStopped() override;

    platform::SerialPort port_;
    int openPort_ = -1;
    StarDiamondImport import_;
    HCURSOR savedCursor_ = nullptr;
    // Set once the dialog ends: lines still arriving are not acted on.
    bool closing_ = false;
};

// Runs the import over owner. Returns true with the game when one was imported.
bool RunStarDiamondImport(HWND owner, std::unique_ptr<Game>* game);

}  // namespace velmora
