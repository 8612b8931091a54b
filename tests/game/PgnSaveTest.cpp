// Saving games: splicing among other games, appending, failures and the save prompt.
#include "game/PgnSave.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PgnTestSupport.h"
#include "game/Game.h"
#include "game/PgnWriter.h"
#include "platform/SystemError.h"

namespace velmora {
namespace {

using platform::ErrorCode;
using platform::OpenMode;

constexpr ErrorCode kInjected = 5;  // EIO on POSIX, ERROR_ACCESS_DENIED on Windows

enum class Op { None, Open, Copy, Write, SetEndOfFile, Delete };

// The real file system, except that the nth operation of one kind fails (for Open, the nth
// open in the given mode).
class FaultyFileSystem final : public platform::FileSystem {
  public:
    void Fail(Op op, int nth, OpenMode mode) {
        op_ = op;
        nth_ = nth;
        mode_ = mode;
        count_ = 0;
    }
    bool Hit(Op op, OpenMode mode = OpenMode::ReadShared) {
        return op == op_ && (op != Op::Open || mode == mode_) && ++count_ == nth_;
    }
    std::unique_ptr<platform::File> Open(const std::u16string& path, OpenMode mode,
                                         ErrorCode* error) override;
    ErrorCode Copy(const std::u16string& from, const std::u16string& to) override {
        return Hit(Op::Copy) ? kInjected : real_.Copy(from, to);
    }
    ErrorCode Delete(const std::u16string& path) override {
        return Hit(Op::Delete) ? kInjected : real_.Delete(path);
    }
    bool Exists(const std::u16string& path) override { return real_.Exists(path); }

  private:
    platform::FileSystem& real_ = platform::SystemFileSystem();
    Op op_ = Op::None;
    int nth_ = 0, count_ = 0;
    OpenMode mode_ = OpenMode::ReadShared;
};

class FaultyFile final : public platform::File {
  public:
    FaultyFile(std::unique_ptr<platform::File> real, FaultyFileSystem& fs)
        : real_(std::move(real)), fs_(fs) {}
    ErrorCode Read(void* buffer, std::uint32_t size, std::uint32_t* count) override {
        return real_->Read(buffer, size, count);
    }
    ErrorCode Write(const void* buffer, std::uint32_t size, std::uint32_t* count) override {
        return fs_.Hit(Op::Write) ? kInjected : real_->Write(buffer, size, count);
    }
    ErrorCode Seek(std::int64_t offset, platform::SeekOrigin origin, std::int64_t* at) override {
        return real_->Seek(offset, origin, at);
    }
    ErrorCode Size(std::int64_t* size) override { return real_->Size(size); }
    ErrorCode SetEndOfFile() override {
        return fs_.Hit(Op::SetEndOfFile) ? kInjected : real_->SetEndOfFile();
    }

