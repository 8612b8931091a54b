// Saving games: splicing among other games, appending, failures and the save prompt.
#include "game/PgnSave.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "PgnTestSupport.h"
#include "game/Game.h"
#include "game/PgnParser.h"
#include "platform/SystemError.h"

namespace velmora {
namespace {

using platform::ErrorCode;
using Path = std::u16string;
using Moves = std::vector<std::tuple<Path, std::uint32_t, std::int64_t>>;
using Shown = std::vector<std::pair<Path, Path>>;
constexpr ErrorCode kInjected = 5;  // EIO on POSIX, ERROR_ACCESS_DENIED on Windows

// The real file system, except that operation number failAt (opens, reads, writes, seeks,
// truncations, copies and deletes, counted from 1) fails with kInjected; failed names it.
struct FaultyFileSystem final : platform::FileSystem {
    explicit FaultyFileSystem(int nth) : failAt(nth) {}
    bool Hit(const char* op) {
        if (++count == failAt) {
            failed = op;
            failedAfterDelete = deleted;  // the splice is done: only the fingerprint is read
        }
        return count == failAt;
    }
    struct File final : platform::File {
        File(std::unique_ptr<platform::File> f, FaultyFileSystem& s) : real(std::move(f)), fs(s) {}
        ErrorCode Read(void* buffer, std::uint32_t size, std::uint32_t* count) override {
            return fs.Hit("Read") ? kInjected : real->Read(buffer, size, count);
        }
        ErrorCode Write(const void* buffer, std::uint32_t size, std::uint32_t* count) override {
            return fs.Hit("Write") ? kInjected : real->Write(buffer, size, count);
        }
        ErrorCode Seek(std::int64_t offset, platform::SeekOrigin from, std::int64_t* at) override {
            return fs.Hit("Seek") ? kInjected : real->Seek(offset, from, at);
        }
        ErrorCode Size(std::int64_t* size) override { return real->Size(size); }
        ErrorCode SetEndOfFile() override {
            return fs.Hit("SetEndOfFile") ? kInjected : real->SetEndOfFile();
        }
        std::unique_ptr<platform::File> real;
        FaultyFileSystem& fs;
    };
    std::unique_ptr<platform::File> Open(const Path& path, platform::OpenMode mode,
                                         ErrorCode* error) override {
        if (Hit("Open")) return *error = kInjected, nullptr;
        auto file = real.Open(path, mode, error);
        return file ? std::make_unique<File>(std::move(file), *this) : nullptr;
    }
    ErrorCode Copy(const Path& from, const Path& to) override {
        return Hit("Copy") ? kInjected : real.Copy(from, to);
    }
    ErrorCode Delete(const Path& path) override {
        const bool hit = Hit("Delete");
        deleted = true;
        return hit ? kInjected : real.Delete(path);
    }
    bool Exists(const Path& path) override { return real.Exists(path); }
    ErrorCode ListFolder(const Path& folder, const Path& pattern,
                         std::vector<platform::FolderEntry>* out) override {
        return real.ListFolder(folder, pattern, out);
    }
    platform::FileSystem& real = platform::SystemFileSystem();
    int failAt, count = 0;
    std::string failed;
    bool deleted = false, failedAfterDelete = false;
};

// Records how far the games behind a saved one move: the file, the saved game's offset, the
// distance.
struct MovesRecorder final : GameIndex {
    using GameIndex::GameIndex;
    void TextMoved(const std::u16string& file, std::uint32_t offset, std::int64_t delta) override {
        moves.push_back({file, offset, delta});
    }
    Moves moves;
};

const std::string kNewGame =  // as the writer writes a new game
    "[Event \"?\"]\r\n[Site \"?\"]\r\n[Date \"????.??.??\"]\r\n[Round \"?\"]\r\n"
    "[White \"White\"]\r\n[Black \"Black\"]\r\n[Result \"*\"]\r\n\r\n *\r\n\r\n";
// The games around the saved one span more than one 512-byte block; the saved one is longer
// than its new text, so the file must shrink.
const std::string kGame1 = "[Event \"a\"]\r\n\r\n1. e4 {" + std::string(700, 'a') + "} *\r\n\r\n";
const std::string kGame2 = "[Event \"b\"]\r\n\r\n1. d4 {" + std::string(300, 'b') + "} *\r\n\r\n";
const std::string kGame3 = "[Event \"c\"]\r\n\r\n1. c4 {" + std::string(900, 'c') + "} *\r\n\r\n";

class PgnSave : public testing::Test {
  protected:
    test::TempFolder folder;
    const Path path = folder.Path("games.pgn"), backup = path + u".bak";
};

// Each operation of a splice fails in turn: reported, the game left as it was, the backup kept
// (one that cannot be deleted is only left behind). With nothing left to fail, it is exact.
TEST_F(PgnSave, SpliceKeepsTheOtherGamesAndEachFailureKeepsTheBackup) {
    const Moves delta{
        {path, kGame1.size(), std::int64_t(kNewGame.size()) - std::int64_t(kGame2.size())}};
    std::set<std::string> failed;
    for (int failAt = 1;; ++failAt) {
        FaultyFileSystem fs(failAt);
        test::RecordedMessages messages;
        MovesRecorder index(path.c_str());
        Game game;
        test::WriteBytes(path, kGame1 + kGame2 + kGame3);
        fs.real.Delete(backup);
        game.SetFilePath(path);
        game.SetOwner(&index);
        game.saveMode = 3;
        game.offset = kGame1.size();
        game.endOffset = kGame1.size() + kGame2.size();
        game.modified = 1;
        const std::int32_t result = SaveInPlace(game, nullptr, fs);
        SCOPED_TRACE("operation " + std::to_string(failAt) + " failing: " + fs.failed);
        // Past the backup's deletion the file is complete: a failure there only loses the
        // fingerprint of the saved text.
        const bool fingerprintLost = fs.failedAfterDelete;
        const bool saved = fs.failed.empty() || fs.failed == "Delete" || fingerprintLost;
        EXPECT_EQ(result, saved ? 0 : kSaveFailed);
        EXPECT_EQ(fs.Exists(backup), !fs.failed.empty() && fs.failed != "Copy" && !fingerprintLost);
        EXPECT_EQ(game.savedText.known, saved && !fingerprintLost);
        EXPECT_EQ(game.modified, saved ? 0 : 1);
        EXPECT_EQ(game.endOffset, kGame1.size() + (saved ? kNewGame : kGame2).size());
        EXPECT_EQ(index.moves, saved ? delta : Moves{});
        EXPECT_EQ(messages.shown, (saved ? Shown{}
                                         : Shown{{u"Unable to save game in '" + path + u"'",
                                                  platform::ErrorTextOrCode(kInjected)}}));
        if (!fs.failed.empty()) failed.insert(fs.failed);
        if (!saved) continue;
        EXPECT_EQ(test::ReadBytes(path), kGame1 + kNewGame + kGame3);
        if (fs.failed.empty()) break;
    }
    EXPECT_EQ(failed, (std::set<std::string>{"Copy", "Delete", "Open", "Read", "Seek",
                                             "SetEndOfFile", "Write"}));
}

TEST_F(PgnSave, AppendingAddsOneLineEndBeforeTheGameOrMakesANewFile) {
    MovesRecorder fresh(path.c_str()), existing(path.c_str());
    Game game;
    EXPECT_EQ(AppendTo(game, nullptr, fresh), 0);
    EXPECT_EQ(test::ReadBytes(path), kNewGame);
    test::WriteBytes(path, kGame1);
    EXPECT_EQ(AppendTo(game, nullptr, existing), 0);
    EXPECT_EQ(test::ReadBytes(path), kGame1 + "\r\n" + kNewGame);
    EXPECT_EQ(game.offset, kGame1.size() + 2);
    EXPECT_EQ(game.Owner(), &existing);
    EXPECT_EQ(test::Offsets(existing), std::vector<std::uint32_t>{game.offset});
}

TEST_F(PgnSave, PromptSaveSavesOnYesGoesOnOnNoStopsOnCancelAndWholeFileSavesDoNotTruncate) {
    test::RecordedMessages messages;
    Game game, unplaced;
    EXPECT_EQ(Save(unplaced, nullptr), 0);  // no location and no observer to choose one
    const std::string old(2000, 'z');
    test::WriteBytes(path, old);
    game.SetFilePath(path);
    game.hasLocation = 1;
    game.modified = 1;
    messages.answer = kAnswerCancel;
    EXPECT_EQ(PromptSave(game, nullptr), 0);
    messages.answer = kAnswerNo;
    EXPECT_EQ(PromptSave(game, nullptr), 1);
    messages.answer = kAnswerYes;
    FaultyFileSystem failing(1);
    EXPECT_EQ(PromptSave(game, nullptr, failing), 0);
    EXPECT_EQ(test::ReadBytes(path), old);
    EXPECT_EQ(PromptSave(game, nullptr), 1);
    // Intended: below save mode 2 the file is overwritten from its start and not truncated.
    EXPECT_EQ(test::ReadBytes(path), kNewGame + old.substr(kNewGame.size()));
    EXPECT_EQ(PromptSave(game, nullptr), 1);  // saved, so unmodified: not asked
    ASSERT_EQ(messages.shown.size(), 6u);     // asked four times, the failure told twice
    EXPECT_EQ(messages.shown[0], std::make_pair(Path(u"The game has been changed"),
                                                Path(u"Do you want to save the game ?")));
    EXPECT_EQ(messages.kinds[0].second, MessageButtons::YesNoCancel);
    EXPECT_EQ(messages.shown[4],
              std::make_pair(Path(u"An error occurred"), Path(u"Unable to save game")));
}

}  // namespace
}  // namespace velmora
