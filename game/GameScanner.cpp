// ScanFile: tag lines read by their exact prefixes, values kept as bytes, moves passed over.
#include "game/GameScanner.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>

#include "game/PgnLineReader.h"
#include "game/ShortBytes.h"
#include "platform/CodePage.h"

namespace velmora {

namespace {

bool StartsWith(const char* line, std::uint32_t length, std::string_view prefix) {
    return length >= prefix.size() && std::memcmp(line, prefix.data(), prefix.size()) == 0;
}

// Marks the double quote and NUL bytes of a word with their high bits: bits above a marked
// byte may be set by a borrow, never bits below it, so the lowest mark is a true one.
std::uint64_t QuotesAndNuls(std::uint64_t word) {
    constexpr std::uint64_t kOnes = 0x0101010101010101ull;
    const std::uint64_t quotes = word ^ (kOnes * '"');
    return (((word - kOnes) & ~word) | ((quotes - kOnes) & ~quotes)) & (kOnes * 0x80);
}

// Returns the first double quote or NUL byte in [from, end), or end, reading eight bytes at a
// time where the first byte in memory is the lowest of a word; the last word ends at end and
// may start before from, but not before line.
const char* FindQuoteOrNul(const char* line, const char* from, const char* end) {
    if constexpr (std::endian::native == std::endian::little) {
        for (; end - from >= 8; from += 8) {
            std::uint64_t word;
            std::memcpy(&word, from, 8);
            if (const std::uint64_t found = QuotesAndNuls(word)) {
                return from + std::countr_zero(found) / 8;
            }
        }
        if (from == end) return end;
        if (end - line >= 8) {
            std::uint64_t word;
            std::memcpy(&word, end - 8, 8);
            const auto before = static_cast<int>(from - (end - 8));  // bytes already looked at
            const std::uint64_t found = QuotesAndNuls(word) >> (8 * before);
            return found != 0 ? from + std::countr_zero(found) / 8 : end;
        }
    }
    while (from < end && *from != '"' && *from != 0)
        ++from;
    return from;
}

// The result of a Result tag's value. ASCII bytes are their own characters, so the usual texts
// are compared as bytes; any other byte (as in "½-½") is converted first.
ResultCode ResultOf(std::string_view bytes) {
    if (!IsAscii(bytes) || !AnsiKeepsAscii()) {
        char16_t value[PgnLineReader::kLineSize];
        const std::size_t units = platform::AnsiToWide(bytes, value, PgnLineReader::kLineSize - 1);
        return ResultFromText(std::u16string_view(value, units));
    }
    if (bytes == "1-0") return kWhiteWins;
    if (bytes == "0-1") return kBlackWins;
    return bytes == "1/2-1/2" ? kDraw : kResultUnknown;
}

enum class ScannedTag { Other, White, Black, Result, Event, Round, Date, Site, Eco, SetUp };

// The length of each tag's prefix, "[White " and so on.
constexpr std::uint32_t kPrefixLength[] = {0, 7, 7, 8, 7, 7, 6, 6, 5, 7};

// Which of the tags the game list shows a tag line is, by its exact (case-sensitive) prefix.
// No prefix is the start of another, so the second character is enough to pick the one to
// compare.
ScannedTag Classify(const char* line, std::uint32_t length) {
    if (length < 2) return ScannedTag::Other;
    switch (line[1]) {
        case 'W':
            return StartsWith(line, length, "[White ") ? ScannedTag::White : ScannedTag::Other;
        case 'B':
            return StartsWith(line, length, "[Black ") ? ScannedTag::Black : ScannedTag::Other;
        case 'R':
            if (StartsWith(line, length, "[Result ")) return ScannedTag::Result;
            return StartsWith(line, length, "[Round ") ? ScannedTag::Round : ScannedTag::Other;
        case 'E':
            if (StartsWith(line, length, "[Event ")) return ScannedTag::Event;
            return StartsWith(line, length, "[ECO ") ? ScannedTag::Eco : ScannedTag::Other;
        case 'D':
            return StartsWith(line, length, "[Date ") ? ScannedTag::Date : ScannedTag::Other;
        case 'S':
            if (StartsWith(line, length, "[Site ")) return ScannedTag::Site;
            return StartsWith(line, length, "[SetUp ") ? ScannedTag::SetUp : ScannedTag::Other;
        default:
            return ScannedTag::Other;
    }
}

RowField FieldOf(ScannedTag tag) {
    switch (tag) {
        case ScannedTag::White:
            return RowField::White;
        case ScannedTag::Black:
            return RowField::Black;
        case ScannedTag::Event:
            return RowField::Event;
        case ScannedTag::Round:
            return RowField::Round;
        case ScannedTag::Date:
            return RowField::Date;
        case ScannedTag::Site:
            return RowField::Site;
        default:
            return RowField::Eco;
    }
}

// The line up to its first NUL byte: what was read as a C string. Lines rarely hold one.
std::uint32_t TextLength(const char* line, std::uint32_t length) {
    const void* nul = std::memchr(line, 0, length);
    return nul ? static_cast<std::uint32_t>(static_cast<const char*>(nul) - line) : length;
}

// The game being read, with a buffer for each value its tag lines give.
class GameInProgress {
  public:
    // The state each game starts from, that of GameHeader::Reset: no White, Black, ECO or
    // result, Date "??\??", Event, Site and Round "?".
    void Reset() {
        game = ScannedGame();
        game.Set(RowField::Event, "?");
        game.Set(RowField::Site, "?");
        game.Set(RowField::Round, "?");
        game.Set(RowField::Date, "??\\??");
    }
    // True once a White, a Black and a Result tag were seen.
    bool IsComplete() const {
        return game.Has(RowField::White) && game.Has(RowField::Black) &&
               game.result != kResultUnset;
    }

