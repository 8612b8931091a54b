// UciBridge: the GUI's side of a conversation with a UCI engine program, one line at a time.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/SearchReport.h"
#include "engine/search/TimeControl.h"

namespace velmora::engine {

// Where the lines for the engine program go.
class UciChannel {
  public:
    virtual ~UciChannel() = default;
    virtual void SendLine(const std::string& line) = 0;
};

// What the bridge learns from the engine program.
class UciListener {
  public:
    virtual ~UciListener() = default;
    virtual void OnReport(const SearchReport& report) = 0;
    // The move of a search that was not abandoned, as coordinates; empty when the engine has
    // no legal move ("(none)" or "0000").
    virtual void OnBestMove(const std::string& move) = 0;
};

// A UCI option to set after the handshake.
using UciOption = std::pair<std::string, std::string>;

// Writes "position startpos" (fen empty) or "position fen ...", with " moves ..." when there
// are moves.
std::string PositionLine(const std::string& fen, const std::vector<std::string>& moves);
// Writes the "go" line of limits: "go infinite", "go movetime T", or the clock with
// "go wtime W btime B winc I binc I" and " movestogo M" when it is positive.
std::string GoLine(const SearchLimits& limits);
// Reads an "info" line into report, keeping the fields the line does not give. Words are taken
// in any order and unknown ones skipped. Returns true when the line gave a score of the first
// principal line, the lines worth showing.
bool ReadInfoLine(std::string_view line, SearchReport* report);

// Keeps the conversation in order: a new search is sent only once the engine has answered
// "bestmove" to the one before (after a "stop") and "readyok" to an "isready". All calls
// come from one thread.
class UciBridge {
  public:
    UciBridge(UciChannel& channel, UciListener& listener)
        : channel_(channel), listener_(listener) {}

    // Sends "uci"; after "uciok" the options go out, then "isready".
    void BeginHandshake(std::vector<UciOption> options);
    // Whether "readyok" has answered the handshake's "isready".
    bool Ready() const { return ready_; }
    // The name given by "id name", empty until then.
    const std::string& EngineName() const { return name_; }

    // Abandons any search and sends "ucinewgame" and "isready".
    void NewGame();
    // Searches the position (fen empty for the initial one) after moves within limits.
    void Think(const std::string& fen, const std::vector<std::string>& moves,
               const SearchLimits& limits);
    // Ends the running search. Abandoned, its move is dropped; otherwise the engine's move
    // comes as usual, at once ("Move now").
    void Stop(bool abandon);
    // Abandons any search and sends "quit".
    void Quit();
    bool Searching() const { return searching_; }

    void HandleLine(std::string_view line);

  private:
    struct Search {
        std::string position;
        std::string go;
    };
    void Send(const std::string& line) { channel_.SendLine(line); }
    // Sends the waiting search when the engine is free for it.
    void SendWaiting();

    UciChannel& channel_;
    UciListener& listener_;
    std::vector<UciOption> options_;
    std::string name_;
    bool handshaking_ = false;
    bool ready_ = false;
    bool awaitingReady_ = false;
    // A "go" is out without its "bestmove" yet.
    bool searching_ = false;
    bool stopSent_ = false;
    // The move of the running search is wanted.
    bool wanted_ = false;
    std::optional<Search> waiting_;
    SearchReport report_;
};

}  // namespace velmora::engine