  private:
    std::unique_ptr<platform::File> real_;
    FaultyFileSystem& fs_;
};

std::unique_ptr<platform::File> FaultyFileSystem::Open(const std::u16string& path, OpenMode mode,
                                                       ErrorCode* error) {
    if (Hit(Op::Open, mode)) {
        *error = kInjected;
        return nullptr;
    }
    auto file = real_.Open(path, mode, error);
    return file ? std::make_unique<FaultyFile>(std::move(file), *this) : nullptr;
}

// Records caption, text, icon and buttons of each message and gives one answer to all.
class Messages final : public UserMessages {
  public:
    Messages() { SetUserMessages(this); }
    ~Messages() override { SetUserMessages(nullptr); }
    int Show(const std::u16string& text, const std::u16string& caption, MessageIcon icon,
             MessageButtons buttons, void*) override {
        shown.push_back({caption, text, icon, buttons});
        return answer;
    }
    struct Shown {
        std::u16string caption, text;
        MessageIcon icon;
        MessageButtons buttons;
    };
    std::vector<Shown> shown;
    int answer = kAnswerOk;
};

class MovesRecorder final : public GameIndex {
  public:
    using GameIndex::GameIndex;
    void TextMoved(Game&, std::int64_t delta) override { moves.push_back(delta); }
    std::vector<std::int64_t> moves;
};

// A primary observer whose save-target choice is the path set in it (empty: cancel).
class Target final : public GameView {
  public:
    void OnMovePlayed(MoveNode*, GameView*) override {}
    void OnPositionChanged(Position*) override {}
    void Refresh() override {}
    MoveNode* ChooseContinuation(MoveNode*) override { return nullptr; }
    int EditHeaders() override { return 0; }
    int ChooseSaveTarget(std::u16string* path) override {
        *path = chosen;
        return !chosen.empty();
    }
    int QueryClose() override { return 1; }
    std::u16string chosen;
};

// The games around the saved one span more than one 512-byte block; the saved one is longer
// than its new text, so the file must shrink.
const std::string kGame1 = "[Event \"a\"]\r\n\r\n1. e4 {" + std::string(700, 'a') + "} *\r\n\r\n";
const std::string kGame2 = "[Event \"b\"]\r\n\r\n1. d4 {" + std::string(300, 'b') + "} *\r\n\r\n";
const std::string kGame3 = "[Event \"c\"]\r\n\r\n1. c4 {" + std::string(900, 'c') + "} *\r\n\r\n";

class PgnSave : public testing::Test {
  protected:
    std::string GameText() {
        test::MemoryFile file;
        EXPECT_EQ(PgnWriter(file).WriteGame(game), 0u);
        return file.bytes;
    }
    // Writes the three games and places the game over the second.
    void PlaceInMiddle() {
        test::WriteBytes(path, kGame1 + kGame2 + kGame3);
        game.SetFilePath(path);
        game.SetOwner(&index);
        game.saveMode = 3;
        game.offset = kGame1.size();
        game.endOffset = kGame1.size() + kGame2.size();
        game.modified = 1;
    }

