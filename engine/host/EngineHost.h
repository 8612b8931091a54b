// EngineHost: finds the engine libraries, loads one, and keeps it in step with the game shown
// in the game window: the moves played there go to the engine, the engine's moves come back
// into the game, and what it says about its search is kept for the window to show.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/PluginInterface.h"
#include "engine/host/SearchInfo.h"
#include "engine/host/StartGame.h"
#include "game/Game.h"
#include "platform/File.h"
#include "platform/Library.h"

namespace velmora {

// Messages the host sends to the game window, which handles them on its own thread.
enum EngineMessage : unsigned {
    kEngineFatalError = 32769,     // a box with FatalText(), caption "Fatal error"
    kEngineMessageBox = 32770,     // a box with MessageText(), caption "Velmora 2.0"
    kEngineSearchInfo = 32771,     // the search information changed
    kEngineSwitchedSides = 32772,  // the engine plays the other colour now
    kEngineShowInfo = 32773,       // wParam 1 shows the search information, 0 hides it
    kEngineMoveReady = 32774,      // the engine's move waits: call HandleEngineMove
    kEngineGameOver = 32775,       // a box with GameOverText() under GameOverCaption()
};

// String-table entries of the host's messages.
enum EngineText : int {
    kTextCannotLoadEngine = 40111,
    kTextEngineNotValid = 40112,
    kTextCannotInitEngine = 40114,
    kTextEngineAlreadyLoaded = 40115,
    kTextEngineStopped = 40116,
    kTextEngineVersion = 40117,
};

// What the host needs of the game window.
class EngineHostWindow {
  public:
    virtual ~EngineHostWindow() = default;
    // Sends message with wParam to the window and returns when it has been handled.
    virtual void SendToWindow(unsigned message, std::uintptr_t wParam) = 0;
    // Runs the "Start game" dialog; returns 1 when the user chose "Start".
    virtual int RunStartDialog(StartGameChoice& choice) = 0;
    // Returns the text of a string-table entry.
    virtual std::u16string LoadText(int id) = 0;
    // Plays a sound file and returns when it has been played.
    virtual void PlaySoundFile(const std::u16string& path) = 0;
    // The window's handle, for the engine.
    virtual plugin::WindowHandle Handle() = 0;
};

class EngineHost : public GameView, public SearchInfoSource, private plugin::HostCallbacks {
  public:
    static constexpr int kMaxEngines = 20;
    static constexpr std::size_t kSearchMoveSize = 16;
    static constexpr std::size_t kSearchLineSize = 128;

    // Loads a library: the system's loader, or a stand-in in tests.
    using LibraryLoader = std::function<std::unique_ptr<platform::Library>(
        const std::u16string& path, platform::ErrorCode* error)>;

    // Lists the engine folders under "Engines" in programFolder (which ends in a separator).
    explicit EngineHost(std::u16string programFolder,
                        platform::FileSystem& files = platform::SystemFileSystem(),
                        LibraryLoader loader = platform::LoadLibraryAt);
    // Releases the engine, then frees its library.
    ~EngineHost() override;
    EngineHost(const EngineHost&) = delete;
    EngineHost& operator=(const EngineHost&) = delete;

    int EngineCount() const { return static_cast<int>(names_.size()); }
    const std::vector<std::u16string>& Names() const { return names_; }
    int LoadedIndex() const { return loadedIndex_; }
    const std::u16string& EngineName() const { return engineName_; }
    bool CoordinateMoves() const { return coordinateMoves_; }

    // Loads engine number index; on failure tells the window why (message 32770) and returns
    // false. A library that loaded but failed a later step stays loaded until the host ends.
    bool LoadEngine(int index);
    // Runs the "Start game" dialog, loads the engine chosen and starts it on the game's
    // current position, in play or analysis. sendPosition: the engine gets the position's
    // text (it is not the game's first position, or that one was set up). Returns true when
    // an engine was started, with the mode and the engine's colour.
    bool StartEngine(EngineHostWindow& window, bool* playMode, bool* enginePlaysBlack,
                     bool sendPosition, Game& game);
    // Plays the move the engine announced, on the position it was thinking about.
    void HandleEngineMove();
    // Tells the engine to finish: the game window closes.
    void StopEngine();
    // Forgets the game and the window when the game window ends.
    void Detach();
    plugin::MenuHandle EngineMenu();
    std::intptr_t ForwardCommand(plugin::WindowHandle window, std::uintptr_t wParam,
                                 std::intptr_t lParam);
    // Whether the engine runs; true without an engine.
    bool IsAlive();
    // The engine is computing: the window ignores taps and "Delete move" meanwhile.
    bool Thinking() const { return thinking_.load(); }
    // The engine's position must be sent again at the next position change (a move was
    // deleted).
    void SetResend() { resend_ = true; }
    // Stores the clock's times for the engine, which may ask for them from its own thread.
    void PublishClockTimes(std::int32_t whiteMilliseconds, std::int32_t blackMilliseconds,
                           std::int32_t movesToGo);

