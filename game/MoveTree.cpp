// MoveNode: captures, alternatives, replacing, deleting, promoting and walking the tree.
#include "game/MoveTree.h"

#include <utility>
#include <vector>

#include "game/BlockRecycler.h"
#include "game/Position.h"

namespace velmora {

MoveNode::MoveNode(Position* before, Position* after, Square fromSquare, Square toSquare,
                   std::uint8_t number)
    : from(fromSquare),
      to(toSquare),
      moveNumber(number),
      positionBefore(before),
      positionAfter(after) {}

void* MoveNode::operator new(std::size_t size) {
    return BlockRecycler<MoveNode>::Allocate(size);
}

void MoveNode::operator delete(void* block, std::size_t size) {
    BlockRecycler<MoveNode>::Free(block, size);
}

MoveNode::~MoveNode() {
    // Hand everything this node owns to the iterative teardown, so that a line thousands of
    // moves long does not nest thousands of destructor calls.
    MoveNode* next = nextAlternative;
    nextAlternative = nullptr;
    DestroyLine(next);
    if (positionAfter != nullptr) {
        MoveNode* continuation = positionAfter->firstContinuation_;
        positionAfter->firstContinuation_ = nullptr;
        DestroyLine(continuation);
        Position* after = positionAfter;
        positionAfter = nullptr;
        delete after;
    }
}

void MoveNode::SetFirstContinuation(Position* position, MoveNode* node) {
    position->firstContinuation_ = node;
}

// Frees a node, its later alternatives and everything that follows them, one node at a time:
// each node's links are cut before it is deleted, so no destructor recurses.
void DestroyLine(MoveNode* node) {
    if (node == nullptr) return;
    std::vector<MoveNode*> pending{node};
    while (!pending.empty()) {
        MoveNode* current = pending.back();
        pending.pop_back();
        if (current->nextAlternative != nullptr) {
            pending.push_back(current->nextAlternative);
            current->nextAlternative = nullptr;
        }
        if (current->positionAfter != nullptr) {
            if (MoveNode* next = current->positionAfter->FirstContinuation()) {
                pending.push_back(next);
                MoveNode::SetFirstContinuation(current->positionAfter, nullptr);
            }
        }
        delete current;
    }
}

void MoveNode::RecordCapture(PieceCode code, Square enPassantTarget) {
    captures = true;
    capturedCode = code;
    enPassantSquare = enPassantTarget;
}

bool MoveNode::GetCapture(PieceCode* code, Square* square) const {
    if (!captures) return false;
    if (code) *code = capturedCode;
    if (square) *square = enPassantSquare;
    return true;
}

MoveNode* MoveNode::FirstVariation() const {
    return previousAlternative == nullptr ? nextAlternative : nullptr;
}

MoveNode* MoveNode::NextVariation() const {
    return previousAlternative != nullptr ? nextAlternative : nullptr;
}

MoveNode* MoveNode::LastAlternative() {
    MoveNode* node = this;
    while (node->nextAlternative != nullptr)
        node = node->nextAlternative;
    return node;
}

void MoveNode::AppendAlternative(MoveNode* node, int lineLevel) {
    MoveNode* last = LastAlternative();
    last->nextAlternative = node;
    node->previousAlternative = last;
    node->level = static_cast<std::uint8_t>(lineLevel + 1);
}

bool MoveNode::ReplaceNode(MoveNode* old) {
    previousAlternative = old->previousAlternative;
    nextAlternative = old->nextAlternative;
    if (previousAlternative != nullptr) previousAlternative->nextAlternative = this;
    if (nextAlternative != nullptr) nextAlternative->previousAlternative = this;
    old->previousAlternative = nullptr;
    old->nextAlternative = nullptr;
    return previousAlternative == nullptr;
}

// Detaches the node so that deleting it removes only what "Delete move" should. A main-line
// node is cut loose with its alternatives: deleting a main-line move deletes the variations
// at that point too, which is intended.
void MoveNode::UnlinkNode() {
    if (previousAlternative != nullptr) {
        previousAlternative->nextAlternative = nextAlternative;
        if (nextAlternative != nullptr) nextAlternative->previousAlternative = previousAlternative;
        previousAlternative = nullptr;
        nextAlternative = nullptr;
    } else {
        positionBefore->firstContinuation_ = nullptr;
    }
}

// Climbs to the alternative that starts the variation holding this node, moves it to the
// head of its list and re-levels the list from there.
void MoveNode::PromoteLine() {
    MoveNode* node = this;
    while (node != nullptr && node->previousAlternative == nullptr) {
        node = node->positionBefore->ArrivalNode();
    }
    if (node == nullptr) return;  // on the game's main line: nothing to promote

    MoveNode* first = node->positionBefore->FirstContinuation();
    node->previousAlternative->nextAlternative = node->nextAlternative;
    if (node->nextAlternative != nullptr) {
        node->nextAlternative->previousAlternative = node->previousAlternative;
    }
    node->previousAlternative = nullptr;
    node->nextAlternative = first;
    first->previousAlternative = node;
    node->positionBefore->firstContinuation_ = node;
    node->Relevel(node->level - 1);
}

// Re-levels without recursion: each pending entry is a list start with the level of its
// first node; the others of the list get one more, and every node's continuation starts a
// list at the node's own level.
void MoveNode::Relevel(int newLevel) {
    std::vector<std::pair<MoveNode*, int>> pending{{this, newLevel}};
    while (!pending.empty()) {
        auto [node, lineLevel] = pending.back();
        pending.pop_back();
        int nodeLevel = lineLevel;
        for (; node != nullptr; node = node->nextAlternative, nodeLevel = lineLevel + 1) {
            node->level = static_cast<std::uint8_t>(nodeLevel);
            if (MoveNode* next = node->positionAfter->FirstContinuation()) {
                pending.emplace_back(next, nodeLevel);
            }
        }
    }
}

MoveNode* MoveNode::VariationStart() {
    MoveNode* node = this;
    while (node != nullptr && node->previousAlternative == nullptr) {
        node = node->positionBefore->ArrivalNode();
    }
    return node != nullptr ? node->positionBefore->FirstContinuation() : nullptr;
}

namespace {

// Returns the last move printed for the line that starts at node. A move's variations are
// printed after it and before its continuation, so a move with variations but no continuation
// ends the line in its last variation; otherwise the walk follows the line, and a continuation
// with variations of its own is looked at the same way in the next step.
MoveNode* DeepestLastMove(MoveNode* node) {
    while (MoveNode* next = node->positionAfter->FirstContinuation()) {
        bool endsInVariation =
            next->nextAlternative != nullptr && next->positionAfter->FirstContinuation() == nullptr;
        node = endsInVariation ? next->LastAlternative() : next;
    }
    return node;
}

}  // namespace

MoveNode* MoveNode::PreviousInNotation() {
    if (previousAlternative != nullptr) {
        if (previousAlternative->previousAlternative == nullptr) return previousAlternative;
        return DeepestLastMove(previousAlternative);
    }
    MoveNode* parent = positionBefore->ArrivalNode();
    if (parent == nullptr) return nullptr;
    if (parent->previousAlternative != nullptr) return parent;
    if (parent->nextAlternative != nullptr) return DeepestLastMove(parent->LastAlternative());
    return parent;
}

}  // namespace velmora
