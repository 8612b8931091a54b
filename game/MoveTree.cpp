// The move tree: positions and the moves between them, played, replaced, deleted, promoted
// and walked.
#include "game/MoveTree.h"

#include <cstring>
#include <utility>
#include <vector>

#include "core/MoveRules.h"
#include "game/BlockRecycler.h"
#include "game/Position.h"

namespace velmora {

Position::Position() = default;

void* Position::operator new(std::size_t size) {
    return BlockRecycler<Position>::Allocate(size);
}

void Position::operator delete(void* block, std::size_t size) {
    BlockRecycler<Position>::Free(block, size);
}

Position::~Position() {
    MoveNode* line = firstContinuation_;
    firstContinuation_ = nullptr;
    DestroyLine(line);
}

void Position::CopyFrom(const Position& other) {
    value_ = other.value_;
    setUp = true;
    // The object is fresh: whatever the links held is not ours to free.
    comment_.release();
    arrivalNode_ = nullptr;
    firstContinuation_ = nullptr;
}

void Position::SetState(bool castleWK, bool castleWQ, bool castleBK, bool castleBQ,
                        int enPassantSquare) {
    value_.SetCastling(castleWK, castleWQ, castleBK, castleBQ);
    value_.enPassant = static_cast<Square>(enPassantSquare);
}

bool Position::SetFromText(const char16_t* text) {
    if (!ReadPositionText(text, &value_)) return false;
    setUp = true;
    return true;
}

void Position::SetComment(const char16_t* text) {
    if (text == nullptr) {
        comment_.reset();
        return;
    }
    SetComment(std::u16string_view(text));
}

void Position::SetComment(std::u16string_view text) {
    comment_.reset(new char16_t[text.size() + 1]);
    std::memcpy(comment_.get(), text.data(), text.size() * sizeof(char16_t));
    comment_[text.size()] = 0;
}

int Position::ArrivalLevel() const {
    return arrivalNode_ ? arrivalNode_->level : 0;
}

Position* Position::PreviousPosition() const {
    return arrivalNode_ ? arrivalNode_->positionBefore : nullptr;
}

Position* Position::FindContinuation(int from, int to, int promotion) const {
    for (MoveNode* node = firstContinuation_; node; node = node->nextAlternative) {
        if (node->from == from && node->to == to && node->promotion == promotion) {
            return node->positionAfter;
        }
    }
    return nullptr;
}

// Plays the move on a copy of previous's value and records on the new arrival node what it
// did: capture, castling, promotion and check.
Position::Position(Position& previous, Move move, void* promotionContext)
    : value_(previous.value_) {
    if (move.promotion == 0 && IsPromotion(value_, move.from, move.to)) {
        if (PromotionChooser chooser = GetPromotionChooser()) {
            move.promotion = static_cast<std::uint8_t>(chooser(promotionContext));
        }
    }
    const PlayedMove played = PlayOnValue(value_, move);
    MoveNode* node = new MoveNode(&previous, this, move.from, move.to, value_.moveNumber);
    arrivalNode_ = node;
    if (played.effects.captured || played.effects.enPassantCapture) {
        node->RecordCapture(played.effects.capturedCode,
                            played.effects.enPassantCapture ? move.to : Square{0});
    }
    node->castlingKind = played.effects.castlingKind;
    node->promotion = played.promotion;
    node->givesCheck = played.givesCheck;
}

Position* Position::PlayMove(int from, int to, MoveNode* replace, int promotionType,
                             void* promotionContext) {
    if (from < 0 || to < 0 || from > 63 || to > 63) return nullptr;
    Move move{static_cast<Square>(from), static_cast<Square>(to),
              static_cast<std::uint8_t>(promotionType)};
    if (!IsLegalMove(value_, move.from, move.to)) return nullptr;
    return AddMove(move, replace, promotionContext);
}

// Builds the new position and hangs its node into the tree: the first continuation when there
// is none, in the replaced node's place, or as the last variation.
Position* Position::AddMove(Move move, MoveNode* replace, void* promotionContext) {
    Position* next = new Position(*this, move, promotionContext);
    MoveNode* node = next->arrivalNode_;
    if (firstContinuation_ == nullptr) {
        firstContinuation_ = node;
        node->level = static_cast<std::uint8_t>(ArrivalLevel());
    } else if (replace != nullptr) {
        node->level = replace->level;
        if (node->ReplaceNode(replace)) firstContinuation_ = node;
        delete replace;
    } else {
        firstContinuation_->AppendAlternative(node, firstContinuation_->level);
    }
    return next;
}

// --- Moves ---

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
