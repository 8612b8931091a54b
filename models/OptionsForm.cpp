// OptionsForm: the option pages' rules for reading and writing the settings.
#include "models/OptionsForm.h"

namespace velmora {

std::optional<int> LayoutEntryOf(std::uint32_t code) {
    for (int entry = 0; entry < kLayoutChoiceCount; ++entry) {
        if (kLayoutChoices[entry].code == code) return entry;
    }
    return std::nullopt;
}

void StoreDisplayPage(const DisplayPageState& state, Settings& settings) {
    if (state.layoutCode) settings.layout = *state.layoutCode;
    settings.indicateComment = state.indicateComment ? 1 : 0;
    settings.displayArrow = state.displayArrow ? 1 : 0;
    if (state.pieceSet) settings.bitmapIndex = static_cast<std::uint32_t>(*state.pieceSet);
}

StartupChecks StartupChecksFor(const Settings& settings) {
    StartupChecks checks;
    checks.displayList = settings.openLastDatabase == 0;
    checks.openLast = settings.openLastDatabase != 0;
    checks.newGameAlt = settings.databaseOption == 0;
    checks.createNewGame = settings.databaseOption == 1;
    checks.checkAssoc = settings.checkAssoc != 0;
    return checks;
}

// The page stores what the controls say, not what they were set to: with the shipped
// template, which has no 1005 or 1006, "Open Last Database" becomes 0 and "Database Option" 1
// whatever was chosen.
void StoreStartupPage(const std::function<bool(int)>& isChecked, Settings& settings) {
    settings.openLastDatabase = isChecked(kStartupOpenLast) ? 1 : 0;
    settings.databaseOption = isChecked(kStartupNewGameAlt) ? 0 : 1;
    settings.checkAssoc = isChecked(kStartupCheckAssoc) ? 1 : 0;
}

std::uint32_t ColourFromBoxes(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return (red & 255) | (green & 255) << 8 | (blue & 255) << 16;
}

std::array<std::uint32_t, 3> BoxesOfColour(std::uint32_t colour) {
    return {colour & 255, (colour >> 8) & 255, (colour >> 16) & 255};
}

OptionsEffect EffectOfOptions(std::uint32_t layoutBefore, std::uint32_t pieceSetBefore,
                              const Settings& after) {
    if (after.layout != layoutBefore) return OptionsEffect::kRelayout;
    if (after.bitmapIndex != pieceSetBefore) return OptionsEffect::kNewPieceImages;
    return OptionsEffect::kNone;
}

}  // namespace velmora
