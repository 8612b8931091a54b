// The UCI bridge library over a stand-in connection: the host's calls become UCI lines, and the
// engine's lines become calls to the host, through the library's own thread.
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "plugins/RecordingHost.h"
#include "plugins/ucibridge/UciBridgeEngine.h"

namespace velmora::plugin {
namespace {

using testing::RecordingHost;
using Lines = std::vector<std::string>;

constexpr char16_t kBeforeFoolsMate[] =
    u"rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq - 0 2";

// Records what the library sends; answers the handshake by itself, everything else is fed by
// the test.
class StandInConnection final : public EngineConnection {
  public:
    explicit StandInConnection(UciBridgeEngine* engine) : engine_(engine) {}
    void SendLine(const std::string& line) override {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            sent_.push_back(line);
        }
        if (!handshaking_) return;
        if (line == "uci") {
            engine_->Receive("id name Stand-in 1.0");
            engine_->Receive("uciok");
        } else if (line == "isready") {
            handshaking_ = false;
            engine_->Receive("readyok");
        }
    }
    bool Running() override { return true; }
    void Close() override {}

    Lines Take() {
        std::lock_guard<std::mutex> lock(mutex_);
        Lines sent;
        sent.swap(sent_);
        return sent;
    }

  private:
    UciBridgeEngine* engine_;
    std::atomic<bool> handshaking_{true};
    std::mutex mutex_;
    Lines sent_;
};

class BridgeLibrary : public ::testing::Test {
  protected:
    void SetUp() override {
        engine_ = new UciBridgeEngine(&host_);
        auto connection = std::make_unique<StandInConnection>(engine_);
        connection_ = connection.get();
        engine_->Attach(std::move(connection));
        ASSERT_TRUE(engine_->Handshake({{"Hash", "4"}}, 5000));
        EXPECT_EQ(Sent(), (Lines{"uci", "setoption name Hash value 4", "isready"}));
    }
    void TearDown() override { engine_->Release(); }

    // Feeds the engine's lines and waits until the library has dealt with them.
    void Hear(const Lines& lines) {
        for (const std::string& line : lines)
            engine_->Receive(line);
        engine_->Flush();
    }
    // What the library sent since the last call, once it has dealt with every call so far.
    Lines Sent() {
        engine_->Flush();
        return connection_->Take();
    }

