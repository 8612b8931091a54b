// GameRow: a row's bytes read from its index's storage and converted to UTF-16 when asked.
#include "game/GameRow.h"

#include <algorithm>

#include "platform/CodePage.h"

namespace velmora {
namespace {

// Converts one field as the game list shows it: a tag value whole, the start text cut to its
// first 30 characters after conversion, "(Position)" in place of a set-up game's start.
RowText FieldText(RowField field, bool present, std::string_view bytes, bool setUp) {
    if (field == RowField::Start) {
        if (setUp) return RowText::FromText(u"(Position)");
        return present ? RowText::FromBytes(bytes, kStartTextLength) : RowText();
    }
    return present ? RowText::FromBytes(bytes) : RowText();
}

}  // namespace

bool AnsiKeepsAscii() {
    static const bool same = [] {
        char bytes[128];
        char16_t units[128];
        for (int i = 0; i < 128; ++i)
            bytes[i] = static_cast<char>(i);
        if (platform::AnsiToWide(std::string_view(bytes, 128), units, 128) != 128) return false;
        for (int i = 0; i < 128; ++i) {
            if (units[i] != static_cast<char16_t>(i)) return false;
        }
        return true;
    }();
    return same;
}

RowText RowText::FromBytes(std::string_view bytes, std::size_t maxUnits) {
    RowText text;
    text.null_ = false;
    const std::size_t wanted = std::min(bytes.size(), maxUnits);  // a byte gives one unit at most
    if (wanted <= kUnits) {
        text.size_ = platform::AnsiToWide(bytes, text.units_, wanted);
    } else {
        text.longer_ = platform::AnsiToWide(bytes);
        if (text.longer_.size() > maxUnits) text.longer_.resize(maxUnits);
    }
    return text;
}

RowText RowText::FromText(std::u16string_view units) {
    RowText text;
    text.null_ = false;
    if (units.size() <= kUnits) {
        text.size_ = units.copy(text.units_, units.size());
    } else {
        text.longer_ = units;
    }
    return text;
}

RowText& RowText::operator=(const RowText& other) {
    null_ = other.null_;
    size_ = other.size_;
    std::copy_n(other.units_, size_, units_);
    longer_ = other.longer_;
    return *this;
}

RowText ScannedGame::Text(RowField field) const {
    return FieldText(field, Has(field), bytes[static_cast<int>(field)], setUp);
}

RowText GameRow::Text(RowField field) const {
    return FieldText(field, Has(field), Bytes(field), IsSetUp());
}

}  // namespace velmora
