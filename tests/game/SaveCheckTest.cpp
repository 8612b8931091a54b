// A save in place first checks that the game's text in its file is what was loaded or last
// saved: a file another program changed is never spliced blind. Also Save As.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

#include "PgnTestSupport.h"
#include "game/Game.h"
#include "game/PgnParser.h"
#include "game/PgnSave.h"
#include "game/PgnWriter.h"

namespace velmora {
namespace {

using Path = std::u16string;

const std::string kGame1 = "[Event \"a\"]\r\n[White \"W\"]\r\n\r\n1. e4 e5 *\r\n\r\n";
const std::string kGame2 = "[Event \"b\"]\r\n[White \"W\"]\r\n\r\n1. d4 d5 *\r\n\r\n";
const std::string kGame3 = "[Event \"c\"]\r\n[White \"W\"]\r\n\r\n1. c4 c5 *\r\n\r\n";

// The game window: where a game goes when it is saved elsewhere; an empty target cancels.
struct Window final : GameView {
    void OnMovePlayed(MoveNode*, GameView*) override {}
    void OnPositionChanged(Position*) override {}
    void Refresh() override {}
    MoveNode* ChooseContinuation(MoveNode* first) override { return first; }
    int EditHeaders() override { return 0; }
    int ChooseSaveTarget(Path* path) override {
        ++asked;
        *path = target;
        return !target.empty();
    }
    int QueryClose() override { return 1; }
    Path target;
    int asked = 0;
};

// The game as the writer writes it.
std::string Written(Game& game) {
    test::MemoryFile file;
    EXPECT_EQ(PgnWriter(file).WriteGame(game), 0);
    return file.bytes;
}

class SaveCheck : public ::testing::Test {
  protected:
    void SetUp() override { Load(game, window); }
    // Writes the three games, loads the second with window as its primary view, and changes it.
    void Load(Game& loaded, Window& view) {
        test::WriteBytes(path, kGame1 + kGame2 + kGame3);
        loaded.SetFilePath(path);
        const PgnOutcome outcome = LoadGame(loaded, nullptr, kGame1.size(), 3);
        ASSERT_TRUE(outcome.Ok()) << outcome.code << " " << platform::WideToUtf8(outcome.argument);
        loaded.AddObserver(&view, true);
        loaded.SetEvent(u"b2");
    }
    test::TempFolder folder;
    const Path path = folder.Path("games.pgn"), other = folder.Path("other.pgn");
    test::RecordedMessages messages;
    Window window;
    Game game;
};

// What another program did to the file after the game was loaded: only a change to the
// game's own bytes (or to where they lie) stops the save in place. Answered No, nothing is
// written.
TEST_F(SaveCheck, OnlyAChangeOfTheGamesOwnTextStopsTheSaveInPlace) {
    const struct {
        const char* what;
        std::string before, text, after;
        bool asks;
    } cases[] = {
        {"nothing", kGame1, kGame2, kGame3, false},
        {"a later game edited", kGame1, kGame2,
         "[Event \"C\"]\r\n[White \"W\"]\r\n\r\n1. c4 *\r\n\r\n", false},
        {"one byte of the game", kGame1, "[Event \"B\"]\r\n[White \"W\"]\r\n\r\n1. d4 d5 *\r\n\r\n",
         kGame3, true},
        {"an earlier game grew", kGame1 + "\r\n", kGame2, kGame3, true},
        {"the file cut inside the game", kGame1, kGame2.substr(0, 20), "", true},
    };
    messages.answer = kAnswerNo;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Window view;
        Game loaded;
        Load(loaded, view);
        messages.shown.clear();
        const std::string changed = c.before + c.text + c.after;
        test::WriteBytes(path, changed);
        EXPECT_EQ(Save(loaded, nullptr), c.asks ? 0 : 1);
        if (c.asks) {
            EXPECT_EQ(test::ReadBytes(path), changed);
            EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(path + u".bak")));
            EXPECT_EQ(loaded.modified, 1);
            // The question's text is checked where the program is driven from end to end.
            ASSERT_EQ(messages.shown.size(), 1u);
            EXPECT_EQ(messages.kinds.back(),
                      std::pair(MessageIcon::Warning, MessageButtons::YesNo));
        } else {
            EXPECT_EQ(test::ReadBytes(path), c.before + Written(loaded) + c.after);
            EXPECT_EQ(loaded.modified, 0);
            EXPECT_TRUE(messages.shown.empty());
        }
        EXPECT_EQ(view.asked, 0);
    }
}

// Yes: the game is appended to the file the window chooses, which becomes its file; the changed
// file is not written, a cancelled choice saves nothing, and the next save goes ahead in place.
TEST_F(SaveCheck, AChangedFileAnsweredYesSavesTheGameInTheChosenFile) {
    const std::string changed = kGame1 + "\r\n" + kGame2 + kGame3;
    test::WriteBytes(path, changed);
    messages.answer = kAnswerYes;
    EXPECT_EQ(Save(game, nullptr), 0);
    EXPECT_EQ(window.asked, 1);
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(other)));

    window.target = other;
    test::WriteBytes(other, kGame3);
    EXPECT_EQ(Save(game, nullptr), 1);
    EXPECT_EQ(window.asked, 2);
    EXPECT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(test::ReadBytes(path), changed);
    EXPECT_EQ(test::ReadBytes(other), kGame3 + "\r\n" + Written(game));
    EXPECT_EQ(game.FilePath(), other);
    EXPECT_EQ(game.Owner(), game.savedIndex.get());

    game.SetEvent(u"b3");  // now saved in place in its new file, without a question
    EXPECT_EQ(Save(game, nullptr), 1);
    EXPECT_EQ(test::ReadBytes(other), kGame3 + "\r\n" + Written(game));
    EXPECT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(window.asked, 2);
}

// Save As goes the way of the changed file answered Yes, without the question.
TEST_F(SaveCheck, SaveAsWritesTheGameToTheChosenFileWhichBecomesItsFile) {
    window.target = other;
    EXPECT_EQ(SaveAs(game, nullptr), 1);
    EXPECT_EQ(test::ReadBytes(other), Written(game));
    EXPECT_EQ(test::ReadBytes(path), kGame1 + kGame2 + kGame3);
    EXPECT_EQ(game.FilePath(), other);
    game.RemoveObserver(&window);
    EXPECT_EQ(SaveAs(game, nullptr), 0);  // no window to choose
}

}  // namespace
}  // namespace velmora
