// Heap held by a loaded GameIndex: bytes per game, what they are made of, and the load time.
//
// Usage: velmora-bench-index [FILE.pgn]   (default: the largest .pgn of ../shared/data)
//
// The heap is read with glibc's mallinfo2() before and after Load(), with the index kept alive,
// so the figure is what the game list really costs: the rows, the pool of their texts and the
// allocator's own words around each block. Elsewhere (another C library, a sanitizer build)
// the heap figures print as n/a and only the count and load time are measured.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "game/GameIndex.h"
#include "platform/CodePage.h"

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
#include <malloc.h>
#define VELMORA_HEAP_FIGURES 1
#else
#define VELMORA_HEAP_FIGURES 0
#endif

namespace {

constexpr double kGoal = 128;  // bytes a game, texts included

#if VELMORA_HEAP_FIGURES
// Returns the bytes of the heap in use: small blocks plus those glibc maps on their own.
std::size_t HeapInUse() {
    struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// Prints one line of the breakdown: bytes, bytes per game and share of the whole.
void Share(const char* what, std::size_t bytes, std::size_t total, std::size_t games) {
    std::printf("  %-44s %10zu bytes %7.1f per game %5.1f%%\n", what, bytes,
                static_cast<double>(bytes) / games, 100.0 * bytes / total);
}
#endif  // VELMORA_HEAP_FIGURES

// Returns the largest .pgn of the shared data folder, or an empty path when there is none.
std::filesystem::path LargestDataFile() {
    std::filesystem::path best;
    std::uintmax_t bestSize = 0;
    std::filesystem::path data = std::filesystem::path(VELMORA_SOURCE_DIR) / "../shared/data";
    for (const auto& entry : std::filesystem::directory_iterator(data)) {
        if (entry.path().extension() != ".pgn") continue;
        if (entry.file_size() > bestSize) best = entry.path(), bestSize = entry.file_size();
    }
    return best;
}

}  // namespace

int main(int argc, char** argv) {
    std::filesystem::path file = argc > 1 ? std::filesystem::path(argv[1]) : LargestDataFile();
    if (file.empty()) {
        std::fprintf(stderr, "no .pgn file given or found\n");
        return 2;
    }
    velmora::GameIndex index(velmora::platform::Utf8ToWide(file.string()).c_str());

#if VELMORA_HEAP_FIGURES
    std::size_t before = HeapInUse();
#endif
    auto start = std::chrono::steady_clock::now();
    if (!index.Load()) {
        std::fprintf(stderr, "%s: cannot open\n", file.string().c_str());
        return 1;
    }
    double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
#if VELMORA_HEAP_FIGURES
    std::size_t held = HeapInUse() - before;
#endif

    int games = index.Count();
    std::printf("%s: %d games, loaded in %.3f s\n", file.filename().string().c_str(), games,
                seconds);
    if (games == 0) return 0;
#if VELMORA_HEAP_FIGURES
    double perGame = static_cast<double>(held) / games;
    std::printf("index heap: %zu bytes, %.1f bytes per game (goal: at most %.0f, %s)\n", held,
                perGame, kGoal, perGame <= kGoal ? "met" : "over");

    // The rows and the pool as the index counts them; the rest is the allocator's own words
    // around each block and the index's small parts (its path).
    const std::size_t rows = static_cast<std::size_t>(index.Size()) * sizeof(velmora::RowEntry);
    const std::size_t pool = index.HeapBytes() - rows;
    std::printf("what it is made of (%zu bytes a row):\n", sizeof(velmora::RowEntry));
    Share("rows: offset, result, set-up flag, 8 text references", rows, held, games);
    Share("text pool: each distinct text once, as bytes", pool, held, games);
    std::printf("  texts: %zu distinct, %.1f bytes on average with their length\n", index.Texts(),
                static_cast<double>(pool) / index.Texts());
    const std::size_t accounted = rows + pool;
    Share("other (file path, block headers)", held > accounted ? held - accounted : 0, held, games);
#else
    std::printf("index heap: n/a (needs glibc malloc statistics)\n");
#endif
    return 0;
}
