// Moves entered by tapping: selection rules, the promotion piece and the place of the move in
// the game's tree, with what each view is told.
#include "models/MoveEntry.h"

#include "core/MoveRules.h"
#include "game/Game.h"
#include "game/MoveTree.h"

namespace velmora {

MoveEntry::MoveEntry(Game& game, MoveEntryHost& host, GameView* window)
    : game_(game), host_(host), window_(window) {}

TapOutcome MoveEntry::Tap(int square, void* promotionContext) {
    if (square < 0 || square > 63) return TapOutcome::Ignored;
    if (selected_ == kNoSquare) return Select(square);
    if (square == selected_) {
        selected_ = kNoSquare;
        return TapOutcome::Deselected;
    }
    const PositionValue& value = game_.Current()->Value();
    Move move{selected_, static_cast<Square>(square), 0};
    if (!IsLegalMove(value, move.from, move.to)) return TapOutcome::KeptSelection;
    if (IsPromotion(value, move.from, move.to)) {
        int piece = 0;
        if (PromotionChooser chooser = GetPromotionChooser()) piece = chooser(promotionContext);
        move.promotion = static_cast<std::uint8_t>(piece >= 2 && piece <= 5 ? piece : 5);
    }
    selected_ = kNoSquare;
    return EnterMove(move);
}

// Selects a piece of the side to move, when the user plays that colour.
TapOutcome MoveEntry::Select(int square) {
    const PieceCode code = game_.Current()->GetSquare(square);
    if (code == 0) return TapOutcome::Ignored;
    const Colour colour = ColourOf(code);
    if (colour != game_.Current()->SideToMove()) return TapOutcome::Ignored;
    if (!(colour == kWhite ? userPlaysWhite : userPlaysBlack)) return TapOutcome::Ignored;
    selected_ = static_cast<Square>(square);
    return TapOutcome::Selected;
}

TapOutcome MoveEntry::EnterMove(Move move) {
    Position* current = game_.Current();
    if (Position* known = current->FindContinuation(move.from, move.to, move.promotion)) {
        game_.SetCurrent(known);
        return TapOutcome::FollowedLine;
    }
    if (current->FirstContinuation() == nullptr) {
        Position* next = current->AddMove(move, nullptr, nullptr);
        game_.modified = 1;
        // Every view hears of the new move, the game window included.
        game_.NotifyChanged(next->ArrivalNode(), nullptr);
        return TapOutcome::Played;
    }
    MoveNode* replaced = current->FirstContinuation();
    const NewLineChoice choice = host_.AskNewLine(*current, move, &replaced);
    if (choice == NewLineChoice::Cancel) return TapOutcome::Cancelled;
    const bool replace = choice == NewLineChoice::Replace;
    if (replace && (replaced == nullptr || replaced->positionBefore != current)) {
        replaced = current->FirstContinuation();
    }
    Position* next = current->AddMove(move, replace ? replaced : nullptr, nullptr);
    game_.modified = 1;
    if (replace) {
        // The replaced line is gone: the other views rebuild what they show.
        game_.RefreshAll(window_);
    } else {
        game_.NotifyChanged(next->ArrivalNode(), window_);
    }
    game_.SetCurrent(next);
    return replace ? TapOutcome::ReplacedLine : TapOutcome::AddedLine;
}

}  // namespace velmora
