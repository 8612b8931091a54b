// SearchForm: criteria from the search dialog's controls, and the texts it shows.
#include "models/SearchForm.h"

#include <algorithm>

namespace velmora {

void MaterialWanted::Set(bool whiteSide, int type, int count) {
    if (type < 1 || type > 5) return;
    auto& counts = whiteSide ? white : black;
    counts[type] = static_cast<std::uint8_t>(std::clamp(count, 0, MostOf(type)));
}

std::u16string MaterialWanted::Text() const {
    static constexpr char16_t kLetters[] = u" PRNBQ";
    std::u16string text;
    for (const auto* counts : {&white, &black}) {
        if (!text.empty()) text += u'/';
        for (int type = 1; type <= 5; ++type) {
            text += kLetters[type];
            for (char c : std::to_string((*counts)[type]))
                text += static_cast<char16_t>(c);
        }
    }
    return text;
}

SearchCriteria CriteriaFromForm(const SearchFormFields& fields) {
    SearchCriteria criteria;
    criteria.white = fields.white;
    criteria.black = fields.black;
    criteria.ignoreColors = fields.ignoreColors;
    criteria.eco = fields.eco;
    criteria.result = fields.resultChoice >= 1 && fields.resultChoice < kSearchResultChoiceCount
                          ? fields.resultChoice - 1
                          : -1;
    if (fields.positionOn) criteria.position = fields.position;
    if (fields.materialOn) {
        criteria.material = true;
        criteria.wantedWhite = fields.material.white;
        criteria.wantedBlack = fields.material.black;
    }
    criteria.Truncate();
    return criteria;
}

std::u16string FilesToParseText(int files) {
    std::u16string text;
    for (char c : std::to_string(files))
        text += static_cast<char16_t>(c);
    return text + u" files to parse";
}

std::u16string FileNameShown(const std::u16string& path) {
    std::size_t separator = path.find_last_of(u"\\/");
    return separator == std::u16string::npos ? path : path.substr(separator + 1);
}

}  // namespace velmora
