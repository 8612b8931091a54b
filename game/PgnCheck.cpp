// Checking a game: a visitor that replays every line of the game on position values.
#include "game/PgnCheck.h"

#include <vector>

#include "core/MoveRules.h"
#include "core/San.h"
#include "game/PgnTags.h"

namespace velmora {

namespace {

// Each open line (the game's, then each variation inside it) keeps the position reached and
// the one before its last move, which the first move of a variation inside it is played from.
struct OpenLine {
    PositionValue current;
    PositionValue beforeLast;
    bool hasMove = false;  // a move led to current
};

class GameChecker final : public PgnVisitor {
  public:
    GameChecker() { lines_.reserve(16); }

    PgnError OnTagLine(std::string_view line) override {
        return rules_.Apply(ClassifyTagLine(line), line, &start_);
    }
    bool SawWhiteTag() const override { return rules_.SawWhite(); }
    PgnError OnMoveSectionStart() override {
        lines_.assign(1, OpenLine{start_, start_, false});
        return rules_.AtMoveSection();
    }

    MoveVerdict OnMove(const char16_t* san, bool firstOfVariation) override {
        OpenLine& line = lines_.back();
        if (!firstOfVariation) {
            SanResolution found = ReadSanMove(line.current, san);
            if (!found.Found()) return {kPgnIllegalMove, line.current.sideToMove};
            line.beforeLast = line.current;
            PlayOnValue(line.current, found.move);
            line.hasMove = true;
            return {};
        }
        if (!line.hasMove) return {kPgnBadVariation};
        SanResolution found = ReadSanMove(line.beforeLast, san);
        if (!found.Found()) return {kPgnIllegalVariationMove};
        line.current = line.beforeLast;
        PlayOnValue(line.current, found.move);
        return {};
    }

    PgnError OnVariationStart() override {
        lines_.push_back(lines_.back());
        return kPgnOk;
    }
    void OnVariationEnd() override { lines_.pop_back(); }

  private:
    SetUpRules rules_;
    PositionValue start_;
    std::vector<OpenLine> lines_;
};

}  // namespace

PgnOutcome CheckGame(PgnLineReader& reader, std::int64_t offset) {
    GameChecker checker;
    return ReadGame(reader, offset, checker);
}

}  // namespace velmora
