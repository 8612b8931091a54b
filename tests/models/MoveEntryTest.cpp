// Moves entered by taps: what may be selected, the promotion piece, where the move goes in the
// tree, what the host is asked and what each view is told.
#include "models/MoveEntry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/models/ViewedGame.h"

namespace velmora {
namespace {

using testing::Continuations;
using testing::Sq;
using testing::Text;
using Calls = std::vector<std::string>;

struct Host final : MoveEntryHost {
    NewLineChoice AskNewLine(Position& position, Move move, MoveNode** replaced) override {
        askedMoves.push_back(testing::MoveName(move.from, move.to, move.promotion));
        askedAbout = &position;
        if (pick != nullptr) *replaced = pick;
        return answer;
    }
    NewLineChoice answer = NewLineChoice::Cancel;
    MoveNode* pick = nullptr;  // the continuation to replace; null keeps the one offered
    Calls askedMoves;
    Position* askedAbout = nullptr;
};

// A game shown by the window and a notation view, with the tap entry.
struct Table : testing::ViewedGame {
    using ViewedGame::ViewedGame;
    TapOutcome Enter(const char* move, void* context = nullptr) {
        EXPECT_EQ(entry.Tap(Sq(move), context), TapOutcome::Selected) << move;
        return entry.Tap(Sq(move + 2), context);
    }
    Host host;
    MoveEntry entry{game, host, &window};
};

// Only a piece of the side the user plays selects; taps off the board are ignored; an illegal
// target or another own piece keeps the selection without touching the game.
TEST(MoveEntry, TapsInTurn) {
    Table table("");
    const std::pair<int, TapOutcome> taps[] = {{-1, TapOutcome::Ignored},
                                               {64, TapOutcome::Ignored},
                                               {Sq("e7"), TapOutcome::Ignored},
                                               {Sq("e2"), TapOutcome::Selected},
                                               {Sq("e2"), TapOutcome::Deselected},
                                               {Sq("g1"), TapOutcome::Selected},
                                               {Sq("g4"), TapOutcome::KeptSelection},
                                               {Sq("e2"), TapOutcome::KeptSelection}};
    for (const auto& [square, outcome] : taps)
        EXPECT_EQ(table.entry.Tap(square, nullptr), outcome) << square;
    EXPECT_EQ(table.entry.Selected(), Sq("g1"));
    EXPECT_EQ(table.game.modified, 0);
    EXPECT_EQ(table.Calls(), " | ");
    EXPECT_EQ(table.entry.Tap(Sq("f3"), nullptr), TapOutcome::Played);

    Table engineWhite("");
    engineWhite.entry.userPlaysWhite = false;
    EXPECT_EQ(engineWhite.entry.Tap(Sq("e2"), nullptr), TapOutcome::Ignored);
    EXPECT_EQ(engineWhite.entry.Selected(), kNoSquare);
}

// An existing continuation is followed; at a line's end the move is played and all views told;
// otherwise the host decides: add (told as from the window) or replace (of the main line unless
// the host picks another; the other views refresh). A promotion takes the chooser's piece, or
// the queen without a chooser or a type from rook to queen.
TEST(MoveEntry, TheMovesPlaceInTheTreeAndWhatTheViewsAreTold) {
    using enum NewLineChoice;
    using enum TapOutcome;
    const char* start = testing::kStartText;
    const char* pawn = "4k3/P7/8/8/8/8/8/4K3 w - - 0 1";
    const struct {
        const char *board, *lines;
        NewLineChoice answer;
        int pick;     // the continuation the host picks to replace, -1 for the one offered
        int chooser;  // the piece the promotion chooser gives, -1 for no chooser
        const char* move;
        TapOutcome outcome;
        const char* continuations;
        const char* calls;  // to the window | to the notation
    } cases[] = {
        {start, "", Cancel, -1, -1, "e2e4", Played, "e2e4", "played e2e4 | played e2e4"},
        {start, "e2e4, d2d4", Cancel, -1, -1, "d2d4", FollowedLine, "e2e4 d2d4",
         "position | position"},
        {start, "e2e4 e7e5", Add, -1, -1, "d2d4", AddedLine, "e2e4 d2d4",
         "position | played d2d4 from window; position"},
        {start, "e2e4 e7e5, c2c4, g1f3", Replace, 1, -1, "d2d4", ReplacedLine, "e2e4 d2d4 g1f3",
         "position | refresh; position"},
        {start, "e2e4 e7e5, c2c4", Replace, -1, -1, "d2d4", ReplacedLine, "d2d4 c2c4",
         "position | refresh; position"},
        {start, "e2e4", Cancel, -1, -1, "d2d4", Cancelled, "e2e4", " | "},
        {pawn, "a7a8q", Add, -1, -1, "a7a8q", FollowedLine, "a7a8q", "position | position"},
        {pawn, "a7a8q", Add, -1, 0, "a7a8q", FollowedLine, "a7a8q", "position | position"},
        {pawn, "a7a8q", Add, -1, 3, "a7a8n", AddedLine, "a7a8q a7a8n",
         "position | played a7a8n from window; position"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.lines) + " then " + c.move);
        Table table(c.lines, c.board);
        Position& first = table.game.StartPosition();
        table.host.answer = c.answer;
        int index = 0;
        for (MoveNode* node = first.FirstContinuation(); node; node = node->nextAlternative) {
            if (index++ == c.pick) table.host.pick = node;
        }
        SetPromotionChooser(c.chooser >= 0 ? testing::ChooseFromContext : nullptr);
        int piece = c.chooser;
        EXPECT_EQ(table.Enter(c.move, &piece), c.outcome);
        EXPECT_EQ(table.entry.Selected(), kNoSquare);
        EXPECT_EQ(Continuations(first), c.continuations);
        EXPECT_EQ(table.Calls(), c.calls);
        EXPECT_EQ(table.game.modified, c.outcome == FollowedLine || c.outcome == Cancelled ? 0 : 1);
        const bool asked =
            c.outcome == AddedLine || c.outcome == ReplacedLine || c.outcome == Cancelled;
        EXPECT_EQ(table.host.askedMoves, asked ? Calls{c.move} : Calls{});
        EXPECT_EQ(table.host.askedAbout, asked ? &first : nullptr);
        if (c.outcome != Cancelled) {
            EXPECT_EQ(Text(table.game.Current()->ArrivalNode()), c.move);
        }
    }
}

}  // namespace
}  // namespace velmora
