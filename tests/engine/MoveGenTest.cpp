// The engine's move generator against the published perft figures; the board's keys, texts,
// moves, repetitions and material draws. The captures-only generator is exercised by the search.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "engine/search/MoveGen.h"
#include "tests/engine/EngineTestSupport.h"

namespace velmora::engine {
namespace {

using testing::BoardOf;

struct PerftCase {
    const char* name;
    const char* fen;
    int depth;
    std::uint64_t leaves;
};

// The well-known perft positions with their published leaf counts, at depths that keep the
// sanitizer build quick. Between them: castling both ways and through attacked squares, en
// passant that uncovers a check along the rank, promotions with and without capture, pins
// and discovered checks.
const PerftCase kPerftCases[] = {
    {"initial", kStartFen, 4, 197281},
    {"kiwipete", "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 3, 97862},
    {"rook endgame", "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", 5, 674624},
    {"promotions and pins", "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 3,
     9467},
    {"promotion by capture", "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", 3, 62379},
    {"symmetrical middlegame",
     "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10", 3, 89890},
};

TEST(EngineMoveGen, PerftMeetsThePublishedCounts) {
    for (const PerftCase& test : kPerftCases) {
        Board board = BoardOf(test.fen);
        EXPECT_EQ(Perft(board, test.depth), test.leaves) << test.name;
        EXPECT_EQ(board.Fen(), test.fen) << test.name << ": unmake restores the board";
    }
}

// Walks every line to depth: the key kept through make and unmake equals the key of the same
// position read afresh.
void CheckKeys(Board& board, int depth, const char* name) {
    const std::string fen = board.Fen();
    ASSERT_EQ(board.Key(), BoardOf(fen).Key()) << name << ": " << fen;
    if (depth == 0) return;
    MoveList moves;
    GenerateMoves(board, moves);
    for (Move move : moves) {
        board.MakeMove(move);
        CheckKeys(board, depth - 1, name);
        board.UnmakeMove();
        if (::testing::Test::HasFatalFailure()) return;
    }
}

TEST(EngineMoveGen, KeepsKeysThroughMakeAndUnmake) {
    for (const PerftCase& test : kPerftCases) {
        Board board = BoardOf(test.fen);
        CheckKeys(board, 2, test.name);
    }
}

TEST(EngineBoard, ReadsAndWritesFen) {
    // The perft positions are read and written back above; these add en passant and counters.
    const char* kText = "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 37 90";
    EXPECT_EQ(BoardOf(kText).Fen(), kText);

    Board board;
    // A double step without an enemy pawn beside it names no en-passant square, so the same
    // placement reached either way has one key.
    EXPECT_TRUE(board.SetFromFen("4k3/8/8/8/4P3/8/8/4K3 b - e3 0 1"));
    EXPECT_EQ(board.EnPassant(), -1);
    EXPECT_EQ(board.Key(), BoardOf("4k3/8/8/8/4P3/8/8/4K3 b - - 0 1").Key());
    // A castling right without the rook at home is dropped.
    EXPECT_EQ(BoardOf("4k3/8/8/8/8/8/8/4K3 w KQ - 0 1").Castling(), 0);
    // Texts that are not positions.
    const char* kBad[] = {
        "",
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP w KQkq - 0 1",  // seven ranks
        "8/8/8/8/8/8/8/K7 w - - 0 1",                       // no black king
        "4k3/8/8/8/8/8/8/4R1K1 w - - 0 1",                  // Black in check, White to move
    };
    for (const char* text : kBad)
        EXPECT_FALSE(board.SetFromFen(text)) << text;
}

TEST(EngineBoard, ParsesMovesAsCoordinates) {
    Board board = BoardOf("r3kb1r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
    const Move castle = ParseMove(board, "e1g1");
    EXPECT_EQ(MoveText(castle), "e1g1");
    board.MakeMove(castle);
    EXPECT_EQ(board.Fen(), "r3kb1r/8/8/8/8/8/8/R4RK1 b kq - 1 1");
    EXPECT_TRUE(ParseMove(board, "e8g8").IsNone());  // f8 is not empty
    EXPECT_TRUE(ParseMove(board, "zz").IsNone());
    Board promotion = BoardOf("8/4P1k1/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_TRUE(ParseMove(promotion, "e7e8").IsNone());  // the piece must be named
    EXPECT_EQ(ParseMove(promotion, "e7e8n").PromotionKind(), kKnightKind);
}

TEST(EngineBoard, FindsRepetitionsAndMaterialDraws) {
    Board board;
    const char* kShuffle[] = {"g1f3", "g8f6", "f3g1", "f6g8", "g1f3", "g8f6", "f3g1", "f6g8"};
    for (int i = 0; i < 8; ++i) {
        board.MakeMove(ParseMove(board, kShuffle[i]));
        // Twice the same position before the search started is not yet a draw; the third
        // time is.
        EXPECT_EQ(board.IsRepetition(0), i == 7) << i;
    }
    // Inside the search one repetition is enough.
    Board inSearch;
    for (int i = 0; i < 4; ++i)
        inSearch.MakeMove(ParseMove(inSearch, kShuffle[i]));
    EXPECT_TRUE(inSearch.IsRepetition(4));
    EXPECT_FALSE(inSearch.IsRepetition(3));

    EXPECT_TRUE(BoardOf("8/8/4k3/8/8/3KB3/8/8 w - - 0 1").IsInsufficientMaterial());
    EXPECT_FALSE(BoardOf("8/8/4k3/8/8/3KBN2/8/8 w - - 0 1").IsInsufficientMaterial());
    EXPECT_FALSE(BoardOf("8/8/4k3/8/8/3K4/4P3/8 w - - 0 1").IsInsufficientMaterial());
}

}  // namespace
}  // namespace velmora::engine
