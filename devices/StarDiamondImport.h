// StarDiamondImport: fetches the game stored in a Star Diamond chess computer, line by line, and
// builds a new game from it: the start position first, then the moves.
#pragma once

#include <cstdint>
#include <memory>

namespace velmora {

class Game;
class Position;

// What the import needs from its dialog.
class StarDiamondHost {
  public:
    virtual ~StarDiamondHost() = default;
    // Writes text to the chess computer; the result is not looked at.
    virtual bool SendToComputer(const char* text) = 0;
    // Arms timer id (kRequestTimer or kWatchdogTimer) to fire once after milliseconds,
    // replacing it if it is armed; KillTimer disarms it.
    virtual void SetTimer(int id, int milliseconds) = 0;
    virtual void KillTimer(int id) = 0;
    // Appends a line to the messages list.
    virtual void AppendMessage(const char16_t* text) = 0;
    // Shows a message box; error selects the stop icon.
    virtual void ShowMessage(const char16_t* text, const char16_t* caption, bool error) = 0;
    // The import has ended, with or without a game: "Import" is enabled again and the cursor
    // put back.
    virtual void ImportStopped() = 0;
};

class StarDiamondImport {
  public:
    static constexpr int kRequestTimer = 1001;
    static constexpr int kWatchdogTimer = 1002;
    static constexpr int kWatchdogMilliseconds = 10000;

    explicit StarDiamondImport(StarDiamondHost& host);
    ~StarDiamondImport();

    // Begins an import ("Import" pressed): drops any earlier game, makes a new one with an
    // empty board, sends "Origin" and arms the watchdog.
    void Start();
    // Handles one received line (ASCII, without its line end): keeps it (at most 80
    // characters), appends it to the messages, then takes the protocol's next step.
    void OnLine(const char* line);
    // A timer fired: the next request, or the watchdog.
    void OnTimer(int id);

    bool Importing() const { return importing_; }
    // 0 "Origin" sent, 1 "H" asked, 2 position, 3 moves, 4 finished.
    std::uint32_t Step() const { return step_; }
    // The game built so far, or the finished one; null when there is none.
    Game* CurrentGame() const { return game_.get(); }
    // Hands the game over; null when there is none.
    std::unique_ptr<Game> TakeGame();

  private:
    // The protocol step for a line received while there is a game.
    void StepOnLine();
    void StepOnMoveLine();
    // Reads ".8 br bn bb bq bk bb bn br" into the rank of position_ it names.
    bool ReadRankLine();
    // Reads "Move  1 e2-e4" and plays it on position_.
    bool ReadMoveLine();
    // Ends the import with the game kept and tells the user why.
    void Finish(const char16_t* text);
    // Ends the import with the game thrown away and shows the error.
    void Fail(const char16_t* text);
    void Stop(bool keepGame);

    StarDiamondHost& host_;
    std::unique_ptr<Game> game_;
    Position* position_ = nullptr;
    std::uint32_t step_ = 0;
    bool importing_ = false;
    bool headerSeen_ = false;
    bool resultRequested_ = false;
    int movesAnnounced_ = 0;
    int movesReceived_ = 0;
    char16_t line_[81] = {};
};

}  // namespace velmora
