// GameIndex: one PGN file and the list of its games; GameSearchResults: games of many files.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "game/GameHeader.h"
#include "platform/File.h"

namespace velmora {

class Game;
class PgnLineReader;

class GameIndex {
  public:
    explicit GameIndex(const char16_t* path = nullptr);
    virtual ~GameIndex();
    GameIndex(const GameIndex&) = delete;
    GameIndex& operator=(const GameIndex&) = delete;

    // Rescans the file. Returns 0 (after telling the user) when it cannot be opened.
    virtual int Load(platform::FileSystem& fileSystem = platform::SystemFileSystem());
    // Appends summary to the list, which takes ownership.
    virtual void AddEntry(std::unique_ptr<GameSummary> summary);
    // Gives the summary after entry the game's end offset as its offset and returns it (null
    // when entry is the last).
    virtual GameSummary* GameSaved(Game& game, GameSummary* entry);
    // Told by saving that the game's text changed size by delta bytes. Nothing to do here:
    // the game list rescans the file.
    virtual void TextMoved(Game& game, std::int64_t delta);
    // Told that a game was appended to the file: adds an entry for it.
    virtual void GameAdded(const Game& game);

    // Called by Load after each game found, with the offset reached, to show progress.
    void SetScanProgress(std::function<void(std::uint32_t)> progress) {
        progress_ = std::move(progress);
    }

    const std::u16string& Path() const { return *path_; }
    const std::shared_ptr<const std::u16string>& SharedPath() const { return path_; }
    // The path after its last separator.
    const char16_t* FileName() const;
    GameSummary* First() const { return first_.get(); }
    GameSummary* Last() const { return last_; }
    int Count() const { return count_; }

  protected:
    void Clear();

    std::shared_ptr<const std::u16string> path_;
    std::unique_ptr<GameSummary> first_;
    GameSummary* last_ = nullptr;
    int count_ = 0;
    std::function<void(std::uint32_t)> progress_;
};

// Summaries gathered from many files by game search.
class GameSearchResults : public GameIndex {
  public:
    GameSearchResults() : GameIndex(nullptr) {}
    int Load(platform::FileSystem&) override { return 1; }
    GameSummary* GameSaved(Game& game, GameSummary* entry) override;
    // Moves the offsets of the entries of the game's file that follow it by delta.
    void TextMoved(Game& game, std::int64_t delta) override;
};

// Receives each game the scanner completes, with the offset where the next line begins.
// Returns nonzero to go on, 0 to stop.
using OnGameFound = std::function<int(std::unique_ptr<GameSummary> summary, std::uint32_t)>;

// Scans the file from its start for games: their offsets, tags and start texts. Counts them in
// *count. No move is read.
void ScanFile(PgnLineReader& reader, int* count, const OnGameFound& onGame);

}  // namespace velmora
