// Searcher: principal variation search with a transposition table, quiescence search and the
// usual pruning and reductions, each with the reason it is safe enough.
#include "engine/search/Search.h"

#include <algorithm>
#include <cmath>
#include <thread>

#include "engine/search/Exchange.h"
#include "engine/search/MoveGen.h"

namespace velmora::engine {

namespace {

// Late-move reductions by depth and move number: later moves in a well-ordered list rarely
// turn out best, so they are searched shallower first, more so the deeper the search.
struct ReductionTable {
    std::int8_t plies[64][64];
    ReductionTable() {
        for (int depth = 0; depth < 64; ++depth) {
            for (int count = 0; count < 64; ++count) {
                const double r =
                    depth == 0 || count == 0 ? 0.0 : 0.7 + std::log(depth) * std::log(count) / 2.3;
                plies[depth][count] = static_cast<std::int8_t>(r);
            }
        }
    }
};
const ReductionTable kReductions;

// Ordering bands: each kind of move sorts above the next.
constexpr int kHashMoveScore = 1 << 30;
constexpr int kGoodCaptureScore = 1 << 28;
constexpr int kKillerScore = 1 << 27;
constexpr int kCounterScore = (1 << 27) - 1;
constexpr int kBadCaptureScore = -(1 << 28);
constexpr int kHistoryLimit = 16384;

// Moves the best-scored remaining move to index and returns it (a selection sort done lazily,
// since a cut-off often comes after the first few moves).
Move PickNext(MoveList& list, int index) {
    int best = index;
    for (int i = index + 1; i < list.size; ++i)
        if (list.scores[i] > list.scores[best]) best = i;
    std::swap(list.moves[index], list.moves[best]);
    std::swap(list.scores[index], list.scores[best]);
    return list.moves[index];
}

int CapturedKind(const Board& board, Move move) {
    return move.Kind() == kEnPassant ? kPawnKind : KindOf(board.PieceOn(move.To()));
}

}  // namespace

Searcher::Searcher(TranspositionTable& table) : table_(table) {
    Clear();
}

void Searcher::Clear() {
    for (auto& side : history_)
        for (auto& from : side)
            for (int& value : from)
                value = 0;
    for (auto& pair : killers_)
        pair[0] = pair[1] = Move();
    for (auto& from : counterMoves_)
        for (Move& move : from)
            move = Move();
}

bool Searcher::ShouldStop() {
    if (stopped_) return true;
    if ((nodes_ & 2047) != 0) return false;
    if (stop_->load(std::memory_order_relaxed) || time_.HardLimitReached() ||
        (limits_.nodes != 0 && nodes_ >= limits_.nodes)) {
        stopped_ = true;
    }
    return stopped_;
}

void Searcher::ScoreMoves(MoveList& list, Move hashMove, int ply) {
    const Board& board = *board_;
    const Move last = board.LastMove();
    const Move counter = last.IsNone() ? Move() : counterMoves_[last.From()][last.To()];
    const int side = board.SideToMove();
    for (int i = 0; i < list.size; ++i) {
        const Move move = list.moves[i];
        int& score = list.scores[i];
        if (move == hashMove) {
            score = kHashMoveScore;
        } else if (move.IsNoisy()) {
            // Most valuable victim first, taken by the least valuable attacker; a promotion
            // counts as winning the promoted piece.
            const int victim = move.IsCapture() ? kPieceValue[CapturedKind(board, move)] : 0;
            const int gain = victim + (move.IsPromotion() ? kPieceValue[move.PromotionKind()] : 0);
            const int order = gain * 8 - KindOf(board.PieceOn(move.From()));
            score = (move.IsPromotion() && move.PromotionKind() != kQueenKind)
                        ? kBadCaptureScore - 1000
                    : ExchangeAtLeast(board, move, 0) ? kGoodCaptureScore + order
                                                      : kBadCaptureScore + order;
        } else if (move == killers_[ply][0]) {
            score = kKillerScore + 1;
        } else if (move == killers_[ply][1]) {
            score = kKillerScore;
        } else if (move == counter) {
            score = kCounterScore;
        } else {
            score = history_[side][move.From()][move.To()];
        }
    }
}

void Searcher::UpdateQuietHistory(Move best, const Move* tried, int triedCount, int depth,
                                  int ply) {
    const int side = board_->SideToMove();
    // Deeper cut-offs say more; the update pulls each value toward the limit so that old
    // knowledge fades instead of overflowing.
    const int bonus = std::min(depth * depth, 400);
    auto adjust = [&](Move move, int delta) {
        int& value = history_[side][move.From()][move.To()];
        value += delta - value * std::abs(delta) / kHistoryLimit;
    };
    adjust(best, bonus);
    // The quiet moves tried before the best one did not cut: they lose as much.
    for (int i = 0; i < triedCount; ++i)
        if (tried[i] != best) adjust(tried[i], -bonus);
    if (killers_[ply][0] != best) {
        killers_[ply][1] = killers_[ply][0];
        killers_[ply][0] = best;
    }
    const Move last = board_->LastMove();
    if (!last.IsNone()) counterMoves_[last.From()][last.To()] = best;
}

int Searcher::Quiescence(int alpha, int beta, int ply) {
    ++nodes_;
    pvLength_[ply] = ply;
    if (ShouldStop()) return 0;
    selectiveDepth_ = std::max(selectiveDepth_, ply);
    Board& board = *board_;
    if (ply >= kMaxPly) return Evaluate(board, pawns_);

    const bool inCheck = board.InCheck();
    const TranspositionTable::Entry* entry = table_.Probe(board.Key());
    if (entry != nullptr) {
        const int score = ScoreFromTable(entry->score, ply);
        if (entry->bound == Bound::Exact || (entry->bound == Bound::Lower && score >= beta) ||
            (entry->bound == Bound::Upper && score <= alpha)) {
            return score;
        }
    }

    // Stand pat: the side to move need not capture, so the static score is a lower bound —
    // except in check, where every evasion must be looked at.
    int best = -kInfinite;
    int standPat = -kInfinite;
    if (!inCheck) {
        standPat = entry != nullptr ? entry->eval : Evaluate(board, pawns_);
        if (standPat >= beta) return standPat;
        alpha = std::max(alpha, standPat);
        best = standPat;
    }

    MoveList list;
    GenerateMoves(board, list, inCheck ? MoveSet::All : MoveSet::Noisy);
    if (inCheck && list.size == 0) return -kMate + ply;
    ScoreMoves(list, entry != nullptr ? Move::FromBits(entry->move) : Move(), ply);

    Move bestMove;
    for (int i = 0; i < list.size; ++i) {
        const Move move = PickNext(list, i);
        if (!inCheck) {
            // Captures that lose material by exchange, and under-promotions, are not worth a
            // node here; the full search finds the rare sacrifice.
            if (list.scores[i] < kGoodCaptureScore && list.scores[i] != kHashMoveScore) continue;
            // Delta pruning: even winning the piece with a margin would not reach alpha.
            if (!move.IsPromotion() &&
                standPat + kPieceValue[CapturedKind(board, move)] + 200 < alpha)
                continue;
        }
        board.MakeMove(move);
        const int score = -Quiescence(-beta, -alpha, ply + 1);
        board.UnmakeMove();
        if (stopped_) return 0;
        if (score > best) {
            best = score;
            if (score > alpha) {
                alpha = score;
                bestMove = move;
                if (score >= beta) break;
            }
        }
    }
    const Bound bound = best >= beta ? Bound::Lower : Bound::Upper;
    table_.Store(board.Key(), bestMove, best, standPat == -kInfinite ? 0 : standPat, 0, bound, ply);
    return best;
}

int Searcher::Negamax(int alpha, int beta, int depth, int ply, bool nullAllowed) {
    Board& board = *board_;
    const bool inCheck = board.InCheck();
    // A side in check is never left to quiescence search, which would look at its captures
    // only: all its evasions are searched.
    if (inCheck && depth < 1) depth = 1;
    if (depth <= 0) return Quiescence(alpha, beta, ply);

    ++nodes_;
    pvLength_[ply] = ply;
    if (ShouldStop()) return 0;
    selectiveDepth_ = std::max(selectiveDepth_, ply);
    const bool root = ply == 0;
    const bool pvNode = beta - alpha > 1;

    if (!root) {
        // Draws: repetition (a single one inside the search is enough, since the side that
        // repeated could repeat again), the fifty-move rule and bare material.
        if (board.IsRepetition(ply) || board.IsInsufficientMaterial()) return 0;
        if (board.IsFiftyMoveDraw()) {
            // A mate on the hundredth ply still counts.
            MoveList replies;
            GenerateMoves(board, replies);
            return inCheck && replies.size == 0 ? -kMate + ply : 0;
        }
        if (ply >= kMaxPly) return inCheck ? 0 : Evaluate(board, pawns_);
        // Mate-distance pruning: no line from here can beat a mate already found nearer the
        // root, nor be worse than being mated here.
        alpha = std::max(alpha, -kMate + ply);
        beta = std::min(beta, kMate - ply - 1);
        if (alpha >= beta) return alpha;
    }

    const TranspositionTable::Entry* entry = table_.Probe(board.Key());
    Move hashMove;
    if (entry != nullptr) {
        hashMove = Move::FromBits(entry->move);
        const int score = ScoreFromTable(entry->score, ply);
        // A deep enough stored result decides this node outside the principal variation; on it
        // the exact line is wanted, so it is searched anyway.
        if (!pvNode && entry->depth >= depth &&
            (entry->bound == Bound::Exact || (entry->bound == Bound::Lower && score >= beta) ||
             (entry->bound == Bound::Upper && score <= alpha))) {
            return score;
        }
    }

    int eval = -kInfinite;
    if (!inCheck) eval = entry != nullptr ? entry->eval : Evaluate(board, pawns_);
    staticEval_[ply] = eval;
    // Improving: the position looks better than two plies ago, so pruning can be stricter.
    const bool improving = !inCheck && ply >= 2 && eval > staticEval_[ply - 2];
    if (ply + 2 <= kMaxPly) killers_[ply + 1][0] = killers_[ply + 1][1] = Move();

    if (!pvNode && !inCheck) {
        // Reverse futility: far enough above beta that a few plies of quiet moves will not
        // bring the score back below it.
        if (depth <= 6 && eval - 85 * depth + (improving ? 40 : 0) >= beta && eval < kMateBound)
            return eval;
        // Razoring: so far below alpha that only a capture could help; let quiescence decide.
        if (depth <= 2 && eval + 250 * depth < alpha) {
            const int score = Quiescence(alpha, beta, ply);
            if (score < alpha) return score;
        }
        // Null move: if passing still holds beta, a real move almost surely does. Not with
        // pawns and king alone, where passing may be the only way to lose (zugzwang), and not
        // twice in a row.
        if (nullAllowed && depth >= 3 && eval >= beta &&
            board.HasNonPawnMaterial(board.SideToMove())) {
            const int reduction = 3 + depth / 4 + std::min((eval - beta) / 200, 3);
            board.MakeNullMove();
            int score = -Negamax(-beta, -beta + 1, depth - 1 - reduction, ply + 1, false);
            board.UnmakeNullMove();
            if (stopped_) return 0;
            if (score >= beta) return score >= kMateBound ? beta : score;
        }
    }
    // Without a hash move the ordering is poor: search a ply shallower and let the next
    // iteration, with a move to try first, do the full depth.
    if (hashMove.IsNone() && depth >= 4 && !root) --depth;

    MoveList list;
    GenerateMoves(board, list);
    if (list.size == 0) return inCheck ? -kMate + ply : 0;
    ScoreMoves(list, hashMove, ply);

    const int originalAlpha = alpha;
    int best = -kInfinite;
    Move bestMove;
    Move quietsTried[64];
    int quietCount = 0;
    int moveCount = 0;
    for (int i = 0; i < list.size; ++i) {
        const Move move = PickNext(list, i);
        const bool quiet = !move.IsNoisy();
        const int moveScore = list.scores[i];

        if (!root && best > -kMateBound && board.HasNonPawnMaterial(board.SideToMove())) {
            if (quiet && !inCheck) {
                // Late-move pruning: deep in the list of a shallow node the quiet moves have
                // all been found wanting before.
                if (!pvNode && depth <= 5 && quietCount >= 3 + depth * depth / (improving ? 1 : 2))
                    continue;
                // Futility: a quiet move cannot lift a score this far below alpha in the few
                // plies left.
                if (!pvNode && depth <= 6 && eval + 100 + 90 * depth <= alpha &&
                    moveScore < kKillerScore)
                    continue;
                // A quiet move that puts its piece where the exchange loses it.
                if (depth <= 6 && !ExchangeAtLeast(board, move, -30 * depth * depth)) continue;
            } else if (!quiet && depth <= 5 && moveScore < kGoodCaptureScore &&
                       !ExchangeAtLeast(board, move, -100 * depth)) {
                // A capture that loses more than a pawn a ply by exchange.
                continue;
            }
        }

        board.MakeMove(move);
        ++moveCount;
        const bool givesCheck = board.InCheck();
        // Check extension: a check leaves few replies and often leads to mate or the win of
        // material just beyond the horizon, so the line gets a ply more. Bounded by the
        // iteration's depth so that a series of checks cannot run away.
        const int newDepth = depth - 1 + (givesCheck && ply < 2 * rootDepth_ ? 1 : 0);
        int score;
        if (moveCount == 1) {
            score = -Negamax(-beta, -alpha, newDepth, ply + 1, true);
        } else {
            int reduction = 0;
            if (depth >= 3 && (quiet || moveScore < kGoodCaptureScore)) {
                reduction = kReductions.plies[std::min(depth, 63)][std::min(moveCount, 63)];
                if (pvNode) --reduction;
                if (!improving) ++reduction;
                if (givesCheck || inCheck) --reduction;
                if (moveScore >= kCounterScore) --reduction;  // killers and counter moves
                // Quiet moves that often cut elsewhere are reduced less, those that never do more.
                if (quiet && moveScore < kCounterScore)
                    reduction -= std::clamp(moveScore / 5000, -2, 2);
                reduction = std::clamp(reduction, 0, newDepth - 1);
            }
            // Null window first: the move only has to be proved no better than alpha.
            score = -Negamax(-alpha - 1, -alpha, newDepth - reduction, ply + 1, true);
            if (score > alpha && reduction > 0)
                score = -Negamax(-alpha - 1, -alpha, newDepth, ply + 1, true);
            if (score > alpha && score < beta)
                score = -Negamax(-beta, -alpha, newDepth, ply + 1, true);
        }
        board.UnmakeMove();
        if (stopped_) return 0;

        if (score > best) {
            best = score;
            if (score > alpha) {
                alpha = score;
                bestMove = move;
                if (root) rootScore_ = score;
                pv_[ply][ply] = move;
                for (int next = ply + 1; next < pvLength_[ply + 1]; ++next)
                    pv_[ply][next] = pv_[ply + 1][next];
                pvLength_[ply] = std::max(pvLength_[ply + 1], ply + 1);
                if (score >= beta) {
                    if (quiet) UpdateQuietHistory(move, quietsTried, quietCount, depth, ply);
                    break;
                }
            }
        }
        if (quiet && quietCount < 64) quietsTried[quietCount++] = move;
    }
    // Every move was pruned: the node is no better than alpha as far as is known.
    if (moveCount == 0) return alpha;

    const Bound bound = best >= beta            ? Bound::Lower
                        : alpha > originalAlpha ? Bound::Exact
                                                : Bound::Upper;
    table_.Store(board.Key(), bestMove, best, inCheck ? 0 : eval, depth, bound, ply);
    return best;
}

SearchInfo Searcher::MakeInfo(int depth, int score) const {
    SearchInfo info;
    info.depth = depth;
    info.selectiveDepth = selectiveDepth_;
    info.score = score;
    info.nodes = nodes_;
    info.timeMs = time_.ElapsedMs();
    info.nodesPerSecond =
        nodes_ * 1000 / static_cast<std::uint64_t>(std::max<std::int64_t>(1, info.timeMs));
    info.hashPermille = table_.Fullness();
    info.pv.assign(pv_[0], pv_[0] + pvLength_[0]);
    return info;
}

SearchResult Searcher::Search(Board& board, const SearchLimits& limits,
                              const std::atomic<bool>& stop, const InfoCallback& onInfo) {
    board_ = &board;
    stop_ = &stop;
    limits_ = limits;
    stopped_ = false;
    nodes_ = 0;
    selectiveDepth_ = 0;
    time_.Start(limits, board.SideToMove());
    table_.NewSearch();
    // The history keeps its ordering from the last move but loses weight, since the position
    // moved on.
    for (auto& side : history_)
        for (auto& from : side)
            for (int& value : from)
                value /= 2;

    SearchResult result;
    MoveList rootMoves;
    GenerateMoves(board, rootMoves);
    if (rootMoves.size > 0) result.best = rootMoves.moves[0];  // a move in hand, whatever happens
    const int maxDepth = limits.depth > 0 ? std::min(limits.depth, kMaxPly - 1) : kMaxPly - 1;

    int score = 0;
    int stableIterations = 0;
    for (int depth = 1; depth <= maxDepth && rootMoves.size > 0; ++depth) {
        rootDepth_ = depth;
        // Aspiration window: expect the score near the last one and widen on a miss.
        int window = depth >= 5 ? 25 : kInfinite;
        int alpha = std::max(-kInfinite, score - window),
            beta = std::min(kInfinite, score + window);
        int found;
        for (;;) {
            found = Negamax(alpha, beta, depth, 0, false);
            if (stopped_) break;
            if (found <= alpha) {
                beta = (alpha + beta) / 2;
                alpha = std::max(-kInfinite, found - window);
            } else if (found >= beta) {
                beta = std::min(kInfinite, found + window);
            } else {
                break;
            }
            window += window / 2 + 10;
        }
        // The root's line is taken when this iteration found one: in an unfinished iteration
        // that is a move searched in full that beat the old best (or the old best itself).
        if (pvLength_[0] > 0) {
            stableIterations = pv_[0][0] == result.best ? stableIterations + 1 : 0;
            result.best = pv_[0][0];
            result.ponder = pvLength_[0] > 1 ? pv_[0][1] : Move();
            score = stopped_ ? rootScore_ : found;
            result.info = MakeInfo(depth, score);
        }
        if (stopped_) break;
        result.info = MakeInfo(depth, score);
        if (onInfo) onInfo(result.info);
        // A mate found within the depth searched cannot get shorter by searching deeper.
        if (IsMateScore(score) && depth >= 2 * MateInMoves(std::abs(score)) + 2 &&
            !limits.infinite && limits.depth == 0) {
            break;
        }
        // A best move that has stood for several depths needs less time; one that keeps
        // changing more.
        const double scale = stableIterations >= 4 ? 0.6 : stableIterations == 0 ? 1.6 : 1.0;
        if (!time_.MayStartIteration(scale)) break;
    }
    result.info.nodes = nodes_;
    result.info.timeMs = time_.ElapsedMs();
    // Infinite analysis reports its move only when told to stop, even when there is nothing
    // left to search.
    while (limits.infinite && !stop.load())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return result;
}

}  // namespace velmora::engine
