// TranspositionTable: results of earlier searches by position key, in a table of fixed size.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/search/Move.h"

namespace velmora::engine {

// Scores beyond kMateBound mean a forced mate: kMate - n is mate in n plies from the root.
constexpr int kMate = 32000;
constexpr int kMateBound = kMate - 1000;
constexpr int kInfinite = 32500;

enum class Bound : std::uint8_t { None, Upper, Lower, Exact };

class TranspositionTable {
  public:
    // Sixteen bytes: the slot comes from the key's low bits, and its high half is kept to tell
    // positions apart. A hash move from a rare false match is harmless: moves are only ever
    // matched against the legal ones.
    struct Entry {
        std::uint32_t check = 0;
        std::uint16_t move = 0;
        std::int16_t score = 0;
        std::int16_t eval = 0;
        std::int8_t depth = 0;
        Bound bound = Bound::None;
        std::uint8_t age = 0;
    };
    static_assert(sizeof(Entry) == 16);

    // The default is small: a handheld has little memory to spare.
    static constexpr int kDefaultMegabytes = 8;

    explicit TranspositionTable(int megabytes = kDefaultMegabytes);
    // Sizes the table to the largest power of two of entries that fits in megabytes (at least
    // one megabyte) and empties it.
    void Resize(int megabytes);
    void Clear();
    // Marks a new search: entries of older searches are replaced first.
    void NewSearch() { ++age_; }

    // The entry for key, or null. Its mate scores count from the entry's own position:
    // ScoreFromTable makes them count from the root again.
    const Entry* Probe(std::uint64_t key) const {
        const Entry& entry = entries_[key & mask_];
        return entry.check == Check(key) && entry.bound != Bound::None ? &entry : nullptr;
    }
    // Stores a result, keeping a deeper one of the same search for another position.
    void Store(std::uint64_t key, Move move, int score, int eval, int depth, Bound bound, int ply);
    // Permille of a sample of entries written by the current search.
    int Fullness() const;
    int Megabytes() const { return megabytes_; }

  private:
    static std::uint32_t Check(std::uint64_t key) { return static_cast<std::uint32_t>(key >> 32); }

    std::vector<Entry> entries_;
    std::uint64_t mask_ = 0;
    std::uint8_t age_ = 0;
    int megabytes_ = 0;
};

// Converts a mate score between "from the root" (search) and "from this node" (table).
inline int ScoreToTable(int score, int ply) {
    return score >= kMateBound ? score + ply : score <= -kMateBound ? score - ply : score;
}
inline int ScoreFromTable(int score, int ply) {
    return score >= kMateBound ? score - ply : score <= -kMateBound ? score + ply : score;
}

}  // namespace velmora::engine
