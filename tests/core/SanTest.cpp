// Short algebraic notation: reading moves into the tree and writing move nodes as text.
#include <gtest/gtest.h>

#include <string>

#include "core/MoveRules.h"
#include "game/Position.h"
#include "core/San.h"
#include "game/MoveTree.h"
#include "tests/core/TestBoards.h"

namespace velmora {
namespace {

using testing::FromText;
using testing::kCastles;
using testing::kCastlesBlack;
using testing::kPawns;
using testing::Narrow;
using testing::Play;
using testing::Sq;

constexpr const char* kStart = testing::kStartText;
constexpr const char* kPromotion = "8/4P1k1/8/8/8/8/8/4K3 w - - 0 1";
constexpr const char* kOneKnight = "4k3/8/5n2/8/8/8/8/4K2n b - - 0 1";

int ContinuationCount(const Position& position) {
    int count = 0;
    for (MoveNode* n = position.FirstContinuation(); n; n = n->nextAlternative)
        ++count;
    return count;
}

// The move that led to the position, as "e7e8q", or "-" for none.
std::string Coordinates(const Position* after) {
    if (!after) return "-";
    char16_t buffer[kSanBufferSize] = {};
    int length = WriteCoordinates(after->ArrivalNode(), buffer);
    EXPECT_EQ(length, int(Narrow(buffer).size()));
    return Narrow(buffer);
}

// Each case: the text read and the move it must play (from, to, promotion), or "-" for none.
TEST(SanReading, MovesAndFailures) {
    const std::pair<const char*, const char*> cases[] = {
        {kCastles, "O-O e1g1, 0-0 e1g1, O-O-O e1c1, 0-0-0 e1c1"},
        {kCastlesBlack, "O-O e8g8, O-O-O+ e8c8"},
        {kPawns, "exd5 e4d5, ed5 e4d5, e5 e4e5"},
        {"4k3/8/8/8/8/4P3/4P3/4K3 w - - 0 1", "e4 e3e4"},
        {"4k3/8/8/8/8/4N3/4P3/4K3 w - - 0 1", "e4 -"},
        {"4k3/4p3/4p3/8/8/8/8/4K3 b - - 0 1", "e5 e6e5"},
        {kPromotion, "e8 -, e8Q e7e8q, e8=Q e7e8q, e8=N+ e7e8n, e8=q -, e8K -"},
        {"4k3/8/8/8/8/8/p7/4K3 b - - 0 1", "a1=R a2a1r"},
        // Only the f6 knight reaches d7, so the b-file hint need not agree.
        {kOneKnight, "Nbd7 f6d7"},
        {"1n2k3/8/5n2/8/8/8/8/4K3 b - - 0 1", "Nbd7 b8d7, Nfxd7 f6d7, Nd7 f6d7, Ncd7 -"},
        {"4k3/8/8/8/8/8/4K3/R6R w - - 0 1", "Rd1 a1d1, Rhd1 h1d1, Rbd1 -"},
        {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", "Kxe2+ e1e2, Ke2!? e1e2, Ke3 -, Nf3 -"}};
    for (const auto& [text, list] : cases) {
        for (const auto& c : testing::Cases(list)) {
            SCOPED_TRACE(std::string(text) + ": " + c[0]);
            auto position = FromText(text);
            EXPECT_EQ(Coordinates(ReadSan(position.get(), c[0].c_str())), c[1]);
            EXPECT_EQ(ContinuationCount(*position), c[1] == "-" ? 0 : 1);
        }
    }
}

std::string San(MoveNode* node) {
    char16_t buffer[kSanBufferSize] = {};
    int length = WriteSan(node, buffer, 0, 0);
    EXPECT_EQ(length, int(Narrow(buffer).size()));
    return Narrow(buffer);
}

// Each case: moves played in order, then the text written for the last of them.
TEST(SanWriting, MoveTexts) {
    const std::pair<const char*, const char*> cases[] = {
        {kOneKnight, "f6d7 Nd7"},
        // Intended: with file and rank both shared, the letter is four files beyond the mover's.
        {"6k1/8/8/Q7/8/8/7K/Q3Q3 w - - 0 1", "a1c3 Qe1c3, e1c3 Qec3, a5c3 Q5c3"},
        {"4k3/3p4/8/4P3/8/8/8/4K3 b - - 0 1", "d7d5 e5d6 exd6"},
        {"4r1k1/8/8/8/8/8/4R3/4K3 w - - 0 1", "e2e8 Rxe8+"},
        {"4k3/8/8/8/8/8/3r4/4K3 w - - 0 1", "e1d2 Kxd2"},
        // Mate is marked like any check.
        {kStart, "f2f3 e7e5 g2g4 d8h4 Qh4+"},
        {kPromotion, "e7e8n e8=N+, e7e8q e8=Q"},
        {"3r2k1/4P3/8/8/8/8/8/4K3 w - - 0 1", "e7d8r exd8=R+"}};
    for (const auto& [text, list] : cases) {
        for (const auto& c : testing::Cases(list)) {
            auto position = FromText(text);
            Position* current = position.get();
            for (size_t n = 0; n + 1 < c.size(); ++n)
                ASSERT_NE(current = Play(current, c[n]), nullptr);
            EXPECT_EQ(San(current->ArrivalNode()), c.back()) << text << ": " << c[0];
        }
    }
}

// Every chess move of these positions, written and read back, names the same node.
TEST(SanRoundTrip, WrittenMovesReadBackToTheSameNode) {
    int checked = 0;
    for (const char* text : {kStart, testing::kKiwipete,
                             "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b KQkq - 0 1",
                             "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
                             "4k3/R7/8/8/8/8/3N1N2/R3K2R w KQ - 0 1"}) {
        auto position = FromText(text);
        for (int from = 0; from < 64; ++from) {
            for (int to = 0; to < 64; ++to) {
                int promotes = 0;
                if (!position->board[from] ||
                    ColourOf(position->board[from]) != position->sideToMove ||
                    !TestMove(*position, from, to, &promotes) ||
                    testing::ChessObjection(*position, from, to)) {
                    continue;
                }
                for (int type = promotes ? kRook : 0; type <= (promotes ? kQueen : 0); ++type) {
                    Position* after = position->PlayMove(from, to, nullptr, type, nullptr);
                    ASSERT_NE(after, nullptr);
                    std::string san = San(after->ArrivalNode());
                    int before = ContinuationCount(*position);
                    EXPECT_EQ(ReadSan(position.get(), san.c_str()), after) << text << ": " << san;
                    EXPECT_EQ(ContinuationCount(*position), before);
                    ++checked;
                }
            }
        }
    }
    EXPECT_GT(checked, 150);
}

}  // namespace
}  // namespace velmora
