// GameRow: one game of a game list, kept as its file's bytes and shown in UTF-16 on demand.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "game/GameHeader.h"
#include "game/RowTextPool.h"

namespace velmora {

class GameIndex;

// The texts a game list keeps for each game, as its tags name them; Start is the first text of
// the move section.
enum class RowField : std::uint8_t { White, Black, Event, Date, Round, Site, Eco, Start };
constexpr int kRowFieldCount = 8;

// The start text keeps this many UTF-16 characters of its line.
constexpr std::size_t kStartTextLength = 30;

// A row's text converted to UTF-16, or no value. Tag values fit the buffer (a PGN line holds
// at most 255 bytes, and a byte never gives more than one character); longer texts, which only
// a game saved with long tags brings, go to the heap.
class RowText {
  public:
    // Converts bytes of the ANSI code page on their own, keeping at most maxUnits characters.
    static RowText FromBytes(std::string_view bytes, std::size_t maxUnits = std::u16string::npos);
    // A text that needs no conversion.
    static RowText FromText(std::u16string_view units);
    // No value.
    RowText() = default;
    RowText(const RowText& other) : RowText() { *this = other; }
    RowText& operator=(const RowText& other);

    bool IsNull() const { return null_; }
    // The text; no value reads as empty.
    std::u16string_view View() const {
        return longer_.empty() ? std::u16string_view(units_, size_) : std::u16string_view(longer_);
    }

  private:
    static constexpr std::size_t kUnits = 256;
    char16_t units_[kUnits];
    std::size_t size_ = 0;
    bool null_ = true;
    std::u16string longer_;
};

// A game as the file scanner hands it on: where its first tag line starts, its result, and
// the bytes of the tag values a game list shows, valid only while the scanner's callback runs.
struct ScannedGame {
    std::uint32_t offset = 0;
    ResultCode result = kResultUnset;
    // From a set-up position: the start text is "(Position)".
    bool setUp = false;
    std::array<std::string_view, kRowFieldCount> bytes{};
    std::uint8_t present = 0;  // one bit per RowField; a field without its bit has no value
    // Where game search met the wanted position: +n after White's move n, -n after Black's,
    // 0 at the start.
    std::int32_t foundAt = 0;

    bool Has(RowField field) const { return (present >> static_cast<int>(field)) & 1; }
    void Set(RowField field, std::string_view text) {
        bytes[static_cast<int>(field)] = text;
        present |= static_cast<std::uint8_t>(1 << static_cast<int>(field));
    }
    // The field in UTF-16, as the game list shows it.
    RowText Text(RowField field) const;
};

// One game as a GameIndex stores it: 40 bytes, its texts named by their place in the index's
// pool (RowTextPool::kNoText for no value).
struct RowEntry {
    std::uint32_t offset;
    std::uint32_t texts[kRowFieldCount];
    std::uint8_t result;  // the low 8 bits of the code
    std::uint8_t setUp;
};
static_assert(sizeof(RowEntry) == 40);

// One game of a GameIndex: a view that reads the index's storage, valid while the index is
// neither changed nor destroyed. A default GameRow stands for no game.
class GameRow {
  public:
    GameRow() = default;
    explicit operator bool() const { return entry_ != nullptr; }

    // Where the row stands in its index, from 0.
    int Position() const { return position_; }
    std::uint32_t Offset() const { return entry_->offset; }
    // The low 8 bits of the result code (0 to 3 for every scanned game).
    ResultCode Result() const { return entry_->result; }
    bool IsSetUp() const { return entry_->setUp != 0; }
    bool Has(RowField field) const {
        return entry_->texts[static_cast<int>(field)] != RowTextPool::kNoText;
    }
    // The field's bytes as in the file (empty when it has no value).
    std::string_view Bytes(RowField field) const {
        const std::uint32_t text = entry_->texts[static_cast<int>(field)];
        return text == RowTextPool::kNoText ? std::string_view() : pool_->Get(text);
    }
    // The field in UTF-16: each tag value converted on its own, the start text cut to 30
    // characters, "(Position)" for a game from a set-up position.
    RowText Text(RowField field) const;
    // The same text as bytes when every byte is ASCII, which the ANSI code page turns into the
    // same characters, so that nothing needs converting. Returns false when the field holds
    // another byte (Text converts it); a field with no value gives "".
    bool AsciiText(RowField field, std::string_view* text) const {
        if (field == RowField::Start && IsSetUp()) {
            *text = "(Position)";
            return true;
        }
        const std::uint32_t reference = entry_->texts[static_cast<int>(field)];
        if (reference == RowTextPool::kNoText) {
            *text = {};
            return true;
        }
        bool ascii = false;
        const std::string_view bytes = pool_->Get(reference, &ascii);
        if (!ascii || !asciiKept_) return false;
        *text = field == RowField::Start ? bytes.substr(0, kStartTextLength) : bytes;
        return true;
    }
    const char16_t* ResultText(ResultForm form) const { return ResultTextOf(Result(), form); }
    // The path of the game's file.
    const std::u16string& FilePath() const;
    // Where game search met its position (0 outside search results).
    std::int32_t FoundAt() const;

  private:
    friend class GameIndex;
    GameRow(const GameIndex* index, const RowEntry* entry, const RowTextPool* pool, int position,
            bool asciiKept)
        : index_(index), entry_(entry), pool_(pool), position_(position), asciiKept_(asciiKept) {}

    const GameIndex* index_ = nullptr;
    const RowEntry* entry_ = nullptr;
    const RowTextPool* pool_ = nullptr;
    int position_ = 0;
    bool asciiKept_ = false;  // the ANSI code page turns each ASCII byte into the same character
};

// True when the ANSI code page turns each ASCII byte into the same character, as every code
// page a Windows system runs with does; asked of the conversion itself, once.
bool AnsiKeepsAscii();

}  // namespace velmora
