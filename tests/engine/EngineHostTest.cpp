// The engine host with a stand-in library and engine: each load failure with its message, the
// start of play and analysis, the moves passed each way, and the callbacks' effects.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "MemoryFileSystem.h"
#include "engine/host/EngineHost.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "platform/CodePage.h"

namespace velmora {
namespace {

using platform::WideToUtf8;
using Lines = std::vector<std::string>;

constexpr char kAfterE4[] = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1";

// An engine that records every call as a line of text.
class RecordingEngine final : public plugin::Engine {
  public:
    void GetInfo(plugin::EngineInfo* info) override {
        sizeAsked = info->size;
        info->version = version;
        info->flags = flags;
        std::u16string_view name = u"Recorder";
        std::copy(name.begin(), name.end(), info->name);
    }
    void Start(int black, int analyse, const char16_t* text) override {
        calls.push_back("Start " + std::to_string(black) + " " + std::to_string(analyse) + " " +
                        (text != nullptr ? WideToUtf8(text) : "null"));
    }
    void Stop() override { calls.push_back("Stop"); }
    void Release() override { released = true; }
    void PlayMove(const char16_t* move) override {
        calls.push_back("PlayMove " + WideToUtf8(move));
    }
    void SetWindow(plugin::WindowHandle) override { calls.push_back("SetWindow"); }
    plugin::MenuHandle GetMenu() override { return nullptr; }
    std::intptr_t OnCommand(plugin::WindowHandle, std::uintptr_t wParam, std::intptr_t) override {
        return wParam == 45001 ? 1 : 0;
    }
    void SetPosition(const char16_t* text) override {
        calls.push_back("SetPosition " + WideToUtf8(text));
    }
    void Go() override { calls.push_back("Go"); }
    int IsAlive() override { return alive; }
    void SetAnalysis(int on) override { calls.push_back("SetAnalysis " + std::to_string(on)); }

    std::uint32_t version = 2, flags = 1, sizeAsked = 0;
    int alive = 1;
    bool released = false;
    std::vector<std::string> calls;
};

// What the library's entry point hands out, and the callbacks it was given.
RecordingEngine* gEngineToLoad = nullptr;
plugin::HostCallbacks* gCallbacks = nullptr;

plugin::Engine* LoadRecordingEngine(plugin::HostCallbacks* host) {
    gCallbacks = host;
    return gEngineToLoad;
}

// A library whose entry point hands out the recording engine, or one without the entry point.
class StandInLibrary final : public platform::Library {
  public:
    explicit StandInLibrary(bool entry) : entry_(entry) {}
    void* Symbol(const char* name) override {
        return entry_ && std::string(name) == "LoadEngine"
                   ? reinterpret_cast<void*>(&LoadRecordingEngine)
                   : nullptr;
    }

  private:
    bool entry_;
};

// The game window's part: records the messages and answers the dialog.
class RecordingWindow final : public EngineHostWindow {
  public:
    void SendToWindow(unsigned message, std::uintptr_t wParam) override {
        messages.push_back(message);
        if (message == kEngineMoveReady && host != nullptr) host->HandleEngineMove();
        if (message == kEngineMessageBox) boxes.push_back(WideToUtf8(host->MessageText()));
    }
    int RunStartDialog(StartGameChoice& offered) override {
        names = offered.names;
        loadedIndex = offered.loadedIndex;
        offered.chosen = choice.chosen;
        offered.play = choice.play;
        offered.enginePlaysBlack = choice.enginePlaysBlack;
        return answer;
    }
    std::u16string LoadText(int id) override {
        return u"text " + platform::Utf8ToWide(std::to_string(id));
    }
    void PlaySoundFile(const std::u16string& path) override { sounds.push_back(path); }
    plugin::WindowHandle Handle() override { return this; }

    EngineHost* host = nullptr;
    StartGameChoice choice;
    int answer = 1;
    std::vector<std::u16string> names;
    int loadedIndex = -2;
    std::vector<unsigned> messages;
    std::vector<std::string> boxes;
    std::vector<std::u16string> sounds;
};

struct HostFixture : ::testing::Test {
    static test::MemoryFileSystem TwoEngines() {
        test::MemoryFileSystem files;
        files.files = {{u"/p/Engines/Alpha/Alpha.dll", ""}, {u"/p/Engines/Beta/Beta.dll", ""}};
        return files;
    }
    HostFixture() {
        gEngineToLoad = &engine;
        window.host = &host;
    }
    ~HostFixture() override { host.Detach(); }

