// The board editor: the controls a copied board shows, and the checks of a set-up board.
#include "core/PositionSetup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "tests/core/TestBoards.h"

namespace velmora {
namespace {

using testing::FromText;
using testing::Sq;

// The castling boxes named like position text: "KQkq" all four, "-" none.
std::array<bool, 4> Boxes(const std::string& letters) {
    return {letters.find('K') != std::string::npos, letters.find('Q') != std::string::npos,
            letters.find('k') != std::string::npos, letters.find('q') != std::string::npos};
}

std::array<bool, 4> FlagsOf(const PositionValue& board) {
    return {board.castleWhiteKing != 0, board.castleWhiteQueen != 0, board.castleBlackKing != 0,
            board.castleBlackQueen != 0};
}

// Each board is validated with the boxes given, over castle flags "KQ" written earlier: the
// kings' check leaves those flags, every later outcome has written the boxes that survived.
TEST(PositionSetup, ValidationTable) {
    const struct {
        const char* board;
        bool whiteToPlay;
        const char *boxes, *error, *warning, *castlingAfter;
    } cases[] = {
        {testing::kCastles, true, "KQkq", "", "", "KQkq"},
        {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", true, "KQkq", "",
         "White O-O,White O-O-O,Black O-O,Black O-O-O disabled", "-"},
        {"r3k3/8/8/8/8/8/8/R3K3 w - - 0 1", true, "KQkq", "", "White O-O,Black O-O disabled", "Qq"},
        {"4k3/8/8/8/8/8/4K3/7R w - - 0 1", true, "K", "", "White O-O disabled", "-"},
        // A rook of the wrong colour in the corner does not count.
        {"4k3/8/8/8/8/8/8/4K2r w - - 0 1", true, "K", "", "White O-O disabled", "-"},
        {"8/8/8/8/8/8/8/4K3 w - - 0 1", true, "-", "I need a black king !", "", "-"},
        {"8/8/8/8/8/8/8/8 w - - 0 1", true, "KQkq", "I need a white king !", "", "KQkq"},
        // The first duplicate in square order (a1, b1, ... h8) is the one reported, before
        // any missing king.
        {"K3K3/8/8/8/8/8/8/k3k3 w - - 0 1", true, "-", "Only one black king please", "", "-"},
        {"k3k3/8/8/8/8/8/8/K3K3 w - - 0 1", true, "-", "Only one white king please", "", "-"},
        // The side to move may stand in check, the other side may not; the castle flags are
        // written before that test.
        {"4k3/8/8/8/8/8/8/r3K2R w - - 0 1", true, "K", "", "", "K"},
        {"4k3/8/8/8/8/8/8/r3K2R w - - 0 1", false, "K",
         "White in check incompatible with black to move", "", "K"},
        {"r3k2R/8/8/8/8/8/8/4K3 w - - 0 1", true, "KQq",
         "Black in check incompatible with white to move", "White O-O,White O-O-O disabled", "q"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.board) + (c.whiteToPlay ? " white" : " black") + " " + c.boxes);
        PositionValue board = FromText(c.board);
        board.SetCastling(true, true, false, false);
        SetupChoices choices;
        choices.whiteToPlay = c.whiteToPlay;
        const std::array<bool, 4> boxes = Boxes(c.boxes);
        std::copy(boxes.begin(), boxes.end(), choices.castling);
        const SetupVerdict verdict = ValidateSetup(board, choices);
        EXPECT_EQ(testing::Narrow(verdict.error.c_str()), c.error);
        EXPECT_EQ(verdict.accepted, std::string(c.error).empty());
        EXPECT_EQ(testing::Narrow(verdict.castlingWarning.c_str()), c.warning);
        EXPECT_EQ(std::to_array(verdict.castling), Boxes(c.castlingAfter));
        const bool kingsPassed = std::string(c.error).find("king") == std::string::npos;
        EXPECT_EQ(FlagsOf(board), kingsPassed ? Boxes(c.castlingAfter) : Boxes("KQ"));
    }
}

// The stored number is the last move played: the one before for white to play, wrapping at
// 256. The editor shows the stored number plus one for either side, so a copied board with
// black to play shows one more than was typed: intended, kept as the editor always did.
TEST(PositionSetup, MoveNumberSideAndEnPassantOfAnAcceptedBoard) {
    const struct {
        bool whiteToPlay;
        std::uint32_t entered, stored, shown;
    } cases[] = {{true, 1, 0, 1},
                 {false, 1, 1, 2},
                 {true, 0, 255, 256},
                 {false, 256, 0, 1},
                 {true, 300, 43, 44}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.entered) + (c.whiteToPlay ? " white" : " black"));
        PositionValue board = FromText(testing::kCastles);
        board.enPassant = Sq("d6");
        board.sideToMove = c.whiteToPlay ? kBlack : kWhite;
        SetupChoices choices;
        choices.whiteToPlay = c.whiteToPlay;
        choices.moveNumber = c.entered;
        ASSERT_TRUE(ValidateSetup(board, choices).accepted);
        EXPECT_EQ(board.moveNumber, c.stored);
        EXPECT_EQ(board.sideToMove, c.whiteToPlay ? kWhite : kBlack);
        EXPECT_EQ(board.enPassant, Sq("d6"));  // left as it was
        const SetupChoices shown = ChoicesShowing(board);
        EXPECT_EQ(shown.moveNumber, c.shown);
        EXPECT_EQ(shown.whiteToPlay, c.whiteToPlay);
    }
    PositionValue board = FromText("r3k2r/8/8/8/8/8/8/R3K2R b Kq - 0 1");
    EXPECT_EQ(std::to_array(ChoicesShowing(board).castling), Boxes("Kq"));
}

}  // namespace
}  // namespace velmora
