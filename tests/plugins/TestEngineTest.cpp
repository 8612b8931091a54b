// The scripted test engine, loaded as the program loads an engine library (dlopen natively,
// LoadLibraryW under Wine) from a copy with a script of its own, driven through a recording
// host: each script directive shows in the callbacks, and each call in the engine's log.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <sstream>
#include <thread>

#include "plugins/RecordingHost.h"
#include "TestFiles.h"
#include "engine/PluginInterface.h"
#include "platform/Library.h"

namespace velmora {
namespace {

using plugin::Engine;
using plugin::EngineInfo;
using plugin::HostCallbacks;
using Lines = std::vector<std::string>;

#if defined(_WIN32)
constexpr const char* kExtension = ".dll";
#else
constexpr const char* kExtension = ".so";
#endif

using plugin::testing::Narrow;
using plugin::testing::RecordingHost;

class TestEngineTest : public testing::Test {
  protected:
    // Copies the test engine under name with script beside it, loads it and calls LoadEngine.
    Engine* Load(const std::string& name, const std::string& script,
                 const char* library = "TestEngine") {
        const std::string source =
            std::string(VELMORA_TEST_ENGINES_DIR) + "/" + library + "/" + library + kExtension;
        std::filesystem::copy_file(source, folder.dir / (name + kExtension));
        test::WriteBytes(folder.Path(name + ".txt"), script);
        logPath = folder.Path(name + ".log");
        platform::ErrorCode error = 0;
        loaded = platform::LoadLibraryAt(folder.Path(name), &error);
        if (loaded == nullptr) {
            ADD_FAILURE() << "cannot load " << name << ": " << error;
            return nullptr;
        }
        entry = reinterpret_cast<plugin::LoadEngineFunction>(loaded->Symbol("LoadEngine"));
        return entry != nullptr ? entry(&host) : nullptr;
    }
    Lines Log() {
        std::istringstream text(test::ReadBytes(logPath));
        Lines lines;
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    }
    static EngineInfo InfoOf(Engine* engine) {
        EngineInfo info{};
        info.size = plugin::kEngineInfoSize;
        engine->GetInfo(&info);
        return info;
    }

