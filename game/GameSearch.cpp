// GameSearch: the per-game filter over the scanner, and the replay of the main line.
#include "game/GameSearch.h"

#include <algorithm>
#include <cstring>

#include "core/San.h"
#include "game/GameScanner.h"
#include "game/PgnLineReader.h"
#include "game/PgnParser.h"
#include "platform/CodePage.h"

namespace velmora {

namespace {

// Upper case of the letters a PGN file in the ANSI code page can hold: ASCII, Latin-1 and
// Latin Extended-A (where capitals and small letters alternate).
char16_t UpperCase(char16_t c) {
    if (c >= u'a' && c <= u'z') return c - 0x20;
    if (c < 0xE0) return c;
    if (c <= 0xFE) return c == 0xF7 ? c : c - 0x20;
    if (c == 0xFF) return 0x178;
    if ((c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177)) return c & ~1;
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return (c & 1) ? c : c - 1;
    return c;
}

}  // namespace

bool SearchCriteria::IsUsable() const {
    return !white.empty() || !black.empty() || !eco.empty() || position.has_value() || material;
}

void SearchCriteria::Truncate() {
    if (white.size() > kNameLength) white.resize(kNameLength);
    if (black.size() > kNameLength) black.resize(kNameLength);
    if (eco.size() > kEcoLength) eco.resize(kEcoLength);
}

GameSearch::GameSearch(const SearchCriteria& criteria, platform::FileSystem& fileSystem)
    : criteria_(criteria), fileSystem_(fileSystem) {}

GameSearch::~GameSearch() = default;

bool GameSearch::NameMatches(std::u16string_view text, std::u16string_view pattern) {
    if (pattern.empty() || pattern[0] != u'@') return text == pattern;
    // Only the first 64 characters of the name are looked at, upper-cased like the pattern.
    char16_t upper[SearchCriteria::kNameLength];
    std::size_t length = std::min(text.size(), SearchCriteria::kNameLength);
    for (std::size_t i = 0; i < length; ++i)
        upper[i] = UpperCase(text[i]);
    std::u16string wanted(pattern.substr(1));
    for (char16_t& c : wanted)
        c = UpperCase(c);
    return std::u16string_view(upper, length).find(wanted) != std::u16string_view::npos;
}

std::unique_ptr<GameSearchResults> GameSearch::Run(const std::vector<std::u16string>& paths,
                                                   SearchObserver* observer) {
    auto results = std::make_unique<GameSearchResults>();
    results_ = results.get();
    observer_ = observer;
    running_ = true;
    gamesSearched_ = 0;
    filesSearched_ = 0;
    found_ = 0;
    for (fileIndex_ = 0; running_ && fileIndex_ < static_cast<int>(paths.size()); ++fileIndex_) {
        path_ = std::make_shared<const std::u16string>(paths[fileIndex_]);
        platform::ErrorCode error = 0;
        std::unique_ptr<platform::File> file =
            fileSystem_.Open(*path_, platform::OpenMode::ReadShared, &error);
        std::int64_t size = -1;
        if (file && file->Size(&size) != 0) size = 0;
        if (observer_) observer_->FileStarted(fileIndex_, *path_, file ? size : -1, error);
        if (!file) continue;
        ++filesSearched_;
        gamesInFile_ = 0;
        PgnLineReader reader(*file);
        int count = 0;
        ScanFile(reader, &count,
                 [this](ScannedGame& game, std::uint32_t at) { return Filter(game, at); });
        replayReader_.reset();
        replayFile_.reset();
    }
    running_ = false;
    results->Compact();
    results_ = nullptr;
    observer_ = nullptr;
    return results;
}

// Tests the criteria in a fixed order, cheapest first; the replay comes last. Texts are
// converted only for the criteria that look at them.
int GameSearch::Filter(ScannedGame& game, std::uint32_t filePosition) {
    if (observer_) observer_->Progress(fileIndex_, filePosition);
    if (!running_) return 0;
    ++gamesSearched_;
    ++gamesInFile_;
    if (!criteria_.white.empty() && !PlayerMatches(game, criteria_.white, true)) return 1;
    if (!criteria_.black.empty() && !PlayerMatches(game, criteria_.black, false)) return 1;
    // A game without an ECO tag has none to equal the wanted text.
    if (!criteria_.eco.empty() && game.Text(RowField::Eco).View() != criteria_.eco) return 1;
    if (criteria_.result >= 0 && (game.result & 0xFF) != criteria_.result) return 1;
    if ((criteria_.position || criteria_.material) && !ReachesPosition(game)) return 1;
    results_->AddEntry(game, path_);
    ++found_;
    if (observer_) observer_->Found(results_->At(results_->Size() - 1), gamesInFile_);
    return 1;
}

bool GameSearch::PlayerMatches(const ScannedGame& game, const std::u16string& pattern,
                               bool whiteFirst) const {
    const RowField first = whiteFirst ? RowField::White : RowField::Black;
    const RowField other = whiteFirst ? RowField::Black : RowField::White;
    return NameMatches(game.Text(first).View(), pattern) ||
           (criteria_.ignoreColors && NameMatches(game.Text(other).View(), pattern));
}

namespace {

// Replays a game's main line on a SearchPosition until the wanted position (or material) is
// met or can no longer be. Tag lines are compared exactly, case included; a FEN needs a SetUp
// before it (any number of FEN tags may follow one). Moves are taken as written where SAN
// gives their squares (castling, pawns), without the legality test, and variations are read
// but not played.
class SearchReplay final : public PgnVisitor {
  public:
    explicit SearchReplay(SearchPosition& position) : position_(position) {}

