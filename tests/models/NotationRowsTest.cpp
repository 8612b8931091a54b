// The notation list's rows: texts, parentheses, rows inserted one move at a time against the
// whole list, and the scroll rule.
#include "models/NotationRows.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "core/LegalMoves.h"
#include "game/Game.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/Position.h"
#include "platform/CodePage.h"

#include <pthread.h>

namespace velmora {
namespace {

// Plays SAN moves into the game; "(" and ")" enclose a variation of the last move, "$n" is its
// glyph and "{text}" (no blanks) a comment after it.
void Build(Game& game, const std::string& moves) {
    std::vector<Position*> resume;
    Position* current = &game.StartPosition();
    std::istringstream words(moves);
    for (std::string word; words >> word;) {
        if (word == "(") {
            resume.push_back(current);
            current = current->PreviousPosition();
        } else if (word == ")") {
            current = resume.back();
            resume.pop_back();
        } else if (word[0] == '$') {
            current->ArrivalNode()->nag = static_cast<std::uint8_t>(std::stoi(word.substr(1)));
        } else if (word[0] == '{') {
            current->SetComment(platform::Utf8ToWide(word.substr(1, word.size() - 2)).c_str());
        } else {
            current = ReadSan(current, word.c_str());
            ASSERT_NE(current, nullptr) << word;
        }
    }
}

// The rows' texts separated by '|'.
std::string Texts(const std::vector<NotationRow>& rows) {
    std::string texts;
    for (const NotationRow& row : rows)
        texts += (texts.empty() ? "" : "|") + platform::WideToUtf8(row.text);
    return texts;
}

// Each case: the moves, whether comments are marked, and the rows after the blank first one.
TEST(NotationRows, RowsOfVariationsNestingGlyphsAndComments) {
    const std::tuple<std::string, bool, std::string> cases[] = {
        {"e4 ( d4 d5 ) e5", true, "1. e4|  (1. d4|  1... d5)|1... e5"},
        // Two variations of one move: the first is closed before the second opens.
        {"e4 ( d4 ) ( c4 ) e5", true, "1. e4|  (1. d4)|  (1. c4)|1... e5"},
        // Two variations end on one row.
        {"e4 ( d4 d5 ( Nf6 ) ) e5", true, "1. e4|  (1. d4|  1... d5|    (1... Nf6))|1... e5"},
        // A variation of the last move closes on the last row.
        {"e4 e5 ( c5 Nf3 )", true, "1. e4|1... e5|  (1... c5|  2. Nf3)"},
        {"e4 $1 e5 $6 Nf3", true, "1. e4!|1... e5?!|2. Nf3"},
        {"e4 {good} ( d4 {also} ) e5", true, "1. e4 [...]|  (1. d4 [...])|1... e5"},
        {"e4 {good} ( d4 {also} ) e5", false, "1. e4|  (1. d4)|1... e5"},
    };
    for (const auto& [moves, indicateComment, expected] : cases) {
        Game game;
        Build(game, moves);
        const std::vector<NotationRow> rows = BuildRows(game, indicateComment);
        EXPECT_EQ(Texts(rows), "   |" + expected) << moves;
        EXPECT_EQ(rows[0].node, nullptr);
    }
}

// Adds one move to a random position of the tree and returns its node, or null when the
// chosen position has no legal move that is not already in the tree.
MoveNode* AddRandomMove(std::vector<Position*>& positions, std::mt19937& random) {
    Position* position = positions.back();
    if (random() % 3 == 0) position = positions[random() % positions.size()];
    MoveList legal;
    LegalMoves(position->Value(), &legal);
    std::vector<Move> moves;
    for (const Move& m : legal) {
        if ((m.promotion == 0 || m.promotion == kQueen) &&
            position->FindContinuation(m.from, m.to, m.promotion) == nullptr)
            moves.push_back(m);
    }
    if (moves.empty()) return nullptr;
    const Move move = moves[random() % moves.size()];
    Position* after = position->PlayMove(move.from, move.to, nullptr, kQueen, nullptr);
    if (after == nullptr) return nullptr;
    if (random() % 5 == 0) after->SetComment(u"note");
    after->ArrivalNode()->nag = static_cast<std::uint8_t>(random() % 4 == 0 ? 1 + random() % 7 : 0);
    positions.push_back(after);
    return after->ArrivalNode();
}

// Rows inserted one move at a time give the same list as building it whole.
TEST(NotationRows, InsertingMoveByMoveGivesTheRebuiltList) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        Game game;
        std::vector<Position*> positions = {&game.StartPosition()};
        const bool indicateComment = seed % 2 == 0;
        std::vector<NotationRow> rows = BuildRows(game, indicateComment);
        for (int move = 0; move < 60; ++move) {
            MoveNode* node = AddRandomMove(positions, random);
            if (node == nullptr) continue;
            const int row = InsertRow(rows, node, indicateComment);
            EXPECT_EQ(RowOfNode(rows, node), row);
            const std::vector<NotationRow> rebuilt = BuildRows(game, indicateComment);
            ASSERT_EQ(Texts(rows), Texts(rebuilt)) << "seed " << seed << " move " << move;
            for (std::size_t k = 0; k < rows.size(); ++k)
                ASSERT_EQ(rows[k].node, rebuilt[k].node) << "seed " << seed << " row " << k;
        }
    }
}

// Builds the rows on a thread with a small stack, which a walk recursing per move overflows.
std::vector<NotationRow> BuildRowsOnSmallStack(Game& game) {
    struct Job {
        Game* game;
        std::vector<NotationRow> rows;
    } job{&game, {}};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 256 * 1024);
    pthread_t thread;
    auto run = [](void* argument) -> void* {
        Job* work = static_cast<Job*>(argument);
        work->rows = BuildRows(*work->game, true);
        return nullptr;
    };
    EXPECT_EQ(pthread_create(&thread, &attributes, run, &job), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    return std::move(job.rows);
}

TEST(NotationRows, ALongGameDoesNotRecursePerMove) {
    Game game;
    Position* position = &game.StartPosition();
    const char* const cycle[] = {"Nf3", "Nf6", "Ng1", "Ng8"};
    for (int ply = 0; ply < 10000; ++ply) {
        position = ReadSan(position, cycle[ply % 4]);
        ASSERT_NE(position, nullptr) << ply;
    }
    const std::vector<NotationRow> rows = BuildRowsOnSmallStack(game);
    ASSERT_EQ(rows.size(), 1u + 10000u);
    // Move numbers are kept in a byte: Black's move 5000 shows as 136.
    EXPECT_EQ(platform::WideToUtf8(rows.back().text), "136... Ng8");
}

TEST(NotationRows, ScrollRuleAndVisibleRows) {
    const struct {
        int row, top, visible, expected;
    } cases[] = {
        {3, 5, 10, 3},   // above the top: it becomes the top row
        {15, 5, 10, 5},  // at top + visible: the top becomes row - visible
        // Intended: scrolled down, the row lies just below the rows counted as visible.
        {40, 5, 10, 30},
    };
    for (const auto& c : cases)
        EXPECT_EQ(TopRowToShow(c.row, c.top, c.visible), c.expected) << c.row << " " << c.top;
    EXPECT_EQ(VisibleRowCount(138, 13), 10);
    EXPECT_EQ(VisibleRowCount(138, 0), 20);
    EXPECT_EQ(VisibleRowCount(138, -1), 20);  // the list box could not tell (LB_ERR)
}

}  // namespace
}  // namespace velmora