    // Stores the value of one of the tag lines the game list shows; other tags are passed over.
    // Returns true for a SetUp tag. The value is the text between the first double quote and
    // the next (or the line's end), kept as bytes: a quote byte is never part of a character.
    bool ReadTag(const char* line, std::uint32_t length) {
        const ScannedTag tag = Classify(line, length);
        if (tag == ScannedTag::Other) return false;
        if (tag == ScannedTag::SetUp) return true;
        // The prefix holds neither a quote nor a NUL byte, so the search starts behind it.
        const char* end = line + length;
        const char* open = line + kPrefixLength[static_cast<int>(tag)];
        if (open != end && *open != '"') open = FindQuoteOrNul(line, open, end);
        std::string_view quoted;
        if (open != end && *open == '"') {
            ++open;
            quoted = std::string_view(open, FindQuoteOrNul(line, open, end) - open);
        }
        if (tag == ScannedTag::Result) {
            game.result = ResultOf(quoted);
            return false;
        }
        Keep(FieldOf(tag), quoted);
        return false;
    }

    // Takes the first line of the move section as the start text: as many bytes as its first
    // 30 characters can take in the ANSI code page. A set-up game's start is "(Position)".
    void SetStart(const char* line, std::uint32_t length, bool setUp) {
        game.setUp = setUp;
        if (setUp) return;
        static const std::size_t maxBytes = kStartTextLength * platform::MaxAnsiCharBytes();
        Keep(RowField::Start,
             std::string_view(line, std::min<std::size_t>(TextLength(line, length), maxBytes)));
    }

    ScannedGame game;

  private:
    void Keep(RowField field, std::string_view bytes) {
        char* value = values_[static_cast<int>(field)];
        CopyBytes(value, bytes);
        game.Set(field, std::string_view(value, bytes.size()));
    }

    char values_[kRowFieldCount][PgnLineReader::kLineSize];
};

}  // namespace

// Hands each game to onGame once its White, Black and Result tags were seen and the first
// line of its move section was read; that line, cut to 30 characters, is the start text. The
// lines that are not tag lines after it, and those before a game is complete, are passed over
// to the next tag line.
void ScanFile(PgnLineReader& reader, int* count, const OnGameFound& onGame) {
    using After = PgnLineReader::After;
    reader.Seek(0);
    bool inGame = false;
    bool setUp = false;
    bool started = false;  // a game is being read (from the first tag line of the file on)
    GameInProgress current;
    reader.ForEachLine(
        [&](const char* line, std::uint32_t length, std::uint32_t lineStart, std::uint32_t next) {
            if (length != 0 && line[0] == '[') {
                if (!inGame) {
                    if (!started) current.Reset();
                    started = true;
                    current.game.offset = lineStart;
                    inGame = true;
                }
                if (current.ReadTag(line, length)) setUp = true;
                return After::NextLine;
            }
            if (!started || !current.IsComplete()) return After::SkipToTagLine;
            if (!setUp && length != 0 && (line[0] == '\r' || line[0] == '\n')) return After::Stop;
            current.SetStart(line, length, setUp);
            ++*count;
            if (!onGame(current.game, next)) return After::Stop;
            current.Reset();
            inGame = false;
            setUp = false;
            return After::SkipToTagLine;
        });
}

}  // namespace velmora