    PgnError OnTagLine(std::string_view line) override {
        if (line.starts_with("[White ")) {
            whiteSeen_ = true;
        } else if (line.starts_with("[SetUp \"1\"]")) {
            setUpPending_ = true;
        } else if (line.starts_with("[FEN ")) {
            if (!setUpPending_) return kPgnBadHeaders;
            std::u16string text = QuotedValue(platform::AnsiToWide(line));
            if (!position_.SetFromText(text.c_str())) return kPgnBadPosition;
        }
        return kPgnOk;
    }
    bool SawWhiteTag() const override { return whiteSeen_; }
    // The start itself may already match, or already rule the game out.
    PgnError OnMoveSectionStart() override {
        return position_.found || position_.impossible ? kPgnStopped : kPgnOk;
    }
    MoveVerdict OnMove(const char16_t* san, bool) override {
        if (depth_ > 0) return {};
        SanResolution found = ReadSanMove(position_.Value(), san, SanLegality::Trusted);
        if (!found.Found()) return {kPgnStopped};
        const Move& move = found.move;
        if (!position_.ApplyMove(move.from, move.to, move.promotion)) return {kPgnStopped};
        return {};
    }
    PgnError OnVariationStart() override {
        ++depth_;
        return kPgnOk;
    }
    void OnVariationEnd() override { --depth_; }

  private:
    SearchPosition& position_;
    bool whiteSeen_ = false;
    bool setUpPending_ = false;
    int depth_ = 0;
};

}  // namespace

// Reads the game again from its first tag line and replays it; stores where it matched.
bool GameSearch::ReachesPosition(ScannedGame& summary) {
    if (!replayReader_) {
        platform::ErrorCode error = 0;
        replayFile_ = fileSystem_.Open(*path_, platform::OpenMode::ReadShared, &error);
        if (!replayFile_) return false;
        replayReader_ = std::make_unique<PgnLineReader>(*replayFile_);
    }
    SearchPosition position(criteria_.position ? &*criteria_.position : nullptr,
                            criteria_.wantedWhite, criteria_.wantedBlack);
    SearchReplay replay(position);
    PgnOutcome outcome = ReadGame(*replayReader_, summary.offset, replay);
    // A game that ends before its moves (no game at the offset, a FEN the rules refuse) never
    // matches; any other end keeps what the replay reached.
    if (outcome.code == kPgnUnexpected || outcome.code == kPgnBadHeaders ||
        outcome.code == kPgnBadPosition || !replay.SawWhiteTag()) {
        return false;
    }
    if (!position.found) return false;
    summary.foundAt = position.signedMoveNumber;
    return true;
}

}  // namespace velmora