    test::TempFolder folder;  // declared first: the library goes before its folder
    RecordingHost host;
    std::unique_ptr<platform::Library> loaded;
    plugin::LoadEngineFunction entry = nullptr;
    std::u16string logPath;
};

TEST_F(TestEngineTest, InfoAndStartCallbacksFollowTheScript) {
    for (int version : {1, 3}) {
        SCOPED_TRACE(version);
        const std::string name = "Version" + std::to_string(version);
        Engine* engine = Load(name, "# what GetInfo reports\nversion " + std::to_string(version) +
                                        "\nname Scripted One\nflags 1\nbogus line\n"
                                        "show-info 1\nengine-name Deep Script\n"
                                        "time-control 0 40 7200 20 3600 0 5\n");
        ASSERT_NE(engine, nullptr);
        const EngineInfo info = InfoOf(engine);
        EXPECT_EQ(info.version, static_cast<std::uint32_t>(version));
        EXPECT_EQ(info.flags, 1u);
        EXPECT_EQ(Narrow(info.name), "Scripted One");
        engine->Start(1, 0, nullptr);
        EXPECT_EQ(host.WaitForCount(3), (Lines{"ShowInfo 1", "SetEngineName Deep Script",
                                               "SetTimeControl 0 40 7200 20 3600 0 5"}));
        engine->Release();
        EXPECT_EQ(Log(), (Lines{"LoadEngine", "Script error line 5: bogus line", "GetInfo 76",
                                "Start 1 0 null", "Release"}));
        host.Clear();
    }
}

// An empty script gives an engine of version 2 named after its file; "null" gives none, and
// neither does a library without the entry point.
TEST_F(TestEngineTest, DefaultsNullScriptAndLibraryWithoutEntryPoint) {
    Engine* plain = Load("Plain", "");
    ASSERT_NE(plain, nullptr);
    const EngineInfo info = InfoOf(plain);
    EXPECT_EQ(info.version, 2u);
    EXPECT_EQ(info.flags, 0u);
    EXPECT_EQ(Narrow(info.name), "Plain");
    plain->Release();
    loaded.reset();

    EXPECT_EQ(Load("Refusing", "null\n"), nullptr);
    EXPECT_NE(entry, nullptr);
    EXPECT_EQ(Log(), (Lines{"LoadEngine null"}));
    EXPECT_EQ(Load("NoEntry", "", "NoEntry"), nullptr);
    EXPECT_EQ(entry, nullptr);
}

// Plays Black: answers each White move with the next scripted one, its search information
// first; after the second answer the game ends (told twice) and it changes sides, so the third
// answer (an illegal move) waits for Go.
TEST_F(TestEngineTest, PlayModeAnswersOnItsTurnWithInfoGameOverAndSwitch) {
    const std::string longLine(140, 'x');
    Engine* engine = Load("Player",
                          "info 5 120 3456 3050 e5 e5\\tNf3\\n  Nc6\n"
                          "info 6 130 9999 3500 e5 " +
                              longLine +
                              "\nmove e5\nmove Nf6\nmove Ke9\n"
                              "game-over 2 0-1 | White resigns\nswitch-sides 2\n");
    ASSERT_NE(engine, nullptr);
    engine->Start(1, 0, nullptr);
    engine->SetWindow(reinterpret_cast<void*>(std::uintptr_t{4660}));
    engine->SetAnalysis(0);
    engine->PlayMove(u"e4");
    const Lines first = {"SearchInfo 5 120 3456 3050 e5 | e5\tNf3\n  Nc6",
                         "SearchInfo 6 130 9999 3500 e5 | " + longLine, "MovePlayed e5"};
    EXPECT_EQ(host.WaitForCount(3), first);
    engine->PlayMove(u"Nf3");
    Lines expected = first;
    for (const char* call : {"MovePlayed Nf6", "GameOver 0-1 White resigns",
                             "GameOver 0-1 White resigns", "SwitchSides"})
        expected.push_back(call);
    EXPECT_EQ(host.WaitForCount(7), expected);
    // Now the engine plays White and White is to move: Go is its cue.
    EXPECT_EQ(engine->OnCommand(nullptr, 45001, 7), 0);
    engine->Go();
    expected.push_back("MovePlayed Ke9");
    EXPECT_EQ(host.WaitForCount(8), expected);
    EXPECT_EQ(engine->IsAlive(), 1);
    engine->Stop();
    engine->Release();
    EXPECT_EQ(Log(),
              (Lines{"LoadEngine", "Start 1 0 null", "SetWindow 4660", "SetAnalysis 0",
                     "PlayMove e4", "PlayMove Nf3", "OnCommand 45001 7", "Go", "Stop", "Release"}));
}

// The side to move comes from the position texts: the engine playing Black answers Go, then a
// move that leaves White to move is not its cue, and the next one is.
TEST_F(TestEngineTest, PositionTextTellsWhoseTurnItIs) {
    Engine* engine = Load("FromPosition", "move e7e5\nmove g8f6\n");
    ASSERT_NE(engine, nullptr);
    engine->Start(1, 0, u"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
    engine->Go();
    EXPECT_EQ(host.WaitForCount(1), (Lines{"MovePlayed e7e5"}));
    engine->SetPosition(u"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
    engine->PlayMove(u"d7d5");
    EXPECT_EQ(host.WaitForCount(2, 200), (Lines{"MovePlayed e7e5"}));
    engine->PlayMove(u"g1f3");
    EXPECT_EQ(host.WaitForCount(2), (Lines{"MovePlayed e7e5", "MovePlayed g8f6"}));
    engine->Release();
}

// After its first answer the engine's thread ends and IsAlive says so; what the host sends
// afterwards is logged and never answered, and releasing it still works. A hanging engine stays
// alive and silent; a delay holds each answer back.
TEST_F(TestEngineTest, DyingHangingAndDelayedEngines) {
    Engine* dying = Load("Dying", "move e5\nmove Nf6\ndie-after 1\n");
    ASSERT_NE(dying, nullptr);
    dying->Start(0, 0, nullptr);
    dying->Go();
    EXPECT_EQ(host.WaitForCount(1), (Lines{"MovePlayed e5"}));
    for (int i = 0; i < 100 && dying->IsAlive() != 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(dying->IsAlive(), 0);
    dying->PlayMove(u"e4");
    dying->Go();
    EXPECT_EQ(host.WaitForCount(2, 200), (Lines{"MovePlayed e5"}));
    dying->Release();
    loaded.reset();
    host.Clear();

    Engine* hanging = Load("Hanging", "move e5\nhang\n");
    ASSERT_NE(hanging, nullptr);
    hanging->Start(0, 0, nullptr);
    hanging->Go();
    EXPECT_EQ(host.WaitForCount(1, 200), Lines{});
    EXPECT_EQ(hanging->IsAlive(), 1);
    hanging->Release();
    loaded.reset();

    Engine* slow = Load("Slow", "move e5\ndelay 300\n");
    ASSERT_NE(slow, nullptr);
    slow->Start(0, 0, nullptr);
    const auto start = std::chrono::steady_clock::now();
    slow->Go();
    EXPECT_EQ(host.WaitForCount(1), (Lines{"MovePlayed e5"}));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
    slow->Release();
}

// Analysing, the engine sends the search information of the next scripted entry at the start
// and at each new position, and never plays a move.
TEST_F(TestEngineTest, AnalysisSendsSearchInformationOnly) {
    Engine* engine =
        Load("Analyst", "info 1 2 3 4 d4 d4 d5\nmove d4\ninfo 5 6 7 8 c4 c4\nmove c4\n");
    ASSERT_NE(engine, nullptr);
    engine->Start(0, 1, nullptr);
    engine->SetAnalysis(1);
    EXPECT_EQ(host.WaitForCount(1), (Lines{"SearchInfo 1 2 3 4 d4 | d4 d5"}));
    engine->SetPosition(u"rnbqkbnr/pppppppp/8/8/3P4/8/PPP1PPPP/RNBQKBNR b KQkq - 0 1");
    EXPECT_EQ(host.WaitForCount(2),
              (Lines{"SearchInfo 1 2 3 4 d4 | d4 d5", "SearchInfo 5 6 7 8 c4 | c4"}));
    engine->Release();
}

}  // namespace
}  // namespace velmora
