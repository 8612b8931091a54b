// Position: construction, copying, comments, continuations and playing moves into the tree.
#include "game/Position.h"

#include <cstring>

#include "core/MoveRules.h"
#include "game/BlockRecycler.h"
#include "game/MoveTree.h"

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

}  // namespace velmora