    RecordingHost host_;
    UciBridgeEngine* engine_ = nullptr;
    StandInConnection* connection_ = nullptr;
};

TEST_F(BridgeLibrary, PlaysWhiteOnTheClock) {
    EXPECT_EQ(engine_->OnCommand(nullptr, kFirstLevelCommand + 4, 0), 1);  // 5 minutes + 3 s
    host_.SetClock(300000, 300000, 0);
    engine_->Start(0, 0, nullptr);
    engine_->SetWindow(nullptr);
    engine_->Go();
    engine_->SetAnalysis(0);
    EXPECT_EQ(Sent(), (Lines{"ucinewgame", "isready"}));
    Hear({"readyok"});
    EXPECT_EQ(Sent(),
              (Lines{"position startpos", "go wtime 298000 btime 300000 winc 3000 binc 3000"}));

    Hear(
        {"info depth 12 seldepth 18 score cp 31 nodes 1234567 nps 987654 time 1250 pv e2e4 e7e5 "
         "g1f3",
         "bestmove e2e4 ponder e7e5"});
    EXPECT_EQ(host_.TakeCalls(),
              (Lines{"SetTimeControl 0 0 300 0 0 0 3", "ShowInfo 1",
                     "SearchInfo 12 987 1234567 1250 +0.31 | 1. e4 e5 2. Nf3", "MovePlayed e2e4"}));

    // The user's move: the engine thinks on its own, on the clock as it is now.
    host_.SetClock(296000, 299000, 0);
    engine_->PlayMove(u"e7e5");
    EXPECT_EQ(Sent(), (Lines{"position startpos moves e2e4 e7e5",
                             "go wtime 294000 btime 299000 winc 3000 binc 3000"}));
    // "Move now" stops the search and plays its move; a command not of the menu is left alone.
    EXPECT_EQ(engine_->OnCommand(nullptr, 40000, 0), 0);
    EXPECT_EQ(engine_->OnCommand(nullptr, (1u << 16) | kMoveNowCommand, 0), 1);
    EXPECT_EQ(Sent(), Lines{"stop"});
    Hear({"bestmove g1f3"});
    EXPECT_EQ(host_.TakeCalls(), Lines{"MovePlayed g1f3"});
}

TEST_F(BridgeLibrary, PlaysBlackAtAFixedTimePerMove) {
    engine_->OnCommand(nullptr, kFirstLevelCommand + 0, 0);  // 1 second per move
    engine_->Start(1, 0, nullptr);
    engine_->SetAnalysis(0);
    Hear({"readyok"});
    EXPECT_EQ(Sent(), (Lines{"ucinewgame", "isready"}));  // White to move: nothing to think
    engine_->PlayMove(u"d2d4");
    EXPECT_EQ(Sent(), (Lines{"position startpos moves d2d4", "go movetime 900"}));
    // A takeback while the engine thinks: its move is dropped, and it waits for Go.
    engine_->SetPosition(u"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    EXPECT_EQ(Sent(), Lines{"stop"});
    Hear({"bestmove d7d5"});
    EXPECT_TRUE(Sent().empty());
    engine_->PlayMove(u"c2c4");
    Hear({"bestmove e7e5"});
    EXPECT_EQ(Sent(),
              (Lines{"position fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1 "
                     "moves c2c4",
                     "go movetime 900"}));
    EXPECT_EQ(host_.TakeCalls(),
              (Lines{"SetTimeControl 1 0 0 0 0 0 0", "ShowInfo 1", "MovePlayed e7e5"}));
}

TEST_F(BridgeLibrary, AnalysesAgainAfterEachChange) {
    engine_->Start(1, 1, kBeforeFoolsMate);
    engine_->SetAnalysis(1);
    Hear({"readyok"});
    const std::string fen = "rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq - 0 2";
    EXPECT_EQ(Sent(), (Lines{"ucinewgame", "isready", "position fen " + fen, "go infinite"}));
    Hear({"info depth 3 score mate 1 nodes 300 time 2 pv d8h4"});
    engine_->PlayMove(u"b8c6");
    EXPECT_EQ(Sent(), Lines{"stop"});
    Hear({"info depth 4 score mate 1 nodes 900 time 3 pv d8h4", "bestmove d8h4"});
    EXPECT_EQ(Sent(), (Lines{"position fen " + fen + " moves b8c6", "go infinite"}));
    Hear({"info depth 1 score cp 80 nodes 30 time 0 pv b1c3"});
    // The score is White's view: Black mates at first, then White is better.
    EXPECT_EQ(host_.TakeCalls(), (Lines{"ShowInfo 1", "SearchInfo 3 150 300 2 #-1 | 2... Qh4+",
                                        "SearchInfo 1 0 30 0 +0.80 | 3. Nc3"}));
}

TEST_F(BridgeLibrary, EndsTheGameWhenTheEngineHasNoMove) {
    engine_->Start(0, 0, kBeforeFoolsMate);
    engine_->SetAnalysis(0);
    Hear({"readyok"});
    Sent();
    engine_->PlayMove(u"d8h4");
    EXPECT_TRUE(Sent().empty());
    EXPECT_EQ(host_.TakeCalls(), (Lines{"ShowInfo 1", "GameOver 0-1 Checkmate"}));

    // In an analysis the display says why there is nothing to search.
    engine_->Start(1, 1, u"k7/8/1QK5/8/8/8/8/8 b - - 0 1");
    Hear({"readyok"});
    EXPECT_EQ(Sent(), (Lines{"ucinewgame", "isready"}));
    EXPECT_EQ(host_.TakeCalls(), (Lines{"ShowInfo 1", "SearchInfo 0 0 0 0 Stalemate | "}));
}

TEST_F(BridgeLibrary, HearsNothingAfterStop) {
    engine_->Start(0, 0, nullptr);
    engine_->Go();
    Hear({"readyok"});
    EXPECT_EQ(Sent(), (Lines{"ucinewgame", "isready", "position startpos", "go movetime 4500"}));
    engine_->Stop();
    EXPECT_EQ(Sent(), Lines{"stop"});
    Hear({"info depth 9 score cp 3 nodes 10 time 1 pv e2e4", "bestmove e2e4"});
    EXPECT_EQ(host_.TakeCalls(), Lines{"ShowInfo 1"});
}

}  // namespace
}  // namespace velmora::plugin
