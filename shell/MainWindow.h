// MainWindow: the program's top-level window (the device frame) with the document list of PGN
// files; it owns the current game and file and opens the game window for them.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "game/Game.h"
#include "game/GameIndex.h"

namespace velmora {

class MainWindow {
  public:
    static constexpr const wchar_t* kClassName = L"Velmora20";
    static constexpr const wchar_t* kTitle = L"Velmora20";
    static constexpr int kDocListId = 100;

    MainWindow() = default;
    virtual ~MainWindow();
    // Makes path the current file and posts "Reopen File", so its game list appears once the
    // message loop runs.
    virtual void OpenFile(const wchar_t* path);

    static bool RegisterWindowClass(HINSTANCE instance);
    // Creates the window with a 240 x 320 client area; null on failure.
    HWND Create(HINSTANCE instance);

    HWND Window() const { return window_; }
    HWND DocList() const { return docList_; }
    const std::wstring& CurrentFolder() const { return folder_; }
    Game* CurrentGame() const { return game_.get(); }
    GameIndex* CurrentFile() const { return file_.get(); }
    int CurrentIndex() const { return index_; }

  private:
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void OnCreate();
    void CreateDocumentList();
    void LayoutChildren();
    void OnCommand(int id);
    void OnFileChosen(const wchar_t* path);
    // Runs the game list of file; loads the chosen game into a new Game bound to the file.
    // Returns the game (null when nothing was chosen or loading failed) and its number.
    std::unique_ptr<Game> ChooseAndLoad(GameIndex& file, int* number, bool reportFailure);
    void ShowGameWindow();
    void Search();
    void ShowAbout();

    HWND window_ = nullptr;
    HWND docList_ = nullptr;
    bool docListTried_ = false;  // the list is made on the first paint only, even if it failed
    HWND menuBar_ = nullptr;
    std::wstring folder_;
    std::unique_ptr<Game> game_;
    std::unique_ptr<GameIndex> file_;
    int index_ = 0;
};

}  // namespace velmora
