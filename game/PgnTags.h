// Tag lines as loading a game reads them: which tag a line holds, and the set-up rules.
#pragma once

#include <string_view>

#include "game/PgnParser.h"

namespace velmora {

class PositionValue;

// The tags loading a game looks for, by the start of their line compared ignoring case.
enum class LoadedTag {
    White,
    Black,
    Result,
    Event,
    Round,
    Site,
    Date,
    WhiteEmail,
    BlackEmail,
    LastMoveDate,
    LastMove,
    Trait,
    SetUp,  // "[SetUp "1"]" exactly, but for the letter case
    Fen,
    Other,  // any other tag line: an extra tag
};

// Tells which tag line starts with "[" (the first prefix that matches decides).
LoadedTag ClassifyTagLine(std::string_view line);

// The rules every reader that loads games as the game window does follows: where the tag
// section may end, and a FEN only after "[SetUp "1"]".
class SetUpRules {
  public:
    // Notes line, of kind tag. A FEN tag's value is read into start; returns kPgnBadHeaders for
    // a FEN without SetUp and kPgnBadPosition for a FEN that cannot be read.
    PgnError Apply(LoadedTag tag, std::string_view line, PositionValue* start);
    // Returns kPgnBadHeaders when a SetUp tag had no FEN after it.
    PgnError AtMoveSection() const { return setUpPending_ ? kPgnBadHeaders : kPgnOk; }
    bool SawWhite() const { return whiteSeen_; }

  private:
    bool whiteSeen_ = false;
    bool setUpPending_ = false;
};

}  // namespace velmora
