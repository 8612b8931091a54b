// GameIndex: scanning a file into rows, reading them back, keeping offsets right after a save.
#include "game/GameIndex.h"

#include "game/GameHeader.h"
#include "game/GameScanner.h"
#include "game/PgnLineReader.h"
#include "game/UserMessages.h"
#include "platform/CodePage.h"
#include "platform/SystemError.h"

namespace velmora {

GameIndex::GameIndex(const char16_t* path)
    : path_(std::make_shared<const std::u16string>(path ? path : u"")),
      asciiKept_(AnsiKeepsAscii()) {}

GameIndex::~GameIndex() = default;

void GameIndex::Clear() {
    entries_ = std::vector<RowEntry>();
    pool_.Clear();
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
    // A game takes several hundred bytes of a file and brings about one new text.
    std::int64_t size = 0;
    if (file->Size(&size) == 0) pool_.ExpectTexts(static_cast<std::size_t>(size / 512));
    PgnLineReader reader(*file);
    int count = 0;
    ScanFile(reader, &count, [this](ScannedGame& game, std::uint32_t at) {
        AddEntry(game);
        if (progress_) progress_(at);
        return 1;
    });
    count_ = count;
    Compact();
    return 1;
}

// Stores the texts through the pool, so that a text met in many games is kept once. A game from
// a set-up position keeps no start text: its row shows "(Position)".
void GameIndex::AddEntry(const ScannedGame& game) {
    RowEntry entry{};
    entry.offset = game.offset;
    entry.result = static_cast<std::uint8_t>(game.result);
    entry.setUp = game.setUp ? 1 : 0;
    for (int field = 0; field < kRowFieldCount; ++field) {
        const bool kept = game.Has(static_cast<RowField>(field)) &&
                          !(game.setUp && field == static_cast<int>(RowField::Start));
        entry.texts[field] = kept ? pool_.Intern(game.bytes[field], field) : RowTextPool::kNoText;
    }
    entries_.push_back(entry);
}

void GameIndex::Compact() {
    entries_.shrink_to_fit();
    pool_.Compact();
}

std::size_t GameIndex::HeapBytes() const {
    return entries_.capacity() * sizeof(RowEntry) + pool_.HeapBytes();
}

void GameIndex::TextMoved(const std::u16string&, std::uint32_t, std::int64_t) {}

// Adds a row that copies the appended game's tags, start text and offset; the game itself stays
// with whoever holds it. Its texts are stored as the writer put them in the file.
void GameIndex::GameAdded(const GameSummary& game) {
    ScannedGame added;
    added.offset = game.offset;
    added.result = game.result;
    const OwnedText* texts[kRowFieldCount] = {&game.white, &game.black, &game.event, &game.date,
                                              &game.round, &game.site,  &game.eco,   &game.start};
    std::string bytes[kRowFieldCount];
    for (int field = 0; field < kRowFieldCount; ++field) {
        if (texts[field]->IsNull()) continue;
        bytes[field] = platform::WideToAnsi(texts[field]->View());
        added.Set(static_cast<RowField>(field), bytes[field]);
    }
    AddEntry(added);
    ++count_;
}

const char16_t* GameIndex::FileName() const {
    std::size_t separator = path_->find_last_of(u"\\/");
    return path_->c_str() + (separator == std::u16string::npos ? 0 : separator + 1);
}

// Finds the saved game's row by file and offset, then moves the offsets of the rows that
// follow it in the same file. The walk stops at the first row of another file.
void GameSearchResults::TextMoved(const std::u16string& path, std::uint32_t offset,
                                  std::int64_t delta) {
    int position = 0;
    while (position < Size() && !(entries_[position].offset == offset &&
                                  EqualsIgnoringCase(RowPath(position).c_str(), path.c_str()))) {
        ++position;
    }
    for (++position;
         position < Size() && EqualsIgnoringCase(RowPath(position).c_str(), path.c_str());
         ++position) {
        entries_[position].offset = static_cast<std::uint32_t>(entries_[position].offset + delta);
    }
}

// Rows of one file come one after the other, so the file is looked for among the last one only.
void GameSearchResults::AddEntry(const ScannedGame& game,
                                 const std::shared_ptr<const std::u16string>& path) {
    if (paths_.empty() || paths_.back() != path) paths_.push_back(path);
    found_.resize(entries_.size(), Found{kNoFile, 0});
    GameIndex::AddEntry(game);
    found_.push_back(Found{static_cast<std::uint32_t>(paths_.size() - 1), game.foundAt});
}

// Rows added by GameAdded have no file of their own: they take the results' path, which is empty.
const std::u16string& GameSearchResults::RowPath(int position) const {
    if (position >= static_cast<int>(found_.size()) || found_[position].file == kNoFile) {
        return *path_;
    }
    return *paths_[found_[position].file];
}

std::int32_t GameSearchResults::RowFoundAt(int position) const {
    return position < static_cast<int>(found_.size()) ? found_[position].foundAt : 0;
}

// A row reads its file and search position from the index that holds it.
const std::u16string& GameRow::FilePath() const {
    return index_->RowPath(position_);
}

std::int32_t GameRow::FoundAt() const {
    return index_->RowFoundAt(position_);
}

}  // namespace velmora
