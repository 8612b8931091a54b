// GameIndex: scanning a PGN file for its games; keeping offsets right after a save.
#include "game/GameIndex.h"

#include <cstring>

#include "game/Game.h"
#include "game/PgnLineReader.h"
#include "game/PgnParser.h"
#include "game/UserMessages.h"
#include "platform/CodePage.h"
#include "platform/SystemError.h"

namespace velmora {

namespace {

std::unique_ptr<GameSummary> NewResetSummary() {
    auto summary = std::make_unique<GameSummary>();
    summary->Reset();
    return summary;
}

bool StartsWith(const char* line, const char* prefix) {
    return std::strncmp(line, prefix, std::strlen(prefix)) == 0;
}

enum class ScannedTag { Other, White, Black, Result, Event, Round, Date, Site, Eco, SetUp };

// Which of the tags the game list shows a tag line is, by its exact (case-sensitive) prefix.
// No prefix is the start of another, so the second character is enough to pick the one to
// compare.
ScannedTag Classify(const char* line) {
    switch (line[1]) {
        case 'W':
            return StartsWith(line, "[White ") ? ScannedTag::White : ScannedTag::Other;
        case 'B':
            return StartsWith(line, "[Black ") ? ScannedTag::Black : ScannedTag::Other;
        case 'R':
            if (StartsWith(line, "[Result ")) return ScannedTag::Result;
            return StartsWith(line, "[Round ") ? ScannedTag::Round : ScannedTag::Other;
        case 'E':
            if (StartsWith(line, "[Event ")) return ScannedTag::Event;
            return StartsWith(line, "[ECO ") ? ScannedTag::Eco : ScannedTag::Other;
        case 'D':
            return StartsWith(line, "[Date ") ? ScannedTag::Date : ScannedTag::Other;
        case 'S':
            if (StartsWith(line, "[Site ")) return ScannedTag::Site;
            return StartsWith(line, "[SetUp ") ? ScannedTag::SetUp : ScannedTag::Other;
        default:
            return ScannedTag::Other;
    }
}

// Stores the value of one of the tag lines the game list shows; other tags are passed over.
// Returns true for a SetUp tag. The value is the text between the first double quote and the
// next (or the line's end), converted on its own: a quote byte is never part of a character.
// Values come from the pool, so a text repeated across games is stored once.
bool ReadScannedTag(GameSummary& summary, const char* line, TextPool& pool) {
    ScannedTag tag = Classify(line);
    if (tag == ScannedTag::Other) return false;
    if (tag == ScannedTag::SetUp) return true;
    std::string_view bytes(line, std::strlen(line));
    std::size_t open = bytes.find('"');
    std::string_view quoted;
    if (open != std::string_view::npos) {
        quoted = bytes.substr(open + 1);
        quoted = quoted.substr(0, quoted.find('"'));
    }
    char16_t value[PgnLineReader::kLineSize];
    std::size_t count = platform::AnsiToWide(quoted, value, PgnLineReader::kLineSize - 1);
    value[count] = 0;
    std::u16string_view text(value, count);
    switch (tag) {
        case ScannedTag::White:
            summary.white = pool.Intern(text, 1);
            break;
        case ScannedTag::Black:
            summary.black = pool.Intern(text, 2);
            break;
        case ScannedTag::Result:
            summary.SetResultText(value);
            break;
        case ScannedTag::Event:
            summary.event = pool.Intern(text, 3);
            break;
        case ScannedTag::Round:
            summary.round = pool.Intern(text, 4);
            break;
        case ScannedTag::Date:
            summary.date = pool.Intern(text, 5);
            break;
        case ScannedTag::Site:
            summary.site = pool.Intern(text, 6);
            break;
        default:
            summary.eco = pool.Intern(text, 7);
            break;
    }
    return false;
}

}  // namespace

// Hands each game to onGame once its White, Black and Result tags were seen and the first
// line of its move section was read; that line, cut to 30 characters, is the start text.
void ScanFile(PgnLineReader& reader, int* count, const OnGameFound& onGame) {
    reader.Seek(0);
    std::uint32_t lineStart = 0;
    bool inGame = false;
    bool setUp = false;
    std::unique_ptr<GameSummary> current;
    TextPool pool;
    static const OwnedText position(u"(Position)");
    char line[PgnLineReader::kLineSize];
    int length = 0;
    while (reader.ReadLine(line, &length)) {
        if (line[0] == '[') {
            if (!inGame) {
                if (!current) current = NewResetSummary();
                current->offset = lineStart;
                inGame = true;
            }
            if (ReadScannedTag(*current, line, pool)) setUp = true;
        } else if (current && current->IsComplete()) {
            if (!setUp && (line[0] == '\r' || line[0] == '\n')) break;
            if (setUp) {
                current->start = position;
            } else {
                char16_t start[GameSummary::kStartLength];
                std::size_t units = platform::AnsiToWide(std::string_view(line, std::strlen(line)),
                                                         start, GameSummary::kStartLength);
                current->start = pool.Intern(std::u16string_view(start, units), 8);
            }
            ++*count;
            if (!onGame(std::move(current), reader.Position())) break;
            current = NewResetSummary();
            inGame = false;
            setUp = false;
        }
        lineStart = reader.Position();
    }
}

GameIndex::GameIndex(const char16_t* path)
    : path_(std::make_shared<const std::u16string>(path ? path : u"")) {}

GameIndex::~GameIndex() = default;

void GameIndex::Clear() {
    first_.reset();
    last_ = nullptr;
    count_ = 0;
}

int GameIndex::Load(platform::FileSystem& fileSystem) {
    Clear();
    platform::ErrorCode error = 0;
    std::unique_ptr<platform::File> file =
        fileSystem.Open(*path_, platform::OpenMode::ReadExclusive, &error);
    if (!file) {
        ShowMessage(platform::ErrorTextOrCode(error), u"Unable to open file", MessageIcon::Error);
        return 0;
    }
    PgnLineReader reader(*file);
    int count = 0;
    ScanFile(reader, &count, [this](std::unique_ptr<GameSummary> summary, std::uint32_t at) {
        AddEntry(std::move(summary));
        if (progress_) progress_(at);
        return 1;
    });
    count_ = count;
    return 1;
}

void GameIndex::AddEntry(std::unique_ptr<GameSummary> summary) {
    if (summary->FilePath().empty() && !path_->empty()) summary->SetFilePath(path_);
    GameSummary* added = summary.get();
    if (last_ != nullptr) {
        last_->next = std::move(summary);
    } else {
        first_ = std::move(summary);
    }
    last_ = added;
}

GameSummary* GameIndex::GameSaved(Game& game, GameSummary* entry) {
    GameSummary* next = entry->next.get();
    if (next != nullptr) next->offset = game.endOffset;
    return next;
}

void GameIndex::TextMoved(Game&, std::int64_t) {}

// Adds an entry that copies the appended game's tags and offsets; the game itself stays with
// whoever holds it.
void GameIndex::GameAdded(const Game& game) {
    auto summary = std::make_unique<GameSummary>();
    static_cast<GameHeader&>(*summary) = game;
    summary->eco = game.eco;
    summary->start = game.start;
    summary->offset = game.offset;
    summary->endOffset = game.endOffset;
    AddEntry(std::move(summary));
    ++count_;
}

const char16_t* GameIndex::FileName() const {
    std::size_t separator = path_->find_last_of(u"\\/");
    return path_->c_str() + (separator == std::u16string::npos ? 0 : separator + 1);
}

GameSummary* GameSearchResults::GameSaved(Game&, GameSummary* entry) {
    return entry->next.get();
}

// Finds the saved game's entry by file and offset, then moves the offsets of the entries that
// follow it in the same file. The walk stops at the first entry of another file.
void GameSearchResults::TextMoved(Game& game, std::int64_t delta) {
    GameSummary* entry = first_.get();
    while (entry != nullptr &&
           !(entry->offset == game.offset &&
             EqualsIgnoringCase(entry->FilePath().c_str(), game.FilePath().c_str()))) {
        entry = entry->next.get();
    }
    if (entry == nullptr) return;
    for (GameSummary* later = entry->next.get();
         later && EqualsIgnoringCase(later->FilePath().c_str(), game.FilePath().c_str());
         later = later->next.get()) {
        later->offset = static_cast<std::uint32_t>(later->offset + delta);
    }
}

}  // namespace velmora
