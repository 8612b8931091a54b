// OptionsForm: the rules of the three option pages (Display, Startup, Colors): what each page
// shows from the settings when it opens and what it writes back when it closes.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>

#include "models/Settings.h"

namespace velmora {

// The layouts in the order the Display page lists them, with their codes.
struct LayoutChoice {
    const char16_t* text;
    std::uint32_t code;
};
constexpr LayoutChoice kLayoutChoices[] = {{u"Std board, list & large cmt", 0},
                                           {u"Std board, list & cmt", 4},
                                           {u"Std board, no list", 2},
                                           {u"Lrg board, list & cmt", 1},
                                           {u"Lrg board, no list", 3}};
constexpr int kLayoutChoiceCount = 5;

// The piece sets by index, as the Display page names them.
constexpr const char16_t* kPieceSetNames[] = {u"Diagram", u"Staunton", u"Titan", u"Royal"};
constexpr int kPieceSetCount = 4;

// The Display page's entry for a layout code, or none when the code is not one of the five.
std::optional<int> LayoutEntryOf(std::uint32_t code);

// What the Display page's controls hold when it closes; an empty list selection is none.
struct DisplayPageState {
    std::optional<std::uint32_t> layoutCode;  // the item data of the chosen layout
    bool indicateComment = false;
    bool displayArrow = false;
    std::optional<int> pieceSet;
};
// Writes the Display page back: a list without a selection leaves its setting as it was.
void StoreDisplayPage(const DisplayPageState& state, Settings& settings);

// The Startup page's control ids, which the template may or may not hold.
enum StartupControl : int {
    kStartupDisplayList = 1004,  // "Display databases list"
    kStartupOpenLast = 1005,
    kStartupNewGameAlt = 1006,
    kStartupCreateNewGame = 1008,  // "Create new game"
    kStartupCheckAssoc = 1013,     // "Check .PGN Association"
    kStartupExtra = 1015,
};

// Which Startup controls are checked when the page opens.
struct StartupChecks {
    bool displayList = false;
    bool openLast = false;
    bool newGameAlt = false;
    bool createNewGame = false;
    bool checkAssoc = false;
};
StartupChecks StartupChecksFor(const Settings& settings);

// Whether 1006, 1008 and 1015 are enabled: exactly when 1005 is checked.
inline bool StartupDependentsEnabled(bool openLastChecked) {
    return openLastChecked;
}

// Writes the Startup page back from isChecked(id). A control the template lacks reads as not
// checked, so the template decides what is stored.
void StoreStartupPage(const std::function<bool(int)>& isChecked, Settings& settings);

// A colour 0x00BBGGRR from the numbers of its three boxes; each keeps its low 8 bits only.
std::uint32_t ColourFromBoxes(std::uint32_t red, std::uint32_t green, std::uint32_t blue);
// The red, green and blue numbers a colour's boxes show.
std::array<std::uint32_t, 3> BoxesOfColour(std::uint32_t colour);

// The three colours of the Colors page: white squares, black squares, selection.
struct PageColours {
    std::uint32_t white = 0;
    std::uint32_t black = 0;
    std::uint32_t select = 0;

    static PageColours From(const Settings& settings) {
        return {settings.whiteColor, settings.blackColor, settings.selectColor};
    }
    void StoreInto(Settings& settings) const {
        settings.whiteColor = white;
        settings.blackColor = black;
        settings.selectColor = select;
    }
};

// What closing the sheet changed for an open game window.
enum class OptionsEffect {
    kNone,
    kRelayout,       // the layout changed: lay the window out again and re-create its children
    kNewPieceImages  // only the piece set changed: rebuild the board's piece images
};
OptionsEffect EffectOfOptions(std::uint32_t layoutBefore, std::uint32_t pieceSetBefore,
                              const Settings& after);

}  // namespace velmora
