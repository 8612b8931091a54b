// The move tree: positions of the tree, moves played and read into it, variations, replacing,
// deleting, promoting and walking in notation order.
#include <gtest/gtest.h>

#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/Position.h"
#include "tests/core/TestBoards.h"

namespace velmora {
namespace {

using testing::Sq;

// Plays a move written "e2e4" or "e7e8q" and returns the new position (null if refused).
Position* Play(Position* position, const std::string& move) {
    const Move m = testing::MoveOf(move);
    Position* next = position->PlayMove(m.from, m.to, nullptr, m.promotion, nullptr);
    EXPECT_NE(next, nullptr) << move;
    return next;
}

// Checks the links and levels of every node below position and returns how many there are.
int ExpectConsistent(Position* position) {
    int count = 0;
    MoveNode* first = position->FirstContinuation();
    MoveNode* previous = nullptr;
    for (MoveNode* node = first; node && count < 1000; node = node->nextAlternative) {
        EXPECT_EQ(node->positionBefore, position);
        EXPECT_EQ(node->previousAlternative, previous);
        EXPECT_EQ(node->positionAfter->ArrivalNode(), node);
        EXPECT_EQ(node->positionAfter->PreviousPosition(), position);
        EXPECT_EQ(node->level, position->ArrivalLevel() + (node == first ? 0 : 1))
            << "move " << int(node->from) << "-" << int(node->to);
        previous = node;
        count += 1 + ExpectConsistent(node->positionAfter);
    }
    return count;
}

// 1. e4 (1. d4 d5 (1... Nf6 2. c4) 2. c4) (1. c4 e5 (1... c5)) 1... e5 (1... c5) 2. Nf3 Nc6
class MoveTree : public ::testing::Test {
  protected:
    // Plays move after the given node (at the root for null); a refused move gives null.
    MoveNode* Add(MoveNode* after, const char* move) {
        Position* next = Play(after ? after->positionAfter : &root, move);
        return next ? next->ArrivalNode() : nullptr;
    }
    void ExpectLevels(std::initializer_list<std::pair<MoveNode*, int>> levels) {
        for (const auto& [node, level] : levels)
            EXPECT_EQ(node->level, level);
    }
    Position root;
    MoveNode* a = Add(nullptr, "e2e4");
    MoveNode* b = Add(a, "e7e5");
    MoveNode* c = Add(b, "g1f3");
    MoveNode* d = Add(c, "b8c6");
    MoveNode* e = Add(nullptr, "d2d4");
    MoveNode* f = Add(e, "d7d5");
    MoveNode* g = Add(f, "c2c4");
    MoveNode* j = Add(e, "g8f6");
    MoveNode* k = Add(j, "c2c4");
    MoveNode* h = Add(nullptr, "c2c4");
    MoveNode* i = Add(h, "e7e5");
    MoveNode* m = Add(h, "c7c5");
    MoveNode* l = Add(a, "c7c5");
};

TEST_F(MoveTree, LaterMovesBecomeVariationsOneLevelDeeper) {
    EXPECT_EQ(ExpectConsistent(&root), 13);
    ExpectLevels({{a, 0}, {d, 0}, {e, 1}, {g, 1}, {j, 2}, {k, 2}, {h, 1}, {m, 2}, {l, 1}});
    // Where each variation branches off: the first move of the list its line belongs to.
    EXPECT_EQ(d->VariationStart(), nullptr);
    EXPECT_EQ(g->VariationStart(), a);
    EXPECT_EQ(k->VariationStart(), f);
    EXPECT_EQ(l->VariationStart(), b);
}

TEST_F(MoveTree, ReplacingTheFirstAndALaterNode) {
    MoveNode* nc3 = root.PlayMove(Sq("b1"), Sq("c3"), a, 0, nullptr)->ArrivalNode();
    EXPECT_EQ(root.FirstContinuation(), nc3);
    EXPECT_EQ(nc3->nextAlternative, e);
    EXPECT_EQ(ExpectConsistent(&root), 13 - 5 + 1);
    MoveNode* nf3 = root.PlayMove(Sq("g1"), Sq("f3"), e, 0, nullptr)->ArrivalNode();
    EXPECT_EQ(nc3->nextAlternative, nf3);
    EXPECT_EQ(nf3->nextAlternative, h);
    EXPECT_EQ(root.FindContinuation(Sq("d2"), Sq("d4"), 0), nullptr);
    EXPECT_EQ(ExpectConsistent(&root), 13 - 5 - 5 + 2);
}

// Deleting a variation keeps the others. Intended: deleting a main-line move deletes the
// variations at that point too.
TEST_F(MoveTree, DeletingAVariationOrAMainLineMove) {
    e->UnlinkNode();
    delete e;
    EXPECT_EQ(a->nextAlternative, h);
    EXPECT_EQ(ExpectConsistent(&root), 13 - 5);
    a->UnlinkNode();
    EXPECT_EQ(root.FirstContinuation(), nullptr);
    delete a;
    EXPECT_EQ(Add(nullptr, "g1f3")->level, 0);
    EXPECT_EQ(ExpectConsistent(&root), 1);
}

// A variation of the last move of a line (2. Nf3 beside 2. c4 in the 1. d4 line) is printed
// before the next alternative of the line's first move.
TEST_F(MoveTree, PreviousInNotationFollowsThePrintedOrder) {
    MoveNode* nf3 = Add(f, "g1f3");
    MoveNode* printed[] = {a, e, f, j, k, g, nf3, h, i, m, b, l, c, d};
    EXPECT_EQ(a->PreviousInNotation(), nullptr);
    for (size_t n = 1; n < std::size(printed); ++n) {
        EXPECT_EQ(printed[n]->PreviousInNotation(), printed[n - 1]) << "printed move " << n;
    }
}

// Promoting a main-line move changes nothing. Promoting 1... d5 makes 1. d4 the main line; the
// old main line becomes its first alternative.
TEST_F(MoveTree, PromoteLineSwapsTheVariationIn) {
    c->PromoteLine();
    d->PromoteLine();
    EXPECT_EQ(root.FirstContinuation(), a);
    EXPECT_EQ(a->nextAlternative, e);
    EXPECT_EQ(b->nextAlternative, l);
    ExpectLevels({{a, 0}, {d, 0}, {e, 1}, {j, 2}, {l, 1}});
    f->PromoteLine();
    EXPECT_EQ(root.FirstContinuation(), e);
    EXPECT_EQ(e->nextAlternative, a);
    EXPECT_EQ(a->nextAlternative, h);
    ExpectLevels({{e, 0}, {f, 0}, {g, 0}, {j, 1}, {k, 1}, {a, 1}, {d, 1}, {l, 2}, {h, 1}, {m, 2}});
    EXPECT_EQ(ExpectConsistent(&root), 13);

    k->PromoteLine();
    EXPECT_EQ(e->positionAfter->FirstContinuation(), j);
    EXPECT_EQ(j->nextAlternative, f);
    EXPECT_EQ(ExpectConsistent(&root), 13);
}

// The node of a move played into the tree records what the move did.
TEST(TreePosition, PlayMoveRecordsTheMoveOnItsNode) {
    Position root;
    ASSERT_TRUE(root.SetFromText(u"4k3/3p4/8/4P3/8/8/8/4K2R b K - 0 1"));
    Position* taken = Play(Play(&root, "d7d5"), "e5d6");
    PieceCode captured = 0;
    Square enPassant = 0;
    ASSERT_TRUE(taken->ArrivalNode()->GetCapture(&captured, &enPassant));
    EXPECT_EQ(captured, kBlack + kPawn);
    EXPECT_EQ(enPassant, Sq("d6"));
    EXPECT_FALSE(taken->PreviousPosition()->ArrivalNode()->GetCapture(&captured, &enPassant));
    MoveNode* castled = Play(Play(taken, "e8f7"), "e1g1")->ArrivalNode();
    EXPECT_EQ(castled->castlingKind, 1);
    EXPECT_TRUE(castled->givesCheck);  // the rook gives it from f1
    // Squares beyond the board and illegal moves are refused and add nothing.
    for (const auto& [from, to] : {std::pair{64, 0}, {-1, 3}, {Sq("d6"), Sq("d8")}})
        EXPECT_EQ(taken->PlayMove(from, to, nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(taken->FirstContinuation()->nextAlternative, nullptr);

    // The promotion type comes from the caller, else the queen (move entry tests the chooser).
    Position promotion;
    ASSERT_TRUE(promotion.SetFromText(u"8/4P1k1/8/8/8/8/p7/4K3 w - - 0 1"));
    for (const int type : {0, int{kBishop}}) {
        Position* after = promotion.PlayMove(Sq("e7"), Sq("e8"), nullptr, type, nullptr);
        const int expected = type ? type : kQueen;
        EXPECT_EQ(after->ArrivalNode()->promotion, expected);
        EXPECT_EQ(after->GetSquare(Sq("e8")), expected);
    }
}

// A long game is freed without deep recursion (the native build checks for leaks).
TEST(MoveTreeTeardown, VeryLongLineIsDestroyed) {
    auto* root = new Position;
    const char* shuffle[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
    Position* position = root;
    for (int ply = 0; ply < 20000 && position; ++ply)
        position = Play(position, shuffle[ply % 4]);
    ASSERT_NE(position, nullptr);
    delete root;
}

}  // namespace
}  // namespace velmora
