// GameIndex: one PGN file and the rows of its games; GameSearchResults: games of many files.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "game/GameRow.h"
#include "game/RowTextPool.h"
#include "platform/File.h"

namespace velmora {

class GameSummary;

class GameIndex {
  public:
    explicit GameIndex(const char16_t* path = nullptr);
    virtual ~GameIndex();
    GameIndex(const GameIndex&) = delete;
    GameIndex& operator=(const GameIndex&) = delete;

    // Rescans the file. Returns 0 (after telling the user) when it cannot be opened.
    virtual int Load(platform::FileSystem& fileSystem = platform::SystemFileSystem());
    // Appends a row for a game as the scanner read it.
    void AddEntry(const ScannedGame& game);
    // Told by saving that the text of the game at offset of the file at path changed size by
    // delta bytes. Nothing to do here: the game list rescans the file.
    virtual void TextMoved(const std::u16string& path, std::uint32_t offset, std::int64_t delta);
    // Told that a game was appended to the file: adds a row for it, its texts as the file
    // holds them (the ANSI code page's bytes).
    virtual void GameAdded(const GameSummary& game);

    // Called by Load after each game found, with the offset reached, to show progress.
    void SetScanProgress(std::function<void(std::uint32_t)> progress) {
        progress_ = std::move(progress);
    }

    // The game at position (from 0 in file order), or no row when there is none.
    GameRow At(int position) const {
        return position >= 0 && position < Size()
                   ? GameRow(this, &entries_[position], &pool_, position, asciiKept_)
                   : GameRow();
    }
    // The rows held.
    int Size() const { return static_cast<int>(entries_.size()); }

    class Iterator {
      public:
        GameRow operator*() const { return index_->At(position_); }
        Iterator& operator++() {
            ++position_;
            return *this;
        }
        bool operator!=(const Iterator& other) const { return position_ != other.position_; }

      private:
        friend class GameIndex;
        Iterator(const GameIndex* index, int position) : index_(index), position_(position) {}
        const GameIndex* index_;
        int position_;
    };
    // The rows in order.
    Iterator begin() const { return Iterator(this, 0); }
    Iterator end() const { return Iterator(this, Size()); }

    const std::u16string& Path() const { return *path_; }
    const std::shared_ptr<const std::u16string>& SharedPath() const { return path_; }
    // The path after its last separator.
    const char16_t* FileName() const;
    // The games the last scan counted, and those added since.
    int Count() const { return count_; }

    // Frees what only the scan needed and trims the storage to its size.
    void Compact();
    // Heap held by the rows and their texts; and the texts stored.
    std::size_t HeapBytes() const;
    std::size_t Texts() const { return pool_.Texts(); }

  protected:
    friend class GameRow;
    void Clear();
    // The file and the found-at value of the row at position; search results keep their own.
    virtual const std::u16string& RowPath(int position) const { return *path_; }
    virtual std::int32_t RowFoundAt(int position) const { return 0; }

    std::shared_ptr<const std::u16string> path_;
    std::vector<RowEntry> entries_;
    RowTextPool pool_;
    bool asciiKept_;  // AnsiKeepsAscii(), asked once
    int count_ = 0;
    std::function<void(std::uint32_t)> progress_;
};

// Games gathered from many files by game search, each row with its file and where the search
// met its position.
class GameSearchResults : public GameIndex {
  public:
    GameSearchResults() : GameIndex(nullptr) {}
    int Load(platform::FileSystem&) override { return 1; }
    // Moves the offsets of the rows of the game's file that follow it by delta.
    void TextMoved(const std::u16string& path, std::uint32_t offset, std::int64_t delta) override;
    // Appends a game found in the file at path.
    void AddEntry(const ScannedGame& game, const std::shared_ptr<const std::u16string>& path);

  protected:
    const std::u16string& RowPath(int position) const override;
    std::int32_t RowFoundAt(int position) const override;

  private:
    static constexpr std::uint32_t kNoFile = 0xFFFFFFFF;
    struct Found {
        std::uint32_t file;  // in paths_, or kNoFile for a row added by GameAdded
        std::int32_t foundAt;
    };
    std::vector<std::shared_ptr<const std::u16string>> paths_;
    std::vector<Found> found_;  // one per row added by AddEntry
};

}  // namespace velmora
