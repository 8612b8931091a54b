// BoardView: the game window, a modal dialog showing one game on the board with its notation
// list and comment pane; its exit command tells the main window what to do next.
#pragma once

#include <windows.h>

#include <memory>

#include "clock/ChessClock.h"
#include "devices/UcbLink.h"
#include "engine/host/EngineHost.h"
#include "game/Game.h"
#include "gamewindow/BoardRenderer.h"
#include "gamewindow/ClockWindow.h"
#include "gamewindow/EngineInfoDisplay.h"
#include "gamewindow/NotationView.h"
#include "models/BoardLayout.h"
#include "models/MoveEntry.h"
#include "platform/SerialPort.h"
#include "ui/DialogBase.h"

namespace velmora {

class BoardView : public DialogBase,
                  public GameView,
                  private MoveEntryHost,
                  private EngineHostWindow,
                  private UcbLinkHost {
  public:
    static constexpr int kNotationId = 2000;
    static constexpr int kCommentId = 2001;
    // Sent by the serial reader thread with a line from the chessboard in lParam.
    static constexpr UINT kBoardLineMessage = 32776;

    explicit BoardView(Game& game);
    ~BoardView() override;

    // Runs the window for the game, at the initial move: positive White's move number,
    // negative Black's, 0 where the game stands. Posts the exit command to parent after it
    // ends. Returns false when the window could not be created.
    bool Run(HWND parent, int initialMove);

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

    void OnMovePlayed(MoveNode* node, GameView* sender) override;
    void OnPositionChanged(Position* position) override;
    void Refresh() override;
    MoveNode* ChooseContinuation(MoveNode* first) override;
    int EditHeaders() override;
    int ChooseSaveTarget(std::u16string* path) override;
    int QueryClose() override;

    // The game set up with "New Position...", which the window hands to the main window
    // (exit command 1064); null when there is none.
    std::unique_ptr<Game> TakeNewGame() { return std::move(newGame_); }

    // For tests: the parts of the window.
    NotationView& Notation() { return notation_; }
    BoardRenderer& Board() { return board_; }
    HWND CommentPane() const { return comment_; }
    const BoardLayout& Layout() const { return layout_; }
    int ExitCommand() const { return exitCommand_; }
    const MoveEntry& Entry() const { return entry_; }
    const ChessClock& Clock() const { return clock_; }
    const EngineInfoDisplay& EngineInfo() const { return engineInfo_; }
    bool EngineActive() const { return engineActive_; }
    bool UserPlaysWhite() const { return userPlaysWhite_; }
    bool UserPlaysBlack() const { return userPlaysBlack_; }
    bool ChessboardConnected() const { return chessboardConnected_; }

  private:
    void ComputeLayout();
    void PlaceChildren();
    void ApplyInitialMove();
    void Paint();
    void DrawIndicator(HDC dc);
    void MakeEvaluationItemsOwnerDrawn();
    void EndWith(int exitCommand);
    NewLineChoice AskNewLine(Position& position, Move move, MoveNode** replaced) override;
    void Tap(int x, int y);
    void SetGlyph(int nag);
    void SetEvaluation(int evaluation);
    void ShowNagPopup();
    void PromoteLine();
    void DeleteMove();
    void EditComment();
    void NewPosition();
    // Runs the options sheet and lays the window out again, or gives the board its new piece
    // images, as the changed settings need.
    void RunOptions();

    // Engine and clock (BoardViewEngine.cpp).
    void StartEngine();
    void StartClock();
    void PublishClockTimes();
    void FollowTimeControl();
    void ClockTick();
    void ShowEngineMenu();
    void ToggleLargeClocks();
    void SetUserColours(bool white, bool black);
    void AdvanceBlink();
    void UpdateClockMoveText();
    // Handles the messages of the engine host; false for any other message.
    bool OnEngineMessage(UINT message, WPARAM wParam);
    void StopEngineOnClose();
    void EndEngine();
    void SendToWindow(unsigned message, std::uintptr_t wParam) override;
    int RunStartDialog(StartGameChoice& choice) override;
    std::u16string LoadText(int id) override;
    void PlaySoundFile(const std::u16string& path) override;
    plugin::WindowHandle Handle() override { return window_; }

    // The UCB chessboard link (BoardViewBoardLink.cpp).
    void ConnectUcb();
    void OnBoardLine(const char* line);
    void SendMoveToBoard(const MoveNode& node);
    void CloseBoardLink();
    static void BoardLineArrived(const char* line, void* context);
    bool SendToBoard(const char* text) override;
    void ShowBoardLine(const char16_t* text) override;
    void RedrawBoard() override;

    int exitCommand_ = 0;
    Game& game_;
    NotationView notation_;
    BoardRenderer board_;
    HWND comment_ = nullptr;
    BoardLayout layout_{};
    bool created_ = false;
    bool largeClocks_ = false;
    int menuBarHeight_ = 0;
    bool engineActive_ = false;
    bool userPlaysWhite_ = true;
    bool userPlaysBlack_ = true;
    bool analysisMode_ = false;
    int blinkPhase_ = 0;
    HMENU engineMenu_ = nullptr;
    int initialMove_ = 0;
    MoveEntry entry_;
    std::unique_ptr<Game> newGame_;
    ChessClock clock_;
    ClockWindow clockWindow_{clock_};
    EngineInfoDisplay engineInfo_;
    bool clockShown_ = false;
    // The time control the clock was last set to.
    SettingsBlock clockSettings_{};
    bool engineStopped_ = false;
    platform::SerialPort serialLink_;
    bool chessboardConnected_ = false;
    std::unique_ptr<UcbLink> ucbLink_;
};

}  // namespace velmora
