// RowTextPool: the bytes of a game list's texts in one block, each distinct text stored once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "game/ShortBytes.h"

namespace velmora {

// True when no byte of bytes has its high bit set.
bool IsAscii(std::string_view bytes);

// Texts are appended, never changed or removed, and named by where they start in the block.
// Each is stored as a header, its length times 2 plus 1 when a byte of it is not ASCII (7 bits
// a byte, low bits first), then its bytes. While a file is
// scanned a hash table finds the texts already stored, so that an event, a site or a player
// met in many games takes its bytes once; Compact drops the table once the list is complete.
class RowTextPool {
  public:
    static constexpr std::uint32_t kNoText = 0xFFFFFFFF;
    // The kinds of text (one per field of a row) whose last value is remembered: games in a
    // row often share the event, site, date or a player, found then without hashing.
    static constexpr int kKinds = 8;

    // Returns the reference of a text equal to bytes, storing it when it is new. kind names
    // the field it comes from (0 to kKinds - 1).
    std::uint32_t Intern(std::string_view bytes, int kind) {
        const std::uint32_t recent = recent_[kind];
        if (recent != kNoText && SameBytes(Get(recent), bytes)) return recent;
        return recent_[kind] = Find(bytes);
    }
    // Stores bytes as a new text without looking for an equal one.
    std::uint32_t Append(std::string_view bytes);
    // The text a reference names; *ascii tells whether all its bytes are ASCII.
    std::string_view Get(std::uint32_t reference, bool* ascii = nullptr) const {
        const auto* at = reinterpret_cast<const unsigned char*>(bytes_.data()) + reference;
        std::uint32_t header = *at & 0x7F;
        for (int shift = 7; *at++ & 0x80; shift += 7)
            header |= static_cast<std::uint32_t>(*at & 0x7F) << shift;
        if (ascii) *ascii = (header & 1) == 0;
        return std::string_view(reinterpret_cast<const char*>(at), header >> 1);
    }

    // Sizes the hash table for about count texts before the first is stored, so that a large
    // file's scan does not grow it step by step.
    void ExpectTexts(std::size_t count);
    // Frees the hash table and trims the block to its size: later texts are appended as they
    // come.
    void Compact();
    void Clear();
    // Heap held: the block and the table, by their capacity.
    std::size_t HeapBytes() const;
    // Texts stored and the bytes of the block in use.
    std::size_t Texts() const { return texts_; }
    std::size_t Bytes() const { return bytes_.size(); }

  private:
    // Intern without the kind's last text: looks the text up in the table, or appends it.
    std::uint32_t Find(std::string_view bytes);
    void Grow();

    std::string bytes_;
    std::vector<std::uint32_t> table_;  // references, open addressing; empty once compacted
    std::size_t texts_ = 0;
    bool compacted_ = false;
    std::uint32_t recent_[kKinds] = {kNoText, kNoText, kNoText, kNoText,
                                     kNoText, kNoText, kNoText, kNoText};
};

}  // namespace velmora
