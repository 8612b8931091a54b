// SearchForm: what the game search dialog reads from its controls and shows while it runs:
// the criteria, the texts of its messages, and the progress figures.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/PositionValue.h"
#include "game/GameSearch.h"

namespace velmora {

// The result list of the dialog, in order; the first entry leaves the result open.
constexpr const char16_t* kSearchResultChoices[] = {u"Don't care", u"1-0", u"\u00BD-\u00BD",
                                                    u"0-1"};
constexpr int kSearchResultChoiceCount = 4;

constexpr const char16_t* kEcoWarningText =
    u"Velmora does not know ECO and will therefore only search for the corresponding PGN tag "
    u"(and not for the corresponding moves";
constexpr const char16_t* kEcoWarningCaption = u"ECO Warning";
constexpr const char16_t* kNoGameFoundText = u"No game found";
constexpr const char16_t* kNoGameFoundCaption = u"Search game";

// Pieces wanted on the board for a material search, per side, by type 1 (pawn) to 5 (queen);
// index 0 is unused.
struct MaterialWanted {
    SearchPosition::WantedCounts white{0, 8, 2, 2, 2, 1};
    SearchPosition::WantedCounts black{0, 8, 2, 2, 2, 1};

    // The most of one type a side can have: 8 pawns, or 10 of a piece (promotions).
    static int MostOf(int type) { return type == 1 ? 8 : type == 5 ? 9 : 10; }
    // Stores count for the side and type, held within 0 .. MostOf(type).
    void Set(bool whiteSide, int type, int count);
    // As the command-line tool writes it: "P8R2N2B2Q1/P8R2N2B2Q1".
    std::u16string Text() const;
};

// The controls of the dialog as texts and states.
struct SearchFormFields {
    std::u16string white;
    std::u16string black;
    bool ignoreColors = false;
    // Index in kSearchResultChoices; 0 (or anything out of range) is "Don't care".
    int resultChoice = 0;
    std::u16string eco;
    bool positionOn = false;
    PositionValue position;
    bool materialOn = false;
    MaterialWanted material;
};

// Turns the controls into the criteria of the search: texts cut to the lengths the search
// looks at, the result code as the list index less one, the position or material when its box
// is checked.
SearchCriteria CriteriaFromForm(const SearchFormFields& fields);

// "%d files to parse".
std::u16string FilesToParseText(int files);

// The name the dialog shows for the file being searched: the text after the last backslash
// (or slash).
std::u16string FileNameShown(const std::u16string& path);

}  // namespace velmora
