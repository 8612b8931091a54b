// Searcher: iterative deepening alpha-beta over a Board, reporting each finished depth.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

#include "engine/search/Board.h"
#include "engine/search/Evaluate.h"
#include "engine/search/MoveGen.h"
#include "engine/search/TimeControl.h"
#include "engine/search/TranspositionTable.h"

namespace velmora::engine {

constexpr int kMaxPly = 128;

// What a search has found so far: sent after every finished depth and once at the end.
struct SearchInfo {
    int depth = 0;
    int selectiveDepth = 0;
    int score = 0;  // centipawns from the side to move's view, or a mate score (IsMateScore)
    std::uint64_t nodes = 0;
    std::int64_t timeMs = 0;
    std::uint64_t nodesPerSecond = 0;
    int hashPermille = 0;
    std::vector<Move> pv;
};

// Whether a score announces a forced mate, and in how many moves (negative: being mated).
inline bool IsMateScore(int score) {
    return score >= kMateBound || score <= -kMateBound;
}
inline int MateInMoves(int score) {
    return score > 0 ? (kMate - score + 1) / 2 : -(kMate + score) / 2;
}

struct SearchResult {
    Move best;    // none only when the side to move has no legal move
    Move ponder;  // the expected reply, when the principal variation has one
    SearchInfo info;
};

using InfoCallback = std::function<void(const SearchInfo&)>;

// One search thread's worth of state: the move-ordering tables and the pawn cache. The
// transposition table is given, so that it can outlive a searcher and be sized by the host.
class Searcher {
  public:
    explicit Searcher(TranspositionTable& table);

    // Searches the board's position (its move history counts for repetitions) within limits,
    // until done, out of time or stop becomes true (stop may be set from any thread). Calls
    // onInfo after each finished depth. The board is the same again on return.
    SearchResult Search(Board& board, const SearchLimits& limits, const std::atomic<bool>& stop,
                        const InfoCallback& onInfo = nullptr);
    // Forgets what the last games taught the move ordering.
    void Clear();

  private:
    int Negamax(int alpha, int beta, int depth, int ply, bool nullAllowed);
    int Quiescence(int alpha, int beta, int ply);
    // Scores the moves for ordering: the hash move, good captures, killers, the counter move,
    // then quiet moves by history, and captures that lose material last.
    void ScoreMoves(MoveList& list, Move hashMove, int ply);
    void UpdateQuietHistory(Move best, const Move* tried, int triedCount, int depth, int ply);
    // Checks the clock and the stop flag every few thousand nodes.
    bool ShouldStop();
    SearchInfo MakeInfo(int depth, int score) const;

    TranspositionTable& table_;
    PawnCache pawns_;
    Board* board_ = nullptr;
    const std::atomic<bool>* stop_ = nullptr;
    TimeControl time_;
    SearchLimits limits_;
    bool stopped_ = false;
    std::uint64_t nodes_ = 0;
    int selectiveDepth_ = 0;
    int rootDepth_ = 0;
    int rootScore_ = 0;

    Move pv_[kMaxPly + 1][kMaxPly + 1];
    int pvLength_[kMaxPly + 1] = {};
    int staticEval_[kMaxPly + 2] = {};
    Move killers_[kMaxPly + 1][2];
    int history_[2][64][64] = {};
    Move counterMoves_[64][64];
};

}  // namespace velmora::engine
