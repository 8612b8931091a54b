// Engine: a position, its game history and a search that runs on a thread of its own.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "engine/search/Board.h"
#include "engine/search/Search.h"
#include "engine/search/TranspositionTable.h"

namespace velmora::engine {

// The front a host drives (the UCI program, a plug-in): set the position, start a search and
// get told its progress and its move through callbacks, stop it at any time from any thread.
// Callbacks run on the search thread; the host passes their data on to its own thread. Every
// call but Stop must come from one thread, the host's.
class Engine {
  public:
    // best is none only when the side to move has no legal move; ponder may be none.
    using BestMoveCallback = std::function<void(Move best, Move ponder, const SearchInfo& last)>;

    explicit Engine(int hashMegabytes = TranspositionTable::kDefaultMegabytes);
    // Stops and joins a running search.
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // Resizes and empties the hash table (after stopping a running search).
    void SetHashMegabytes(int megabytes);
    int HashMegabytes() const { return table_.Megabytes(); }
    // Forgets everything learnt in earlier games: hash table and move ordering.
    void NewGame();
    // Sets the position from a FEN text and plays the moves (coordinates, "e2e4", "e7e8q")
    // after it. Returns false on an unreadable text or an illegal move; the position then
    // stays as it was before the call.
    bool SetPosition(std::string_view fen, const std::vector<std::string>& moves);
    const Board& CurrentBoard() const { return board_; }

    // Starts a search of the current position and returns at once. onBest is called exactly
    // once, when the search ends (limits reached, or Stop). A search still running is stopped
    // first (its move is still reported).
    void Go(const SearchLimits& limits, InfoCallback onInfo, BestMoveCallback onBest);
    // Asks the running search to end soon; safe from any thread, and when nothing runs.
    void Stop() { stop_.store(true); }
    // Waits until the running search, if any, has ended and reported its move.
    void Wait();
    bool Searching() const { return searching_.load(); }

  private:
    Board board_;
    TranspositionTable table_;
    Searcher searcher_;
    std::thread thread_;
    std::atomic<bool> stop_{false};
    std::atomic<bool> searching_{false};
};

}  // namespace velmora::engine
