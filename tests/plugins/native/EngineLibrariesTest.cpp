// The engine libraries for real: the UCI bridge running the scripted UCI program as a process,
// the bridge library as the build ships it, and Velmora's library loaded from its file.
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <sstream>
#include <string>
#include <thread>

#include "TestFiles.h"
#include "platform/CodePage.h"
#include "platform/Library.h"
#include "plugins/RecordingHost.h"
#include "plugins/common/EngineGame.h"
#include "plugins/ucibridge/UciBridgeEngine.h"

namespace velmora::plugin {
namespace {

using testing::RecordingHost;

constexpr char kHandshake[] = "< uci\n> id name Scripted\n> uciok\n< isready\n> readyok\n";

class BridgeOverProcess : public ::testing::Test {
  protected:
    // Loads the bridge with an ini of text; a script (when not empty) is the program's, with the
    // log beside it.
    Engine* Load(const std::string& script, const std::string& text) {
        std::string ini = text;
        if (!script.empty()) {
            test::WriteBytes(folder_.Path("engine.script"), script);
            ini = "; test engine\n[engine]\nprogram = " VELMORA_UCI_SCRIPT "\nArguments=" +
                  platform::WideToUtf8(folder_.Path("engine.script")) + " " +
                  platform::WideToUtf8(log_) + "\n" + text;
        }
        test::WriteBytes(folder_.Path("UciBridge.ini"), ini);
        return LoadUciBridge(folder_.Path("UciBridge.ini"), &host_);
    }

    test::TempFolder folder_;
    std::u16string log_ = folder_.Path("engine.log");
    RecordingHost host_;
};

// A program that answers plays a move with the ini's options and, killed, is seen to be gone.
TEST_F(BridgeOverProcess, PlaysAMoveAndSeesTheProgramKilled) {
    Engine* engine =
        Load(std::string(kHandshake) + "< isready\n> readyok\n< go*\n> bestmove e7e5\n",
             "[Options]\nHash = 4\nMove Overhead=100\n");
    ASSERT_NE(engine, nullptr);
    engine->Start(1, 0, nullptr);
    engine->SetAnalysis(0);
    engine->PlayMove(u"e2e4");
    ASSERT_TRUE(host_.WaitFor("MovePlayed", 5000));
    EXPECT_EQ(host_.TakeCalls().back(), "MovePlayed e7e5");
    std::istringstream log(test::ReadBytes(log_));
    for (const char* line :
         {"\nsetoption name Hash value 4\nsetoption name Move Overhead value 100\n",
          "\nposition startpos moves e2e4\ngo movetime 4500\n"})
        EXPECT_NE(log.str().find(line), std::string::npos) << line << " is not in:\n" << log.str();
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

TEST_F(BridgeOverProcess, RefusesToLoad) {
    struct Case {
        const char* name;
        const char* script;  // empty: the ini text stands alone
        const char* ini;
    };
    const Case kCases[] = {
        {"the program ends at once", "exit\n", ""},
        {"the program never answers", "silent\n", "HandshakeTimeout=300\n"},
        {"no such program", "", "Program=no-such-program\n"},
    };
    for (const Case& test : kCases) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(Load(test.script, test.ini), nullptr) << test.name;
        // An ended program is noticed without waiting for the 10 s timeout.
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << test.name;
    }
    EXPECT_EQ(LoadUciBridge(folder_.Path("missing.ini"), &host_), nullptr);
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

// Velmora's library, and the bridge as the build ships it with velmora-engine beside it: each
// answers the user's first move at once on "Move now" (at 30 seconds per move), and plays a mate
// in one, which ends its search by itself, with the mate shown.
TEST(BuiltLibraries, MoveNowWhenAskedAndPlayAMateInOne) {
    for (const char* name : {"Velmora", "UciBridge"}) {
        SCOPED_TRACE(name);
        BuiltLibrary library(name);
        ASSERT_TRUE(library.Loaded());
        EngineInfo info = {kEngineInfoSize, 0, 0, {}};
        library->GetInfo(&info);
        EXPECT_EQ(info.version, 2u);
        EXPECT_EQ(info.flags, 1u);  // coordinate moves
        EXPECT_EQ(std::u16string(info.name), u"Velmora");
        EXPECT_EQ(library->OnCommand(nullptr, kFirstLevelCommand + 2, 0), 1);
        library->Start(1, 0, nullptr);
        library->SetAnalysis(0);
        library->PlayMove(u"e2e4");
        ASSERT_TRUE(library.host_.WaitFor("SearchInfo", 5000));
        const auto asked = std::chrono::steady_clock::now();
        EXPECT_EQ(library->OnCommand(nullptr, kMoveNowCommand, 0), 1);
        ASSERT_TRUE(library.host_.WaitFor("MovePlayed", 5000));
        EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(5));
        const std::string reply = library.host_.TakeCalls().back().substr(sizeof "MovePlayed");
        EngineGame game;
        ASSERT_TRUE(game.Start(true, false, nullptr) && game.PlayMove(u"e2e4"));
        EXPECT_TRUE(game.PlayMove(reply)) << reply << " does not answer 1. e4";

        library->Start(0, 0, u"6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1");
        library->Go();
        ASSERT_TRUE(library.host_.WaitFor("MovePlayed", 5000));
        const std::vector<std::string> calls = library.host_.TakeCalls();
        EXPECT_EQ(calls.back(), "MovePlayed a1a8");
        EXPECT_NE(calls[calls.size() - 2].find(" #1 | 1. Ra8+"), std::string::npos)
            << calls[calls.size() - 2];
    }
}

}  // namespace
}  // namespace velmora::plugin
