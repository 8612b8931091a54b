// Engine: the search thread's start, stop and hand-over of results.
#include "engine/search/Engine.h"

#include "engine/search/MoveGen.h"

namespace velmora::engine {

Engine::Engine(int hashMegabytes) : table_(hashMegabytes), searcher_(table_) {}

Engine::~Engine() {
    Stop();
    Wait();
}

void Engine::SetHashMegabytes(int megabytes) {
    Stop();
    Wait();
    table_.Resize(megabytes);
}

void Engine::NewGame() {
    Stop();
    Wait();
    table_.Clear();
    searcher_.Clear();
}

bool Engine::SetPosition(std::string_view fen, const std::vector<std::string>& moves) {
    Board next;
    if (!next.SetFromFen(fen)) return false;
    for (const std::string& text : moves) {
        const Move move = ParseMove(next, text.c_str());
        if (move.IsNone()) return false;
        next.MakeMove(move);
    }
    Stop();
    Wait();
    board_ = next;
    return true;
}

void Engine::Go(const SearchLimits& limits, InfoCallback onInfo, BestMoveCallback onBest) {
    Stop();
    Wait();
    stop_.store(false);
    searching_.store(true);
    // The search plays moves on its own copy, so the host may read the position meanwhile.
    thread_ = std::thread([this, limits, board = board_, onInfo = std::move(onInfo),
                           onBest = std::move(onBest)]() mutable {
        const SearchResult result = searcher_.Search(board, limits, stop_, onInfo);
        if (onBest) onBest(result.best, result.ponder, result.info);
        searching_.store(false);
    });
}

void Engine::Wait() {
    if (thread_.joinable()) thread_.join();
}

}  // namespace velmora::engine
