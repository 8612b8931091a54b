// Throughput of the move rules on real games: ReadSan, PlayMove and LegalMoves, per second.
//
// Usage: velmora-bench-rules [FILE.pgn...]   (default: every .pgn of ../shared/data)
//
// The games' main lines are pulled out of the PGN text by a crude scanner that is good enough
// for benchmark input (tags, comments, variations, glyphs, numbers and results are skipped).
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "bench/PgnMainLines.h"
#include "core/LegalMoves.h"
#include "core/MoveRules.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/Position.h"

namespace {

using velmora::Position;
using Clock = std::chrono::steady_clock;

double Seconds(Clock::time_point since) {
    return std::chrono::duration<double>(Clock::now() - since).count();
}

void Report(const char* what, long long count, double seconds) {
    std::printf("%-34s %12lld in %7.3f s  = %10.0f /s\n", what, count, seconds, count / seconds);
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < argc; ++i)
        files.emplace_back(argv[i]);
    if (files.empty()) {
        std::filesystem::path data = std::filesystem::path(VELMORA_SOURCE_DIR) / "../shared/data";
        for (const auto& entry : std::filesystem::directory_iterator(data)) {
            if (entry.path().extension() == ".pgn") files.push_back(entry.path());
        }
    }
    std::vector<std::vector<std::string>> games;
    for (const auto& file : files) {
        std::ifstream in(file, std::ios::binary);
        std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        for (auto& game : velmora::bench::ScanMainLines(text)) {
            if (!game.moves.empty()) games.push_back(std::move(game.moves));
        }
    }

    // ReadSan: every main-line move read onto a growing tree.
    std::vector<std::vector<velmora::Move>> played(games.size());
    long long sanMoves = 0;
    long long stopped = 0;
    auto start = Clock::now();
    for (std::size_t g = 0; g < games.size(); ++g) {
        auto root = std::make_unique<Position>();
        Position* current = root.get();
        for (const std::string& san : games[g]) {
            Position* next = velmora::ReadSan(current, san.c_str());
            if (next == nullptr) {  // a broken or variant game: stop at its bad move
                ++stopped;
                if (std::getenv("VELMORA_BENCH_VERBOSE")) {
                    std::fprintf(stderr, "game %zu: cannot read %s\n", g + 1, san.c_str());
                }
                break;
            }
            const velmora::MoveNode* node = next->ArrivalNode();
            played[g].push_back({node->from, node->to, node->promotion});
            current = next;
            ++sanMoves;
        }
    }
    double sanSeconds = Seconds(start);

    // PlayMove: the same moves by squares, each tested and hung into a fresh tree.
    long long playMoves = 0;
    start = Clock::now();
    for (const auto& moves : played) {
        auto root = std::make_unique<Position>();
        Position* current = root.get();
        for (const velmora::Move& m : moves) {
            current = current->PlayMove(m.from, m.to, nullptr, m.promotion, nullptr);
            ++playMoves;
        }
    }
    double playSeconds = Seconds(start);

    // LegalMoves: the whole list of legal moves in every 8th position, on position values.
    long long lists = 0;
    long long listed = 0;
    start = Clock::now();
    for (const auto& moves : played) {
        velmora::PositionValue value;
        for (std::size_t k = 0; k < moves.size(); ++k) {
            if (k % 8 == 0) {
                velmora::MoveList list;
                velmora::LegalMoves(value, &list);
                listed += list.Size();
                ++lists;
            }
            velmora::PlayOnValue(value, moves[k]);
        }
    }
    double listSeconds = Seconds(start);

    std::printf("%zu games, %lld main-line moves, %lld games stopped at a move not read\n",
                games.size(), sanMoves, stopped);
    Report("ReadSan (moves)", sanMoves, sanSeconds);
    Report("PlayMove (moves)", playMoves, playSeconds);
    Report("LegalMoves (positions)", lists, listSeconds);
    std::printf("(%lld legal moves listed)\n", listed);
    return 0;
}
