// Heap held by a loaded GameIndex: bytes per game, what they are made of, and the load time.
//
// Usage: velmora-bench-index [FILE.pgn]   (default: the largest .pgn of ../shared/data)
//
// The heap is read with glibc's mallinfo2() before and after Load(), with the index kept alive,
// so the figure is what the game list really costs: the summaries, their texts and the
// allocator's own words around each block. Elsewhere (another C library, a sanitizer build)
// the heap figures print as n/a and only the count and load time are measured.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <unordered_set>
#include <vector>

#include "game/GameIndex.h"
#include "platform/CodePage.h"

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
#include <malloc.h>
#define VELMORA_HEAP_FIGURES 1
#else
#define VELMORA_HEAP_FIGURES 0
#endif

namespace {

using velmora::GameSummary;
using velmora::OwnedText;

#if VELMORA_HEAP_FIGURES
// Returns the bytes of the heap in use: small blocks plus those glibc maps on their own.
std::size_t HeapInUse() {
    struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// Returns what the block at pointer takes from the heap, header word included.
std::size_t BlockBytes(const void* pointer) {
    return malloc_usable_size(const_cast<void*>(pointer)) + sizeof(std::size_t);
}

// Tallies of the blocks an index holds, gathered by walking its summaries. Texts are shared
// between games, so each block is counted once however many summaries refer to it.
struct Tally {
    std::size_t summaryBlocks = 0;  // heap taken by the GameSummary objects
    std::size_t texts = 0;          // OwnedText values present
    std::size_t blocks = 0;         // distinct text blocks among them
    std::size_t textChars = 0;      // characters plus terminators of those blocks, in bytes
    std::size_t textBlocks = 0;     // heap taken by those blocks
    std::size_t tags = 0;           // extra tag entries
    std::size_t tagBlocks = 0;      // heap taken by the ExtraTag objects
    std::unordered_set<const void*> seen;
};

// Adds one text to the tally; its block only the first time it is met.
void CountText(const OwnedText& text, Tally& tally) {
    if (text.IsNull()) return;
    ++tally.texts;
    if (!tally.seen.insert(text.Block()).second) return;
    ++tally.blocks;
    tally.textChars += (text.View().size() + 1) * sizeof(char16_t);
    tally.textBlocks += BlockBytes(text.Block());
}

// Walks the summaries of a loaded index and adds up the blocks each one holds.
Tally Walk(const velmora::GameIndex& index) {
    Tally tally;
    for (const GameSummary* s = index.First(); s != nullptr; s = s->next.get()) {
        tally.summaryBlocks += BlockBytes(s);
        for (const OwnedText* text :
             {&s->white, &s->black, &s->event, &s->date, &s->round, &s->site, &s->whiteEmail,
              &s->blackEmail, &s->lastMoveDate, &s->eco, &s->start}) {
            CountText(*text, tally);
        }
        for (const velmora::ExtraTag* tag = s->FirstTag(); tag; tag = tag->next.get()) {
            ++tally.tags;
            tally.tagBlocks += BlockBytes(tag);
            CountText(tag->name, tally);
            CountText(tag->value, tally);
        }
    }
    return tally;
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
    std::printf("index heap: %zu bytes, %.1f bytes per game (goal: at most 300, %s)\n", held,
                perGame, perGame <= 300 ? "met" : "over");

    Tally t = Walk(index);
    std::size_t accounted = t.summaryBlocks + t.textBlocks + t.tagBlocks;
    std::printf("what it is made of (sizeof(GameSummary) = %zu):\n", sizeof(GameSummary));
    Share("GameSummary objects, one block each", t.summaryBlocks, held, games);
    std::printf("  texts: %zu values in %zu shared blocks, %.1f characters on average\n", t.texts,
                t.blocks, static_cast<double>(t.textChars) / sizeof(char16_t) / t.blocks - 1);
    Share("  characters and terminators (UTF-16)", t.textChars, held, games);
    Share("  block headers, counts, padding", t.textBlocks - t.textChars, held, games);
    if (t.tags != 0) Share("ExtraTag objects", t.tagBlocks, held, games);
    Share("other (file path, list bookkeeping)", held > accounted ? held - accounted : 0, held,
          games);
#else
    std::printf("index heap: n/a (needs glibc malloc statistics)\n");
#endif
    return 0;
}