    test::TempFolder folder;
    std::u16string path = folder.Path("games.pgn");
    FaultyFileSystem fs;
    Messages messages;
    MovesRecorder index{path.c_str()};
    Game game;
};

TEST_F(PgnSave, SpliceKeepsTheOtherGamesAndMovesTheOffsets) {
    PlaceInMiddle();
    const std::string text = GameText();
    EXPECT_EQ(SaveInPlace(game, nullptr, fs), 0);
    EXPECT_EQ(test::ReadBytes(path), kGame1 + text + kGame3);
    EXPECT_EQ(game.endOffset, kGame1.size() + text.size());
    EXPECT_EQ(index.moves, std::vector<std::int64_t>{std::int64_t(text.size() - kGame2.size())});
    EXPECT_FALSE(fs.Exists(path + u".bak"));
    EXPECT_EQ(game.modified, 0);
    EXPECT_EQ(game.hasLocation, 1);
}

TEST_F(PgnSave, AppendingAddsOneLineEndBeforeTheGameOrMakesANewFile) {
    MovesRecorder fresh{path.c_str()}, existing{path.c_str()};
    const std::string text = GameText();
    EXPECT_EQ(AppendTo(game, nullptr, fresh, fs), 0);
    EXPECT_EQ(test::ReadBytes(path), text);
    EXPECT_EQ(game.saveMode, 0);

    test::WriteBytes(path, kGame1);
    EXPECT_EQ(AppendTo(game, nullptr, existing, fs), 0);
    EXPECT_EQ(test::ReadBytes(path), kGame1 + "\r\n" + text);
    EXPECT_EQ(game.offset, kGame1.size() + 2);
    EXPECT_EQ(game.endOffset, kGame1.size() + 2 + text.size());
    EXPECT_EQ(game.saveMode, 2);
    EXPECT_EQ(game.Owner(), &existing);
    EXPECT_EQ(test::Offsets(existing), std::vector<std::uint32_t>{game.offset});
}

// Any failure leaves the game's offsets and flags alone and the backup, once made, in place;
// a backup that cannot be deleted is only left behind, since the file is complete by then.
TEST_F(PgnSave, FailuresAreReportedAndKeepTheBackup) {
    const struct {
        Op op;
        int nth;
        OpenMode mode;
        std::int32_t result;
    } faults[] = {{Op::Copy, 1, OpenMode::ReadShared, kSaveFailed},
                  {Op::Open, 1, OpenMode::ReadExclusive, kSaveFailed},
                  {Op::Open, 1, OpenMode::WriteAlways, kSaveFailed},
                  {Op::Write, 3, OpenMode::ReadShared, kSaveFailed},
                  {Op::SetEndOfFile, 1, OpenMode::ReadShared, kSaveFailed},
                  {Op::Delete, 1, OpenMode::ReadShared, 0}};
    for (const auto& f : faults) {
        SCOPED_TRACE(static_cast<int>(f.op));
        messages.shown.clear();
        index.moves.clear();
        fs.Delete(path + u".bak");
        PlaceInMiddle();
        fs.Fail(f.op, f.nth, f.mode);
        EXPECT_EQ(SaveInPlace(game, nullptr, fs), f.result);
        EXPECT_EQ(fs.Exists(path + u".bak"), f.op != Op::Copy);
        EXPECT_EQ(index.moves.size(), f.result ? 0u : 1u);
        EXPECT_EQ(game.modified, f.result ? 1 : 0);
        if (f.result == 0) continue;
        EXPECT_EQ(game.endOffset, kGame1.size() + kGame2.size());
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.shown[0].caption, u"Unable to save game in '" + path + u"'");
        EXPECT_EQ(messages.shown[0].text, platform::ErrorTextOrCode(kInjected));
        EXPECT_EQ(messages.shown[0].icon, MessageIcon::Error);
    }
}

// Intended: below save mode 2 the file is overwritten from its start and not truncated.
TEST_F(PgnSave, WholeFileSaveKeepsTheTailOfALongerFile) {
    const std::string old(2000, 'z');
    test::WriteBytes(path, old);
    game.SetFilePath(path);
    const std::string text = GameText();
    EXPECT_EQ(SaveInPlace(game, nullptr, fs), 0);
    EXPECT_EQ(test::ReadBytes(path), text + old.substr(text.size()));
}

TEST_F(PgnSave, SaveAsksForATargetAndDropsOneOfTwoLeadingBackslashes) {
    Target target;
    game.AddObserver(&target, 1);
    EXPECT_EQ(Save(game, nullptr, fs), 0);  // cancelled: nothing to report
    EXPECT_TRUE(messages.shown.empty());

    target.chosen = u"\\\\velmora-no-such-folder/x.pgn";
    EXPECT_EQ(Save(game, nullptr, fs), 0);
    EXPECT_EQ(game.FilePath(), u"\\velmora-no-such-folder/x.pgn");
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(messages.shown[0].caption, u"Unable to save game in '" + game.FilePath() + u"'");
    EXPECT_EQ(messages.shown[1].caption, u"An error occurred");
    EXPECT_EQ(messages.shown[1].text, u"Unable to save game");
    EXPECT_EQ(messages.shown[1].icon, MessageIcon::Error);

    target.chosen = path;
    EXPECT_EQ(Save(game, nullptr, fs), 1);
    EXPECT_EQ(test::ReadBytes(path), GameText());
    ASSERT_NE(game.savedIndex, nullptr);
    EXPECT_EQ(game.Owner(), game.savedIndex.get());
    EXPECT_EQ(game.savedIndex->Path(), path);
    game.RemoveObserver(&target);
}

TEST_F(PgnSave, PromptSaveSavesOnYesGoesOnOnNoStopsOnCancel) {
    const struct {
        int modified, answer, expected;
        bool saved;
    } cases[] = {{0, kAnswerYes, 1, false},
                 {1, kAnswerYes, 1, true},
                 {1, kAnswerNo, 1, false},
                 {1, kAnswerCancel, 0, false}};
    game.SetFilePath(path);
    game.hasLocation = 1;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.answer);
        fs.Delete(path);
        messages.shown.clear();
        messages.answer = c.answer;
        game.modified = c.modified;
        EXPECT_EQ(PromptSave(game, nullptr, fs), c.expected);
        EXPECT_EQ(fs.Exists(path), c.saved);
        ASSERT_EQ(messages.shown.size(), c.modified ? 1u : 0u);
        if (!c.modified) continue;
        EXPECT_EQ(messages.shown[0].text, u"Do you want to save the game ?");
        EXPECT_EQ(messages.shown[0].caption, u"The game has been changed");
        EXPECT_EQ(messages.shown[0].buttons, MessageButtons::YesNoCancel);
    }
}

}  // namespace
}  // namespace velmora
