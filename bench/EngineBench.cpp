// velmora-bench-engine: the engine's speed. Perft from the initial position (move generation
// alone) and nodes per second of the search on the initial position and a set of middlegames.
//
// Usage: velmora-bench-engine [PERFT_DEPTH [SECONDS_PER_POSITION]]   (default 6 and 2)
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "engine/search/MoveGen.h"
#include "engine/search/Search.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace velmora::engine;

double Seconds(Clock::time_point since) {
    return std::chrono::duration<double>(Clock::now() - since).count();
}

// The initial position, then middlegames with pieces on both wings: open, closed, with kings
// castled on opposite sides, and tactical ones.
constexpr const char* kPositions[] = {
    kStartFen,
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
    "r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 4 4",
    "r1bq1rk1/pp2bppp/2n1pn2/2pp4/3P4/2PBPN2/PP1N1PPP/R1BQ1RK1 w - - 0 8",
    "2kr1b1r/ppp1qppp/2n2n2/4p3/2B1P1b1/2NP1N2/PPP2PPP/R1BQ1RK1 w - - 4 8",
    "r2qr1k1/1b1nbppp/p2p1n2/1pp1p3/4P3/2PP1NN1/PPB2PPP/R1BQR1K1 w - - 0 13",
    "rnbq1rk1/ppp1ppbp/3p1np1/8/2PPP3/2N2N2/PP2BPPP/R1BQK2R b KQ - 3 6",
};

}  // namespace

int main(int argc, char** argv) {
    const int perftDepth = argc > 1 ? std::atoi(argv[1]) : 6;
    const double seconds = argc > 2 ? std::atof(argv[2]) : 2.0;

    Board board;
    Clock::time_point start = Clock::now();
    const std::uint64_t leaves = Perft(board, perftDepth);
    const double perftSeconds = Seconds(start);
    std::printf(
        "perft %d from the initial position: %llu leaves in %.3f s (%.0f million a second)\n",
        perftDepth, static_cast<unsigned long long>(leaves), perftSeconds,
        leaves / perftSeconds / 1e6);

    TranspositionTable table;
    Searcher searcher(table);
    const std::atomic<bool> stop{false};
    std::uint64_t totalNodes = 0;
    double totalSeconds = 0;
    for (const char* fen : kPositions) {
        if (!board.SetFromFen(fen)) {
            std::printf("unreadable position: %s\n", fen);
            return 1;
        }
        table.Clear();
        searcher.Clear();
        SearchLimits limits;
        limits.moveTimeMs = static_cast<int>(seconds * 1000);
        limits.overheadMs = 0;
        start = Clock::now();
        const SearchResult result = searcher.Search(board, limits, stop);
        const double took = Seconds(start);
        totalNodes += result.info.nodes;
        totalSeconds += took;
        std::printf("%-76s depth %2d  %9llu nodes  %6.0f knps  best %s\n", fen, result.info.depth,
                    static_cast<unsigned long long>(result.info.nodes),
                    result.info.nodes / took / 1000, MoveText(result.best).c_str());
    }
    std::printf("search: %llu nodes in %.1f s, %.0f thousand nodes a second on average\n",
                static_cast<unsigned long long>(totalNodes), totalSeconds,
                totalNodes / totalSeconds / 1000);
    return 0;
}