    bool Start(bool play, bool engineBlack, bool sendPosition = false) {
        window.choice.play = play;
        window.choice.enginePlaysBlack = engineBlack;
        bool playMode = false;
        bool black = false;
        return host.StartEngine(window, &playMode, &black, sendPosition, game);
    }
    Position* Play(const char* san) {
        Position* next = ReadSan(game.Current(), san);
        EXPECT_NE(next, nullptr) << san;
        if (next != nullptr) game.NotifyChanged(next->ArrivalNode(), nullptr);
        return next;
    }

    // Loads the stand-in library, or finds none.
    EngineHost::LibraryLoader Loader() {
        return [this](const std::u16string& path, platform::ErrorCode* e) {
            loadedPaths.push_back(path);
            *e = libraryFound ? 0 : 2;
            return libraryFound ? std::make_unique<StandInLibrary>(entryFound) : nullptr;
        };
    }

    test::MemoryFileSystem files = TwoEngines();
    RecordingEngine engine;
    std::vector<std::u16string> loadedPaths;
    bool libraryFound = true;
    bool entryFound = true;
    EngineHost host{u"/p/", files, Loader()};
    RecordingWindow window;
    Game game;
};

TEST_F(HostFixture, OneEngineARunAndTheDialogShowsIt) {
    window.choice.chosen = 1;
    ASSERT_TRUE(Start(true, true));
    EXPECT_EQ(engine.calls, (Lines{"SetWindow", "Start 1 0 null", "SetAnalysis 0"}));
    EXPECT_EQ(window.loadedIndex, -1);
    EXPECT_EQ(window.names, (std::vector<std::u16string>{u"Alpha", u"Beta"}));
    EXPECT_EQ(loadedPaths, std::vector<std::u16string>{u"/p/Engines/Beta/Beta"});
    EXPECT_EQ(engine.sizeAsked, 76u);
    // A second start offers the loaded engine only; loading another is refused. The position's
    // text goes only when asked for.
    Play("e4");
    engine.calls.clear();
    ASSERT_TRUE(Start(false, true));
    EXPECT_EQ(engine.calls, (Lines{"Start 1 1 null", "SetAnalysis 1"}));
    ASSERT_TRUE(Start(false, true, true));
    EXPECT_EQ(engine.calls[2], std::string("Start 1 1 ") + kAfterE4);
    EXPECT_EQ(window.loadedIndex, 1);
    EXPECT_FALSE(host.LoadEngine(0));
    EXPECT_EQ(window.boxes.back(), "text 40115");
    window.answer = 2;
    EXPECT_FALSE(Start(true, true));
}

// Each check of a load in turn fails, with its message; the engine is not started.
TEST_F(HostFixture, EachLoadFailureHasItsMessage) {
    struct Case {
        const char* name;
        bool library, entry, engine;
        std::uint32_t version;
        const char* box;
    };
    const Case cases[] = {{"no library", false, true, true, 2, "text 40111"},
                          {"no entry point", true, false, true, 2, "text 40112"},
                          {"no engine", true, true, false, 2, "text 40114"},
                          {"version 1", true, true, true, 1, "text 40117"},
                          {"version 3", true, true, true, 3, "text 40117"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        libraryFound = c.library;
        entryFound = c.entry;
        gEngineToLoad = c.engine ? &engine : nullptr;
        engine.version = c.version;
        EngineHost fresh(u"/p/", files, Loader());
        window.host = &fresh;
        window.boxes.clear();
        bool play = false;
        bool black = false;
        EXPECT_FALSE(fresh.StartEngine(window, &play, &black, false, game));
        EXPECT_EQ(window.boxes, Lines{c.box});
        EXPECT_TRUE(engine.calls.empty());
        fresh.Detach();
    }
}

TEST_F(HostFixture, PlayingWhiteTheEngineMovesAtOnceAndItsNameGoesToWhite) {
    ASSERT_TRUE(Start(true, false));
    EXPECT_EQ(engine.calls, (Lines{"SetWindow", "Start 0 0 null", "Go", "SetAnalysis 0"}));
    EXPECT_TRUE(host.Thinking());
    EXPECT_EQ(WideToUtf8(game.white.View()), "Recorder");
    gCallbacks->MovePlayed(u"e2e4");
    EXPECT_FALSE(host.Thinking());
    ASSERT_NE(game.Current()->ArrivalNode(), nullptr);
    EXPECT_EQ(game.Current()->ArrivalNode()->to, 28);
    EXPECT_EQ(window.sounds, (std::vector<std::u16string>{u"/p/move.wav"}));
    EXPECT_TRUE(game.modified);
}

// The user's moves go in the engine's notation and make it think; its own move is not sent
// back. Coordinate moves go both ways in the other tests.
TEST_F(HostFixture, SanEnginesGetAndGiveSan) {
    engine.flags = 0;
    ASSERT_TRUE(Start(true, true));
    engine.calls.clear();
    Play("e4");
    EXPECT_TRUE(host.Thinking());
    gCallbacks->MovePlayed(u"Nf6");
    EXPECT_FALSE(host.Thinking());
    Play("e5");
    EXPECT_EQ(engine.calls, (Lines{"PlayMove e4", "PlayMove e5"}));
}

// Browsing away and playing elsewhere: in play the engine hears the position before the move,
// then the move; in analysis it only hears the position after it.
TEST_F(HostFixture, OutOfStepPositionsAreSentInPlayAndInAnalysis) {
    ASSERT_TRUE(Start(true, true));
    Play("e4");
    gCallbacks->MovePlayed(u"e7e5");
    game.GoToStart();
    engine.calls.clear();
    Play("d4");
    EXPECT_EQ(engine.calls,
              (Lines{"SetPosition rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
                     "PlayMove d2d4"}));
    ASSERT_TRUE(Start(false, true));
    game.GoToStart();
    engine.calls.clear();
    Play("c4");
    EXPECT_EQ(engine.calls,
              Lines{"SetPosition rnbqkbnr/pppppppp/8/8/2P5/8/PP1PPPPP/RNBQKBNR b KQkq c3 0 1"});
}

TEST_F(HostFixture, CoordinateMovesPromoteAndBadOnesAreReported) {
    Position* start = &game.StartPosition();
    ASSERT_TRUE(start->SetFromText(u"4k3/P7/8/8/8/8/7p/4K3 w - - 0 40"));
    ASSERT_TRUE(Start(true, false, true));
    struct Case {
        const char16_t* move;
        int promotion;  // -1: refused
    };
    // A fifth letter that is no piece leaves the choice to the move rules: the queen here.
    const Case cases[] = {{u"a7a8q", kQueen}, {u"a7a8n", kKnight}, {u"a7a8k", kQueen},
                          {u"a7a9q", -1},     {u"e1e3", -1},       {u"xx", -1}};
    for (const Case& c : cases) {
        SCOPED_TRACE(WideToUtf8(c.move));
        game.SetCurrent(start);
        host.SetResend();
        game.SetCurrent(start);
        window.boxes.clear();
        gCallbacks->MovePlayed(c.move);
        if (c.promotion < 0) {
            EXPECT_EQ(game.Current(), start);
            ASSERT_EQ(window.boxes.size(), 1u);
            EXPECT_EQ(window.boxes[0], "Invalid move from the Engine : " + WideToUtf8(c.move));
        } else {
            ASSERT_NE(game.Current(), start);
            EXPECT_EQ(game.Current()->ArrivalNode()->promotion, c.promotion);
            EXPECT_TRUE(window.boxes.empty());
        }
    }
}

// A deleted move, or the engine switching sides, sends the position again at the next change,
// and Go when it is the engine's turn there.
TEST_F(HostFixture, ResendsAfterADeletedMoveAndAfterSwitchingSides) {
    ASSERT_TRUE(Start(true, true));
    Position* afterE4 = Play("e4");
    gCallbacks->MovePlayed(u"e7e5");
    Position* afterE5 = game.Current();
    engine.calls.clear();
    host.OnPositionChanged(afterE4);
    EXPECT_TRUE(engine.calls.empty()) << "no resend asked";
    host.SetResend();
    game.SetCurrent(afterE4);
    EXPECT_EQ(engine.calls, (Lines{std::string("SetPosition ") + kAfterE4, "Go"}));
    EXPECT_TRUE(host.Thinking());

    window.messages.clear();
    engine.calls.clear();
    gCallbacks->SwitchSides();
    EXPECT_EQ(window.messages, (std::vector<unsigned>{kEngineSwitchedSides}));
    // The engine plays White now: its turn after e5.
    game.SetCurrent(afterE5);
    ASSERT_EQ(engine.calls.size(), 2u);
    EXPECT_EQ(engine.calls[1], "Go");
}

TEST_F(HostFixture, CallbacksStoreAndTellTheWindow) {
    ASSERT_TRUE(Start(true, true));
    window.messages.clear();
    gCallbacks->SearchInfo(7, 250, 123456, 3050, "+0.35 and a long move text", "e4\t\te5");
    std::int32_t n[4];
    char16_t move[16];
    char16_t line[128];
    host.GetSearchInfo(&n[0], &n[1], &n[2], &n[3], move, 16, line, 128);
    EXPECT_EQ((std::vector<int>{n[0], n[1], n[2], n[3]}), (std::vector<int>{7, 250, 123456, 3050}));
    EXPECT_EQ(WideToUtf8(move), "+0.35 and a lon");
    EXPECT_EQ(WideToUtf8(line), "e4 e5");  // a run of control characters is one blank
    EXPECT_EQ(CleanSearchLine(std::string(200, 'a').c_str()), std::string(127, 'a'));
    EXPECT_EQ(CleanSearchLine(nullptr), "");

    gCallbacks->ShowInfo(1);
    gCallbacks->SetTimeControl(0, 40, 7200, 0, 3600, 0, 5);
    EXPECT_EQ(game.GetSettings(), (SettingsBlock{0, 40, 7200, 0, 3600, 0, 5}));
    gCallbacks->SetEngineName(u"Deep Recorder");
    EXPECT_EQ(WideToUtf8(game.black.View()), "Deep Recorder");
    EXPECT_EQ(window.messages, (std::vector<unsigned>{kEngineSearchInfo, kEngineShowInfo}));
}

TEST_F(HostFixture, GameOverShowsItsBoxOnceButAlwaysSetsTheResult) {
    ASSERT_TRUE(Start(true, true));
    Play("e4");
    ASSERT_TRUE(host.Thinking());
    window.messages.clear();
    gCallbacks->GameOver(u"0-1", u"White resigns");
    gCallbacks->GameOver(u"0-1", u"White resigns");
    EXPECT_EQ(window.messages, (std::vector<unsigned>{kEngineGameOver}));
    EXPECT_EQ(WideToUtf8(host.GameOverText()), "White resigns");
    EXPECT_EQ(game.result, 2);
    EXPECT_FALSE(host.Thinking());
    game.SetResultCode(3);
    gCallbacks->GameOver(u"0-1", u"White resigns");
    EXPECT_EQ(game.result, 2) << "the result is set even when the box is not shown again";
    gCallbacks->GameOver(u"1/2-1/2", u"Stalemate");
    EXPECT_EQ(window.messages.size(), 2u);
}

TEST_F(HostFixture, ForwardsCommandsAndGoesWithItsEngine) {
    EXPECT_EQ(host.ForwardCommand(nullptr, 45001, 0), 0) << "no engine yet";
    ASSERT_TRUE(Start(true, true));
    EXPECT_EQ(host.ForwardCommand(nullptr, 45001, 0), 1);
    engine.alive = 0;
    EXPECT_FALSE(host.IsAlive());
    EXPECT_FALSE(engine.released);
    {
        EngineHost other(u"/p/", files, Loader());
        ASSERT_TRUE(other.LoadEngine(0));
    }
    EXPECT_TRUE(engine.released) << "the engine goes with its host";
}

}  // namespace
}  // namespace velmora
