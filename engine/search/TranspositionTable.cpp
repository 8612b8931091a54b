// TranspositionTable: sizing and the replacement rule.
#include "engine/search/TranspositionTable.h"

#include <algorithm>

namespace velmora::engine {

TranspositionTable::TranspositionTable(int megabytes) {
    Resize(megabytes);
}

void TranspositionTable::Resize(int megabytes) {
    megabytes = std::clamp(megabytes, 1, 4096);
    std::uint64_t count = 1;
    while (count * 2 * sizeof(Entry) <= static_cast<std::uint64_t>(megabytes) << 20)
        count *= 2;
    megabytes_ = megabytes;
    entries_.assign(0, Entry{});
    entries_.shrink_to_fit();
    entries_.assign(count, Entry{});
    mask_ = count - 1;
}

void TranspositionTable::Clear() {
    std::fill(entries_.begin(), entries_.end(), Entry{});
    age_ = 0;
}

void TranspositionTable::Store(std::uint64_t key, Move move, int score, int eval, int depth,
                               Bound bound, int ply) {
    Entry& entry = entries_[key & mask_];
    // Keep a deeper result of this search about another position; anything from an older
    // search, or shallower, makes room.
    const bool same = entry.check == Check(key);
    if (!same && entry.age == age_ && entry.depth > depth + 2 && bound != Bound::Exact) return;
    // A result without a move keeps the move known for the same position.
    if (move.IsNone() && same) move = Move::FromBits(entry.move);
    entry.check = Check(key);
    entry.move = move.Bits();
    entry.score = static_cast<std::int16_t>(ScoreToTable(score, ply));
    entry.eval = static_cast<std::int16_t>(eval);
    entry.depth = static_cast<std::int8_t>(std::clamp(depth, -1, 127));
    entry.bound = bound;
    entry.age = age_;
}

int TranspositionTable::Fullness() const {
    int used = 0;
    const int sample = static_cast<int>(std::min<std::uint64_t>(1000, entries_.size()));
    for (int i = 0; i < sample; ++i)
        used += entries_[i].bound != Bound::None && entries_[i].age == age_;
    return used * 1000 / sample;
}

}  // namespace velmora::engine
