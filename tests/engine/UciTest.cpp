// The UCI conversation fed line by line, without a process: replies, positions, options and
// the parameters of "go".
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "engine/search/MoveGen.h"
#include "engine/uci/UciSession.h"

namespace velmora::engine {
namespace {

TEST(EngineUci, ReadsGoParameters) {
    SearchLimits limits;
    ASSERT_TRUE(ParseGoLimits("go wtime 61000 btime -35 winc 1000 binc 900 movestogo 12", &limits));
    // A clock that ran below zero reads as empty.
    EXPECT_EQ((std::vector<int>{limits.timeMs[0], limits.timeMs[1], limits.incrementMs[0],
                                limits.incrementMs[1], limits.movesToGo}),
              (std::vector<int>{61000, 0, 1000, 900, 12}));

    // Unknown words are skipped with what follows them; a value that is no number is unreadable.
    SearchLimits read;
    ASSERT_TRUE(ParseGoLimits("go ponder depth 3 searchmoves e2e4 infinite", &read));
    EXPECT_TRUE(read.depth == 3 && read.infinite);
    EXPECT_FALSE(ParseGoLimits("go movetime soon", &read));
}

class UciConversation : public ::testing::Test {
  protected:
    // Sends a line and returns the replies it produced at once.
    std::vector<std::string> Say(const std::string& line) {
        replies_.clear();
        alive_ = session_.HandleLine(line);
        return replies_;
    }

    Engine engine_{1};
    std::vector<std::string> replies_;
    UciSession session_{engine_, [this](const std::string& line) { replies_.push_back(line); }};
    bool alive_ = true;
};

// The handshake, the search's lines, the name it gives, "position startpos moves" and
// "go movetime" are checked over the bridge with the built program (tests/plugins/native).
TEST_F(UciConversation, OffersHashAndSetsPositionsAndOptions) {
    const std::vector<std::string> hello = Say("uci");
    EXPECT_EQ(std::count_if(hello.begin(), hello.end(),
                            [](const std::string& line) {
                                return line.rfind("option name Hash type spin", 0) == 0;
                            }),
              1);
    Say("position fen 8/4P1k1/8/8/8/8/8/4K3 w - - 0 1 moves e7e8n g7g6");
    EXPECT_EQ(engine_.CurrentBoard().Fen(), "4N3/8/6k1/8/8/8/8/4K3 w - - 1 2");
    // An illegal move leaves the last good position and says so.
    const std::vector<std::string> refused = Say("position startpos moves e2e5");
    ASSERT_EQ(refused.size(), 1u);
    EXPECT_EQ(refused[0].rfind("info string", 0), 0u);
    EXPECT_EQ(engine_.CurrentBoard().Fen(), "4N3/8/6k1/8/8/8/8/4K3 w - - 1 2");

    EXPECT_TRUE(Say("setoption name Hash value 2").empty());
    EXPECT_EQ(engine_.HashMegabytes(), 2);
}

TEST_F(UciConversation, StalemateGivesTheEmptyMoveAndQuitEnds) {
    Say("position fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
    Say("go depth 2");
    engine_.Wait();
    EXPECT_EQ(replies_.back(), "bestmove 0000");
    EXPECT_TRUE(Say("quit").empty());
    EXPECT_FALSE(alive_);
}

}  // namespace
}  // namespace velmora::engine
