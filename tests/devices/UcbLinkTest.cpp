// The UCB chessboard link: answers to the board's requests, take-back and new game, moves from
// the board entering the game, and the program's move lines.
#include "devices/UcbLink.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "tests/models/ViewedGame.h"

namespace velmora {
namespace {

using testing::Continuations;
using testing::Text;
using Lines = std::vector<std::string>;

struct BoardHost final : UcbLinkHost {
    bool SendToBoard(const char* text) override {
        sent.push_back(text);
        return writesWork;
    }
    void ShowBoardLine(const char16_t* text) override { shown.push_back(text); }
    void RedrawBoard() override { ++redraws; }
    Lines sent;
    std::vector<std::u16string> shown;
    int redraws = 0;
    bool writesWork = true;
};

// A game shown by the window and a notation view, linked to a board.
struct Table : testing::ViewedGame {
    explicit Table(const std::string& lines = "", const char* board = testing::kStartText)
        : ViewedGame(lines, board) {}
    // Hands the link a copy of line in a block of exactly its size, so that reading past its
    // end is caught by the address sanitizer.
    void Feed(const std::string& line) {
        auto copy = std::make_unique<char[]>(line.size() + 1);
        std::memcpy(copy.get(), line.c_str(), line.size() + 1);
        link.OnBoardLine(copy.get());
    }
    // Follows the main line for count moves without telling anyone.
    void Advance(int count) {
        for (Position* position = game.Current(); count-- > 0;)
            game.SetCurrent(position = position->FirstContinuation()->positionAfter);
        window.calls.clear();
        notation.calls.clear();
    }
    // Whether the game is as it was set up: unchanged, at the start, nothing told or redrawn.
    void ExpectUntouched(const char* continuations) {
        EXPECT_EQ(Continuations(game.StartPosition()), continuations);
        EXPECT_EQ(game.Current(), &game.StartPosition());
        EXPECT_EQ(host.redraws, 0);
        EXPECT_EQ(Calls(), " | ");
        EXPECT_EQ(game.modified, 0);
    }

    BoardHost host;
    int chosenPiece = 0;
    UcbLink link{game, &window, host, &chosenPiece};
};

// Requests are single capital letters answered with their line; other lines, and unreadable or
// illegal moves, change nothing.
TEST(UcbLink, AnswersRequestsAndIgnoresOtherLines) {
    std::vector<std::pair<std::string, std::string>> cases = {{"Xanything", "Xmit on\r\n"},
                                                              {"I", "Velmora 2.1\r\n"}};
    for (const char* line :
         {"x", " X", "M", "Me2e", "Mz9z9", "Me2e5", "Ma1a9", "M\xff\xff\xff\xff", "Me3e4"})
        cases.emplace_back(line, "");
    cases.emplace_back("M" + std::string(299, 'e'), "");
    for (const auto& [line, answer] : cases) {
        SCOPED_TRACE(line);
        Table table("e2e4");
        table.host.writesWork = false;  // a failed write changes nothing
        table.Feed(line);
        EXPECT_EQ(table.host.sent, answer.empty() ? Lines{} : Lines{answer});
        table.ExpectUntouched("e2e4");
    }
}

TEST(UcbLink, TakeBackAndNewGameMoveThroughTheGameWithoutChangingIt) {
    Table table("e2e4 e7e5 g1f3");
    table.Advance(3);
    Position* afterE5 = table.game.Current()->PreviousPosition();
    table.Feed("T");
    EXPECT_EQ(table.game.Current(), afterE5);
    EXPECT_EQ(table.host.redraws, 1);
    EXPECT_EQ(table.window.calls, "position");
    table.Feed("N");
    EXPECT_EQ(table.game.Current(), &table.game.StartPosition());
    EXPECT_EQ(Continuations(*afterE5), "g1f3");
    EXPECT_EQ(table.game.modified, 0);
}

// A promotion takes the board's letter, else the chooser's piece (-1: no chooser).
TEST(UcbLink, BoardMovesArePlayedFollowedOrAddedAsVariations) {
    const char* pawn = "k7/4P3/8/8/8/8/8/4K3 w - - 0 1";
    const struct {
        const char *board, *tree, *line;
        int chooser;
        const char* continuations;  // of the start position afterwards
        bool played;                // a node was added: modified, observers told
    } cases[] = {
        {testing::kStartText, "", "Me2e4", -1, "e2e4", true},
        {testing::kStartText, "e2e4 e7e5", "Me2e4", -1, "e2e4", false},
        {testing::kStartText, "e2e4 e7e5", "Md2d4", -1, "e2e4 d2d4", true},
        {pawn, "", "me7e8/n", 5, "e7e8n", true},
        {pawn, "", "Me7e8", 4, "e7e8b", true},
        {pawn, "e7e8q", "Me7e8", 5, "e7e8q", false},  // the promotion in the tree is followed
        {pawn, "e7e8q", "Me7e8/N", 5, "e7e8q e7e8n", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.tree) + " + " + c.line);
        Table table(c.tree, c.board);
        if (c.chooser >= 0) SetPromotionChooser(&testing::ChooseFromContext);
        table.chosenPiece = c.chooser;
        table.Feed(c.line);
        EXPECT_EQ(Continuations(table.game.StartPosition()), c.continuations);
        const Position* reached = table.game.Current();
        ASSERT_NE(reached->ArrivalNode(), nullptr);
        const std::string move = Text(reached->ArrivalNode());
        EXPECT_EQ(move.substr(0, 4), std::string(c.line + 1, 4));
        EXPECT_EQ(table.host.redraws, 1);
        EXPECT_EQ(table.game.modified, c.played ? 1 : 0);
        // The window sent the move, so only the other views hear of it.
        const std::string played = "played " + move + " from window; ";
        EXPECT_EQ(table.Calls(), "position | " + (c.played ? played : "") + "position");
    }
}

// Intended: the program's move lines to the board carry a hyphen, the board's lines to the
// program have none, so a program line fed back is not read as the same move.
TEST(UcbLink, BoardMovesHaveNoHyphenThoughTheProgramsLinesDo) {
    Table table("e2e4");
    const std::string line = UcbLink::MoveLine(*table.game.StartPosition().FirstContinuation());
    table.Feed(line.substr(0, line.size() - 2));  // "Me2-e4"
    EXPECT_EQ(table.game.Current(), &table.game.StartPosition());
    table.Feed("Me2e4");
    EXPECT_EQ(table.game.Current(), table.game.StartPosition().FirstContinuation()->positionAfter);
}

}  // namespace
}  // namespace velmora
