// EngineGame: what an engine library knows of the game it plays or analyses: the position and
// the moves since, whose turn it is, the time control, and the texts it shows the host.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/PositionValue.h"
#include "engine/search/TimeControl.h"
#include "plugins/common/EngineMenu.h"

namespace velmora::plugin {

// The level an engine plays until the user chooses one: "5 seconds per move".
constexpr int kDefaultLevelCommand = kFirstLevelCommand + 1;

// The clock as the host reports it: remaining milliseconds and moves to the next control.
struct ClockTimes {
    std::int32_t whiteMs = 0;
    std::int32_t blackMs = 0;
    std::int32_t movesToGo = 0;
};

// The end of a game: the result tag ("1-0", "0-1", "1/2-1/2") and the reason.
struct GameOverTexts {
    const char16_t* caption = nullptr;
    const char16_t* text = nullptr;
};

class EngineGame {
  public:
    EngineGame();

    // Begins a game or an analysis on a position text, or on the initial position when it is
    // null. Returns false when the text cannot be read (the initial position is taken).
    bool Start(bool enginePlaysBlack, bool analyse, const char16_t* position);
    // Replaces the position; the moves since the last one are forgotten. Returns false when
    // the text cannot be read (the position stays).
    bool SetPosition(const char16_t* position);
    void SetAnalysing(bool analyse) { analysing_ = analyse; }
    // Plays a move given as coordinates ("e2e4", "e7e8q"; a pawn reaching the last rank
    // without a letter becomes a queen). Returns false, changing nothing, when it is not a
    // legal move of the side to move.
    bool PlayMove(std::string_view coordinates);
    bool PlayMove(std::u16string_view coordinates);

    bool Analysing() const { return analysing_; }
    bool EnginePlaysBlack() const { return enginePlaysBlack_; }
    const PositionValue& Current() const { return current_; }
    // Whether the engine is to move in a game; never while analysing.
    bool EngineToMove() const;

    // The position the moves start from as FEN, empty for the initial position.
    const std::string& BaseFen() const { return baseFen_; }
    // The moves played since, as coordinates.
    const std::vector<std::string>& Moves() const { return moves_; }

    void SetLevel(const TimeLevel& level) { level_ = &level; }
    const TimeLevel& Level() const { return *level_; }
    // Works out what the next search may spend: no limit while analysing, the level's time
    // per move, or the clock (with the level's increment). A margin is always kept back.
    engine::SearchLimits Limits(const ClockTimes& clock) const;

    // Writes a score of the side to move in the current position from White's view: "+0.35",
    // "-1.20", "0.00", or "#3" (White mates in 3) and "#-2" (Black does).
    std::string ScoreText(bool mate, int score) const;
    // Writes a line of coordinate moves from the current position in SAN with move numbers
    // ("12. Nf3 Nc6 13. d4", or "12... Nc6 13. d4" with Black to move), stopping before the
    // first move that is not legal and before passing maxLength characters.
    std::string SanLine(const std::vector<std::string>& line, std::size_t maxLength) const;
    // Tells whether the side to move has no legal move, and then the result and the reason.
    bool GameOver(GameOverTexts* over) const;

  private:
    bool enginePlaysBlack_ = true;
    bool analysing_ = false;
    PositionValue current_;
    std::string baseFen_;
    std::vector<std::string> moves_;
    const TimeLevel* level_;
};

}  // namespace velmora::plugin
