// The engine libraries for real: the UCI bridge running the scripted UCI program as a process,
// the bridge library as the build ships it, and Velmora's library loaded from its file.
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "core/LegalMoves.h"
#include "core/San.h"
#include "platform/CodePage.h"
#include "platform/Library.h"
#include "plugins/RecordingHost.h"
#include "plugins/common/EngineGame.h"
#include "plugins/ucibridge/UciBridgeEngine.h"

namespace velmora::plugin {
namespace {

using testing::RecordingHost;
namespace fs = std::filesystem;

// A fresh folder for one test's files, removed afterwards.
class TempFolder {
  public:
    TempFolder() {
        std::string pattern = (fs::temp_directory_path() / "velmora-bridge-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TempFolder() { fs::remove_all(path_); }
    fs::path operator/(const std::string& name) const { return path_ / name; }
    // Writes a file of the folder and returns its path.
    fs::path Write(const std::string& name, const std::string& text) const {
        std::ofstream(path_ / name) << text;
        return path_ / name;
    }

  private:
    fs::path path_;
};

std::string ReadAll(const fs::path& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

constexpr char kHandshake[] = "< uci\n> id name Scripted\n> uciok\n< isready\n> readyok\n";

class BridgeOverProcess : public ::testing::Test {
  protected:
    // Writes the script, and an ini running it with the log beside it; loads the bridge.
    Engine* Load(const std::string& script, const std::string& extra = "") {
        const fs::path scriptPath = folder_.Write("engine.script", script);
        const fs::path ini =
            folder_.Write("UciBridge.ini",
                          "; test engine\n[engine]\nprogram = " VELMORA_UCI_SCRIPT "\nArguments=" +
                              scriptPath.string() + " " + log_.string() + "\n" + extra);
        return LoadUciBridge(platform::Utf8ToWide(ini.string()), &host_);
    }
    std::string Log() { return ReadAll(log_); }

    TempFolder folder_;
    fs::path log_ = folder_ / "engine.log";
    RecordingHost host_;
};

TEST_F(BridgeOverProcess, ShakesHandsAndPlaysAMove) {
    Engine* engine = Load(std::string(kHandshake) +
                              "< isready\n> readyok\n< go*\n"
                              "> info depth 1 score cp -12 nodes 20 time 1 pv e7e5 g1f3\n"
                              "> bestmove e7e5 ponder g1f3\n",
                          "[Options]\nHash = 4\nMove Overhead=100\n");
    ASSERT_NE(engine, nullptr);
    EngineInfo info = {kEngineInfoSize, 0, 0, {}};
    engine->GetInfo(&info);
    EXPECT_EQ(std::u16string(info.name), u"Scripted");
    EXPECT_EQ(engine->IsAlive(), 1);
    engine->Start(1, 0, nullptr);
    engine->SetAnalysis(0);
    engine->PlayMove(u"e2e4");
    ASSERT_TRUE(host_.WaitFor("MovePlayed", 5000));
    EXPECT_EQ(host_.Calls(),
              (std::vector<std::string>{"ShowInfo 1", "SearchInfo 1 20 20 1 +0.12 | 1... e5 2. Nf3",
                                        "MovePlayed e7e5"}));
    engine->Release();
    const std::string log = Log();
    for (const char* line :
         {"\nuci\n", "\nsetoption name Hash value 4\nsetoption name Move Overhead value 100\n",
          "\nucinewgame\n", "\nposition startpos moves e2e4\ngo movetime 4500\n", "\nquit\n"})
        EXPECT_NE(log.find(line), std::string::npos) << line << " is not in:\n" << log;
}

TEST_F(BridgeOverProcess, RefusesToLoad) {
    struct Case {
        const char* name;
        const char* script;  // null: the ini text below stands alone
        const char* ini;
    };
    const Case kCases[] = {
        {"the program ends at once", "exit\n", ""},
        {"the program never answers", "silent\n", "HandshakeTimeout=300\n"},
        {"no program named", nullptr, "[Engine]\nArguments=x\n"},
        {"no such program", nullptr, "Program=no-such-program\n"},
    };
    for (const Case& test : kCases) {
        const auto start = std::chrono::steady_clock::now();
        if (test.script != nullptr) {
            EXPECT_EQ(Load(test.script, test.ini), nullptr) << test.name;
        } else {
            const fs::path ini = folder_.Write("UciBridge.ini", test.ini);
            EXPECT_EQ(LoadUciBridge(platform::Utf8ToWide(ini.string()), &host_), nullptr)
                << test.name;
        }
        // An ended program is noticed without waiting for the 10 s timeout.
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << test.name;
    }
    EXPECT_EQ(LoadUciBridge(platform::Utf8ToWide((folder_ / "missing.ini").string()), &host_),
              nullptr);
}

TEST_F(BridgeOverProcess, IsNoLongerAliveOnceTheProgramIsKilled) {
    Engine* engine = Load(std::string(kHandshake));
    ASSERT_NE(engine, nullptr);
    engine->Start(0, 0, nullptr);
    engine->Go();
    std::istringstream log(Log());
    std::string word;
    int pid = 0;
    log >> word >> pid;
    ASSERT_EQ(word, "pid");
    ASSERT_GT(pid, 0);
    EXPECT_EQ(engine->IsAlive(), 1);
    kill(pid, SIGKILL);
    for (int tries = 0; tries < 200 && engine->IsAlive() != 0; ++tries)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(engine->IsAlive(), 0);
    engine->Release();
}

// Loads an engine library of the build's Engines folder through its entry point.
class BuiltLibrary {
  public:
    explicit BuiltLibrary(const std::string& name) {
        platform::ErrorCode error = 0;
        library_ = platform::LoadLibraryAt(
            platform::Utf8ToWide(std::string(VELMORA_ENGINES_DIR "/") + name + "/" + name), &error);
        if (library_ == nullptr) return;
        auto load = reinterpret_cast<LoadEngineFunction>(library_->Symbol(kEntryPointName));
        if (load != nullptr) engine_ = load(&host_);
    }
    ~BuiltLibrary() {
        if (engine_ != nullptr) engine_->Release();
    }
    Engine* operator->() const { return engine_; }
    bool Loaded() const { return engine_ != nullptr; }

    RecordingHost host_;

  private:
    std::unique_ptr<platform::Library> library_;
    Engine* engine_ = nullptr;
};

// Plays the first legal move for the user whenever the engine has moved, a few times.
void PlayAgainst(BuiltLibrary& library, EngineGame& game, int engineMoves) {
    for (int played = 0; played < engineMoves; ++played) {
        ASSERT_TRUE(library.host_.WaitFor("MovePlayed", 5000)) << "move " << played;
        const std::vector<std::string> calls = library.host_.TakeCalls();
        const std::string move = calls.back().substr(sizeof "MovePlayed");
        ASSERT_EQ(calls.back(), "MovePlayed " + move);
        ASSERT_TRUE(game.PlayMove(move)) << move;
        MoveList replies;
        LegalMoves(game.Current(), &replies);
        ASSERT_FALSE(replies.Empty());
        char16_t reply[8];
        WriteCoordinates(replies[0], reply);
        ASSERT_TRUE(game.PlayMove(std::u16string_view(reply)));
        library->PlayMove(reply);
    }
}

// Velmora's library, and the bridge as the build ships it with velmora-engine beside it.
TEST(BuiltLibraries, PlayAFewMovesAtOneSecondEach) {
    for (const char* name : {"Velmora", "UciBridge"}) {
        BuiltLibrary library(name);
        ASSERT_TRUE(library.Loaded()) << name;
        EngineInfo info = {kEngineInfoSize, 0, 0, {}};
        library->GetInfo(&info);
        EXPECT_EQ(info.version, 2u);
        EXPECT_EQ(info.flags, 1u);
        EXPECT_EQ(std::u16string(info.name), u"Velmora") << name;
        EXPECT_EQ(library->OnCommand(nullptr, kFirstLevelCommand, 0), 1);  // 1 second per move
        library->Start(0, 0, nullptr);
        library->Go();
        library->SetAnalysis(0);
        EngineGame game;
        game.Start(false, false, nullptr);
        PlayAgainst(library, game, 2);
        EXPECT_EQ(library->IsAlive(), 1) << name;
    }
}

TEST(VelmoraLibrary, FindsMateInOneAndMovesNowWhenAsked) {
    BuiltLibrary velmora("Velmora");
    ASSERT_TRUE(velmora.Loaded());
    velmora->OnCommand(nullptr, kFirstLevelCommand + 2, 0);  // 30 seconds per move
    velmora->Start(0, 0, u"6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1");
    velmora->Go();
    ASSERT_TRUE(velmora.host_.WaitFor("SearchInfo", 5000));
    const auto asked = std::chrono::steady_clock::now();
    EXPECT_EQ(velmora->OnCommand(nullptr, kMoveNowCommand, 0), 1);
    ASSERT_TRUE(velmora.host_.WaitFor("MovePlayed", 5000));
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(5));
    const std::vector<std::string> calls = velmora.host_.Calls();
    EXPECT_EQ(calls.back(), "MovePlayed a1a8");
    EXPECT_NE(calls[calls.size() - 2].find(" #1 | 1. Ra8+"), std::string::npos)
        << calls[calls.size() - 2];
}

}  // namespace
}  // namespace velmora::plugin
