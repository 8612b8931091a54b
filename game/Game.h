// Game: a game record with its move tree, and the cursor its views follow.
#pragma once

#include <cstdint>
#include <string>

#include "game/GameHeader.h"
#include "game/Position.h"
#include "game/SavedText.h"

namespace velmora {

class Game;
class GameIndex;
class MoveNode;

// What a view of a game implements to follow it. One primary observer (the game window) and up
// to ten further ones (notation view, engine host, ...).
class GameView {
  public:
    // A move was added or chosen; sender is the view that caused it (it is not told again).
    virtual void OnMovePlayed(MoveNode* node, GameView* sender) = 0;
    // The current position changed.
    virtual void OnPositionChanged(Position* position) = 0;
    virtual void Refresh() = 0;
    // Asks which of the moves from first (first continuation and its alternatives) to follow;
    // null cancels.
    virtual MoveNode* ChooseContinuation(MoveNode* first) = 0;
    // Lets the user edit the game's headers; returns 1 when they were changed.
    virtual int EditHeaders() = 0;
    // Asks where a game without a location is saved; returns 1 with the chosen path.
    virtual int ChooseSaveTarget(std::u16string* path) = 0;
    virtual ~GameView() = default;
    // Returns 1 when the view may close.
    virtual int QueryClose() = 0;
};

// Navigation over a game's tree and the observers that follow the current position.
class GameCursor {
  public:
    static constexpr int kMaxObservers = 10;

    virtual ~GameCursor() = default;
    virtual void GoToStart() = 0;
    virtual void GoToEnd() = 0;
    virtual void GoBack() = 0;
    virtual void GoForward() = 0;
    virtual void LeaveVariation() = 0;
    virtual void SetCurrent(Position* position) = 0;
    virtual void GoToLastMove() = 0;
    virtual Position* Current() = 0;
    virtual void NotifyChanged(MoveNode* move, GameView* except) = 0;
    virtual void RefreshAll(GameView* observer) = 0;
    virtual int AddObserver(GameView* observer, bool asPrimary) = 0;
    virtual void RemoveObserver(GameView* observer) = 0;
    virtual Game* GetGame() = 0;
};

class Game : public GameSummary, public GameCursor {
  public:
    // A new game: default tags, the initial position, no moves. owner is the index of the file
    // the game belongs to, or null.
    explicit Game(GameIndex* owner = nullptr);
    ~Game() override;

    // The header and tag setters also mark the game modified.
    void SetWhite(const char16_t* text) override;
    void SetBlack(const char16_t* text) override;
    void SetDate(const char16_t* text) override;
    void SetRound(const char16_t* text) override;
    void SetSite(const char16_t* text) override;
    void SetEvent(const char16_t* text) override;
    void SetResultText(const char16_t* text) override;
    void SetResultCode(int code) override;
    ExtraTag* SetTag(const char16_t* name, const char16_t* value) override;
    std::unique_ptr<ExtraTag> RemoveTag(ExtraTag* tag) override;

    // GameCursor. Each operation that moves the current position notifies the observers.
    void GoToStart() override;
    void GoToEnd() override;
    void GoBack() override;
    void GoForward() override;
    void LeaveVariation() override;
    void SetCurrent(Position* position) override;
    void GoToLastMove() override;
    Position* Current() override { return current_; }
    void NotifyChanged(MoveNode* move, GameView* except) override;
    void RefreshAll(GameView* observer) override;
    int AddObserver(GameView* observer, bool asPrimary) override;
    void RemoveObserver(GameView* observer) override;
    Game* GetGame() override { return this; }

    // The position the correspondence tags point at (after the LastMove move of the side that
    // is not Trait), or null when the main line has no such move.
    Position* CorrespondencePosition();

    Position& StartPosition() { return start_; }
    const Position& StartPosition() const { return start_; }
    // Nonzero when the game starts from a set-up position.
    std::uint32_t SetUpFlag() const { return start_.setUp; }
    GameIndex* Owner() const { return owner_; }
    void SetOwner(GameIndex* owner) { owner_ = owner; }
    GameView* PrimaryObserver() const { return primary_; }

    int modifiedByNew = 1;
    int hasLocation = 0;
    int loaded = 0;
    int modified = 0;
    // Below 2 the game is the whole content of its file; 2 or more it lies among other games.
    std::int32_t saveMode = 0;
    // The index of the file Save chose for a game that had no location; the owner points at it.
    std::unique_ptr<GameIndex> savedIndex;
    // The game's bytes in its file as last loaded or saved; a save in place first checks
    // that they are still there.
    TextFingerprint savedText;

  private:
    void NotifyPositionChanged();

    GameView* primary_ = nullptr;
    GameView* observers_[kMaxObservers] = {};
    int observerCount_ = 0;
    Position start_;
    Position* current_;
    GameIndex* owner_;
};

}  // namespace velmora
