// GameSearch: finds the games of several PGN files that match players, ECO, result, and a
// position or material balance reached in the main line.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/SearchPosition.h"
#include "game/GameIndex.h"
#include "platform/File.h"

namespace velmora {

class PgnLineReader;

// What the user asked for. Empty texts and unset flags are criteria that are off.
struct SearchCriteria {
    static constexpr std::size_t kNameLength = 64;
    static constexpr std::size_t kEcoLength = 7;

    // A name pattern: the exact name, case included, or "@" and a text that the name must
    // contain in any letter case. At most kNameLength characters are kept.
    std::u16string white;
    std::u16string black;
    // Each pattern may then match either player.
    bool ignoreColors = false;
    // Compared exactly with the ECO tag; at most kEcoLength characters are kept.
    std::u16string eco;
    // A ResultCode (0 "1-0", 1 the draw, 2 "0-1"), or -1 for any result.
    int result = -1;
    // The position to reach, if any; its squares are compared, nothing else.
    std::optional<PositionValue> position;
    // The material to reach, per side and piece type (indices 1 pawn .. 5 queen).
    bool material = false;
    SearchPosition::WantedCounts wantedWhite{};
    SearchPosition::WantedCounts wantedBlack{};

    // The result alone narrows nothing down: one of the others must be on.
    bool IsUsable() const;
    // Cuts the name patterns and the ECO text to the lengths the search looks at.
    void Truncate();
};

// Told by GameSearch as it goes. Every function has an empty default.
class SearchObserver {
  public:
    virtual ~SearchObserver() = default;
    // The file at index of the list is about to be scanned; size is -1 when it cannot be
    // opened (error then says why) and the search goes on with the next file.
    virtual void FileStarted(int index, const std::u16string& path, std::int64_t size,
                             platform::ErrorCode error) {}
    // A game of the file was read up to filePosition. This is where a caller keeps its window
    // alive and may call Stop.
    virtual void Progress(int fileIndex, std::uint32_t filePosition) {}
    // row (now in the results) matched; number counts the games of its file from 1.
    virtual void Found(const GameRow& row, int number) {}
};

class GameSearch {
  public:
    static constexpr const char16_t* kNoCriteriaText =
        u"At least one criteria (other than result) must be filled";
    static constexpr const char16_t* kCaption = u"Game search";

    // The criteria must outlive the search.
    explicit GameSearch(const SearchCriteria& criteria,
                        platform::FileSystem& fileSystem = platform::SystemFileSystem());
    ~GameSearch();

    // Scans the files in order and gathers the matching games, each carrying its file's path.
    // Stops early, keeping what was found, once Stop is called.
    std::unique_ptr<GameSearchResults> Run(const std::vector<std::u16string>& paths,
                                           SearchObserver* observer = nullptr);
    // Ends the search after the game being read.
    void Stop() { running_ = false; }

    // Games looked at, files opened and games found by the last Run.
    long long GamesSearched() const { return gamesSearched_; }
    int FilesSearched() const { return filesSearched_; }
    int Found() const { return found_; }

    // Whether name (no value reads as empty) matches a pattern as the search compares them.
    static bool NameMatches(std::u16string_view name, std::u16string_view pattern);

  private:
    // Decides on one game; accepted games go to results. Returns 0 to stop the scan.
    int Filter(ScannedGame& game, std::uint32_t filePosition);
    bool PlayerMatches(const ScannedGame& game, const std::u16string& pattern,
                       bool whiteFirst) const;
    // Replays the game's main line looking for the position or material; stores where.
    bool ReachesPosition(ScannedGame& summary);

    const SearchCriteria& criteria_;
    platform::FileSystem& fileSystem_;
    bool running_ = false;
    long long gamesSearched_ = 0;
    int filesSearched_ = 0;
    int found_ = 0;

    // The file being scanned.
    int fileIndex_ = 0;
    int gamesInFile_ = 0;
    std::shared_ptr<const std::u16string> path_;
    // A second reader over the same file for the position test, opened when first needed.
    std::unique_ptr<platform::File> replayFile_;
    std::unique_ptr<PgnLineReader> replayReader_;
    GameSearchResults* results_ = nullptr;
    SearchObserver* observer_ = nullptr;
};

}  // namespace velmora