    // The texts of the boxes the window shows for messages 32769, 32770 and 32775.
    const std::u16string& MessageText() const { return messageText_; }
    const std::u16string& GameOverCaption() const { return gameOverCaption_; }
    const std::u16string& GameOverText() const { return gameOverText_; }

    void GetSearchInfo(std::int32_t* depth, std::int32_t* speed, std::int32_t* nodes,
                       std::int32_t* milliseconds, char16_t* move, int moveSize, char16_t* line,
                       int lineSize) const override;
    // The search line as stored: control runs made one blank, cut at 127 characters.
    const std::string& SearchLine() const { return searchLine_; }

    // The engine follows the game as one of its views.
    void OnMovePlayed(MoveNode* node, GameView* sender) override;
    void OnPositionChanged(Position* position) override;
    void Refresh() override { resend_ = true; }
    MoveNode* ChooseContinuation(MoveNode*) override { return nullptr; }
    int EditHeaders() override { return 0; }
    int ChooseSaveTarget(std::u16string*) override { return 0; }
    int QueryClose() override { return 1; }

    // The callbacks the engine calls, public for tests that play the engine's part.
    plugin::HostCallbacks& Callbacks() { return *this; }

  private:
    void MovePlayed(const char16_t* move) override;
    void FatalError(const char16_t* text) override;
    void GameOver(const char16_t* caption, const char16_t* text) override;
    void SetEngineName(const char16_t* name) override;
    void SwitchSides() override;
    void ShowInfo(int show) override;
    void SetTimeControl(std::int32_t timePerMove, std::int32_t firstMoves, std::int32_t firstTime,
                        std::int32_t secondMoves, std::int32_t secondTime, std::int32_t thirdTime,
                        std::int32_t increment) override;
    void SearchInfo(std::uint32_t depth, std::uint32_t speed, std::uint32_t nodes,
                    std::uint32_t milliseconds, const char* move, const char* line) override;
    void GetClockTimes(std::int32_t* whiteMilliseconds, std::int32_t* blackMilliseconds,
                       std::int32_t* movesToGo) override;

    void Send(unsigned message, std::uintptr_t wParam = 0);
    void Tell(int textId);
    bool EnginesTurn(const Position& position) const;
    void SendPosition(const Position& position);
    // Writes the engine's name into the tag of the colour it plays.
    void WriteNameTag(const char16_t* name);
    // Plays the engine's move text on the computing position; null when it cannot be played.
    Position* PlayEngineMove(const std::u16string& text);
    // Writes the move of node as the engine reads moves.
    std::u16string MoveTextFor(const MoveNode& node) const;

    std::vector<std::u16string> names_;
    std::u16string programFolder_;
    LibraryLoader loader_;
    std::unique_ptr<platform::Library> library_;
    plugin::Engine* engine_ = nullptr;
    // A library whose engine was refused: never freed.
    bool libraryKeptUnused_ = false;
    int loadedIndex_ = -1;
    std::u16string engineName_;
    bool coordinateMoves_ = false;
    std::u16string gameOverCaption_;
    std::u16string gameOverText_;
    std::u16string messageText_;
    std::u16string moveBuffer_;
    std::atomic<bool> moveReady_{false};
    std::uint32_t searchNumbers_[4] = {0, 0, 0, 0};
    std::string searchMove_;
    std::string searchLine_;
    std::u16string soundPath_;

    EngineHostWindow* window_ = nullptr;
    Game* game_ = nullptr;
    bool playMode_ = false;
    bool enginePlaysBlack_ = true;
    Position* knownPosition_ = nullptr;
    MoveNode* knownNode_ = nullptr;
    Position* computingPosition_ = nullptr;
    bool resend_ = false;
    std::atomic<bool> thinking_{false};
    std::atomic<std::int32_t> clockWhite_{0};
    std::atomic<std::int32_t> clockBlack_{0};
    std::atomic<std::int32_t> clockMovesToGo_{0};
};

// Replaces every run of control characters with one blank and cuts the result at 127
// characters, as the search line is kept.
std::string CleanSearchLine(const char* line);

}  // namespace velmora
