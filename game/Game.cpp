// Game: header setters that mark the game modified, navigation and observer notification.
#include "game/Game.h"

#include "game/GameIndex.h"
#include "game/MoveTree.h"

namespace velmora {

Game::Game(GameIndex* owner) : current_(&start_), owner_(owner) {}

Game::~Game() = default;

void Game::SetWhite(const char16_t* text) {
    GameSummary::SetWhite(text);
    modified = 1;
}
void Game::SetBlack(const char16_t* text) {
    GameSummary::SetBlack(text);
    modified = 1;
}
void Game::SetDate(const char16_t* text) {
    GameSummary::SetDate(text);
    modified = 1;
}
void Game::SetRound(const char16_t* text) {
    GameSummary::SetRound(text);
    modified = 1;
}
void Game::SetSite(const char16_t* text) {
    GameSummary::SetSite(text);
    modified = 1;
}
void Game::SetEvent(const char16_t* text) {
    GameSummary::SetEvent(text);
    modified = 1;
}
void Game::SetResultText(const char16_t* text) {
    GameSummary::SetResultText(text);
    modified = 1;
}
void Game::SetResultCode(int code) {
    GameSummary::SetResultCode(code);
    modified = 1;
}
ExtraTag* Game::SetTag(const char16_t* name, const char16_t* value) {
    modified = 1;
    return GameSummary::SetTag(name, value);
}
std::unique_ptr<ExtraTag> Game::RemoveTag(ExtraTag* tag) {
    modified = 1;
    return GameSummary::RemoveTag(tag);
}

// Tells the primary observer, then the others in order, that the current position changed.
void Game::NotifyPositionChanged() {
    if (primary_) primary_->OnPositionChanged(current_);
    for (int i = 0; i < observerCount_; ++i)
        observers_[i]->OnPositionChanged(current_);
}

void Game::SetCurrent(Position* position) {
    current_ = position;
    NotifyPositionChanged();
}

void Game::GoToStart() {
    SetCurrent(&start_);
}

// Follows first continuations from the current position to the end of its line.
void Game::GoToEnd() {
    Position* position = current_;
    while (MoveNode* next = position->FirstContinuation())
        position = next->positionAfter;
    SetCurrent(position);
}

void Game::GoBack() {
    if (Position* previous = current_->PreviousPosition()) SetCurrent(previous);
}

// Steps to the continuation; where there are variations the primary observer chooses.
void Game::GoForward() {
    MoveNode* first = current_->FirstContinuation();
    if (first == nullptr) return;
    MoveNode* chosen = first;
    if (first->nextAlternative != nullptr) {
        chosen = primary_ ? primary_->ChooseContinuation(first) : first;
        if (chosen == nullptr) return;
    }
    SetCurrent(chosen->positionAfter);
}

// Returns to the main move that the variation holding the current position replaces: back
// through the moves to the nearest one that begins a variation, then along its chain of
// alternatives to the move it stands beside.
void Game::LeaveVariation() {
    MoveNode* node = current_->ArrivalNode();
    while (node != nullptr && !node->IsVariation())
        node = node->positionBefore->ArrivalNode();
    if (node == nullptr) return;
    while (node->previousAlternative != nullptr)
        node = node->previousAlternative;
    SetCurrent(node->positionAfter);
}

Position* Game::CorrespondencePosition() {
    if (lastMove == 0) return &start_;
    Colour wanted = OtherSide(static_cast<Colour>(trait));
    for (MoveNode* node = start_.FirstContinuation(); node;
         node = node->positionAfter->FirstContinuation()) {
        PieceCode mover = node->positionBefore->GetSquare(node->from);
        if (node->moveNumber == lastMove && ColourOf(mover) == wanted) return node->positionAfter;
    }
    return nullptr;
}

void Game::GoToLastMove() {
    if (Position* position = CorrespondencePosition()) {
        SetCurrent(position);
    } else {
        GoToStart();
    }
}

// Makes the position after move current and tells every observer but except, the further
// ones first and the primary one last.
void Game::NotifyChanged(MoveNode* move, GameView* except) {
    current_ = move->positionAfter;
    for (int i = 0; i < observerCount_; ++i) {
        if (observers_[i] != except) observers_[i]->OnMovePlayed(move, except);
    }
    if (primary_ && primary_ != except) primary_->OnMovePlayed(move, except);
}

void Game::RefreshAll(GameView* observer) {
    if (observer != nullptr && observer != primary_) return;
    for (int i = 0; i < observerCount_; ++i)
        observers_[i]->Refresh();
}

int Game::AddObserver(GameView* observer, bool asPrimary) {
    if (asPrimary) {
        if (primary_ != nullptr) return 0;
        primary_ = observer;
        return 1;
    }
    if (observerCount_ == kMaxObservers) return 0;
    observers_[observerCount_++] = observer;
    return 1;
}

// Removes the observer. The count drops by one even for an observer that was never added,
// which loses the last one registered: intended, callers only remove what they added.
void Game::RemoveObserver(GameView* observer) {
    if (observer == primary_) {
        primary_ = nullptr;
        return;
    }
    int i = 0;
    while (i < observerCount_ && observers_[i] != observer)
        ++i;
    for (; i + 1 < observerCount_; ++i)
        observers_[i] = observers_[i + 1];
    if (observerCount_ > 0) --observerCount_;
}

}  // namespace velmora
