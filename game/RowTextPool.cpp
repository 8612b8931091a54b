// RowTextPool: appending length-prefixed texts, and finding stored ones through a hash table.
#include "game/RowTextPool.h"

#include <cstring>

namespace velmora {
namespace {

constexpr std::size_t kFirstTableSize = 1024;

// Mixes the bytes eight at a time; texts are short, mostly under 32 bytes. The last word is
// the text's last eight bytes, overlapping the one before; a text under eight bytes is read a
// byte at a time.
std::uint64_t Hash(std::string_view bytes) {
    const std::size_t n = bytes.size();
    std::uint64_t hash = 0x9E3779B97F4A7C15ull ^ n;
    std::uint64_t last = 0;
    if (n >= 8) {
        for (std::size_t i = 0; i + 8 < n; i += 8) {
            std::uint64_t word;
            std::memcpy(&word, bytes.data() + i, 8);
            hash = (hash ^ word) * 0xBF58476D1CE4E5B9ull;
            hash ^= hash >> 29;
        }
        std::memcpy(&last, bytes.data() + n - 8, 8);
    } else {
        for (std::size_t i = 0; i < n; ++i)
            last = last << 8 | static_cast<unsigned char>(bytes[i]);
    }
    hash = (hash ^ last) * 0x94D049BB133111EBull;
    return hash ^ (hash >> 31);
}

}  // namespace

// Tests eight bytes at a time.
bool IsAscii(std::string_view bytes) {
    std::size_t i = 0;
    std::uint64_t high = 0;
    for (; i + 8 <= bytes.size(); i += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes.data() + i, 8);
        high |= word;
    }
    for (; i < bytes.size(); ++i)
        high |= static_cast<unsigned char>(bytes[i]);
    return (high & 0x8080808080808080ull) == 0;
}

std::uint32_t RowTextPool::Append(std::string_view bytes) {
    const auto reference = static_cast<std::uint32_t>(bytes_.size());
    std::uint64_t header = bytes.size() * std::uint64_t{2} + (IsAscii(bytes) ? 0 : 1);
    do {
        const auto low = static_cast<unsigned char>(header & 0x7F);
        header >>= 7;
        bytes_.push_back(static_cast<char>(header != 0 ? (low | 0x80) : low));
    } while (header != 0);
    if (!bytes.empty()) bytes_.append(bytes);
    ++texts_;
    return reference;
}

// Once compacted there is no table: the text is appended.
std::uint32_t RowTextPool::Find(std::string_view bytes) {
    if (compacted_) return Append(bytes);
    if (texts_ * 2 >= table_.size()) Grow();
    const std::size_t mask = table_.size() - 1;
    for (std::size_t slot = Hash(bytes) & mask;; slot = (slot + 1) & mask) {
        std::uint32_t& entry = table_[slot];
        if (entry == kNoText) return entry = Append(bytes);
        if (SameBytes(Get(entry), bytes)) return entry;
    }
}

void RowTextPool::ExpectTexts(std::size_t count) {
    if (!table_.empty() || compacted_) return;
    std::size_t size = kFirstTableSize;
    while (size < 2 * count)
        size *= 2;
    table_.assign(size, kNoText);
}

// Doubles the table and places every stored text again.
void RowTextPool::Grow() {
    std::vector<std::uint32_t> old = std::move(table_);
    table_.assign(old.empty() ? kFirstTableSize : old.size() * 2, kNoText);
    const std::size_t mask = table_.size() - 1;
    for (std::uint32_t reference : old) {
        if (reference == kNoText) continue;
        std::size_t slot = Hash(Get(reference)) & mask;
        while (table_[slot] != kNoText)
            slot = (slot + 1) & mask;
        table_[slot] = reference;
    }
}

void RowTextPool::Compact() {
    table_ = std::vector<std::uint32_t>();
    bytes_.shrink_to_fit();
    compacted_ = true;
}

void RowTextPool::Clear() {
    *this = RowTextPool();
}

std::size_t RowTextPool::HeapBytes() const {
    // A string's capacity leaves out its terminator; short strings live inside the object.
    const std::size_t block = bytes_.capacity() > 15 ? bytes_.capacity() + 1 : 0;
    return block + table_.capacity() * sizeof(std::uint32_t);
}

}  // namespace velmora
