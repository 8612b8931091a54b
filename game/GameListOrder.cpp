// GameListOrder: the word-sort text comparison, the column comparisons and the cell texts.
#include "game/GameListOrder.h"

#include <algorithm>
#include <climits>
#include <cstdint>

namespace velmora {

namespace {

// The text comparison works in three levels, as the Windows word sort does: first the
// characters ignoring accents and case (blanks and punctuation before digits, digits before
// letters, letters by their base letter), then the accents, then the case (lower before
// upper). Hyphens and apostrophes weigh nothing until everything else is equal, so "coop" and
// "co-op" stay together.
//
// What it matches: ASCII, Latin-1 and the letters of code page 1252 (Š, Ž, Œ, Ÿ, ƒ and their
// lower-case forms), which is what PGN header texts read through the ANSI code page hold.
// What it does not: the exact order of punctuation marks among themselves (here by code
// point, Windows has its own table), the order of the accents of one letter (here acute,
// grave, circumflex, tilde, diaeresis, ring, cedilla, stroke, caron), the French rule that
// compares accents from the end of the word, control characters (compared here as
// punctuation, ignored by Windows), and every letter outside Latin-1 and code page 1252, which
// sorts after the Latin letters by code point.

enum Group : std::uint32_t { kSymbols = 1, kDigits = 2, kLetters = 3, kOthers = 4 };

enum Accent : std::uint8_t {
    kPlain = 0,
    kAcute,
    kGrave,
    kCircumflex,
    kTilde,
    kDiaeresis,
    kRing,
    kCedilla,
    kStroke,
    kCaron,
    kOtherMark,  // ligatures, eth, superscript digits, ordinal indicators
};

struct Element {
    std::uint32_t primary = 0;
    std::uint8_t accent = kPlain;
    std::uint8_t upper = 0;
};

constexpr std::uint32_t Weight(Group group, std::uint32_t value) {
    return (static_cast<std::uint32_t>(group) << 16) | value;
}

// The base letter after z: thorn.
constexpr char kThorn = '{';

Element Letter(char base, Accent accent, bool upper) {
    return {Weight(kLetters, static_cast<std::uint32_t>(base - 'a')), accent,
            static_cast<std::uint8_t>(upper ? 1 : 0)};
}

// Latin-1 letters U+00C0..U+00FF: base letter (0 for the two signs among them), a second base
// letter for the ligatures, the accent.
struct LatinEntry {
    char base;
    char second;
    Accent accent;
};
constexpr LatinEntry kLatin1[32] = {
    {'a', 0, kGrave},      {'a', 0, kAcute}, {'a', 0, kCircumflex},  {'a', 0, kTilde},
    {'a', 0, kDiaeresis},  {'a', 0, kRing},  {'a', 'e', kOtherMark}, {'c', 0, kCedilla},
    {'e', 0, kGrave},      {'e', 0, kAcute}, {'e', 0, kCircumflex},  {'e', 0, kDiaeresis},
    {'i', 0, kGrave},      {'i', 0, kAcute}, {'i', 0, kCircumflex},  {'i', 0, kDiaeresis},
    {'d', 0, kOtherMark},  {'n', 0, kTilde}, {'o', 0, kGrave},       {'o', 0, kAcute},
    {'o', 0, kCircumflex}, {'o', 0, kTilde}, {'o', 0, kDiaeresis},   {0, 0, kPlain},
    {'o', 0, kStroke},     {'u', 0, kGrave}, {'u', 0, kAcute},       {'u', 0, kCircumflex},
    {'u', 0, kDiaeresis},  {'y', 0, kAcute}, {kThorn, 0, kPlain},    {'s', 's', kOtherMark},
};

// Returns the elements of one character (0 for a hyphen or apostrophe, 2 for a ligature).
int ElementsOf(char16_t c, Element out[2]) {
    if (c == u'-' || c == u'\'' || c == 0xAD) return 0;
    if (c >= u'0' && c <= u'9') {
        out[0] = {Weight(kDigits, c - u'0'), kPlain, 0};
        return 1;
    }
    if (c >= u'a' && c <= u'z') {
        out[0] = Letter(static_cast<char>(c), kPlain, false);
        return 1;
    }
    if (c >= u'A' && c <= u'Z') {
        out[0] = Letter(static_cast<char>(c - u'A' + u'a'), kPlain, true);
        return 1;
    }
    if (c >= 0xC0 && c <= 0xFF) {
        // Lower-case letters are 32 above their capitals; ß (U+00DF) and ÿ (U+00FF) are lower
        // case in the upper half's places.
        const LatinEntry& entry = kLatin1[c & 31];
        const bool upper = c < 0xE0 && c != 0xDF;
        if (c == 0xFF) {
            out[0] = Letter('y', kDiaeresis, false);
            return 1;
        }
        if (entry.base == 0) {
            out[0] = {Weight(kSymbols, c), kPlain, 0};
            return 1;
        }
        out[0] = Letter(entry.base, entry.accent, upper);
        if (entry.second == 0) return 1;
        out[1] = Letter(entry.second, entry.accent, upper);
        return 2;
    }
    switch (c) {
        case 0xAA:  // ª
            out[0] = Letter('a', kOtherMark, false);
            return 1;
        case 0xBA:  // º
            out[0] = Letter('o', kOtherMark, false);
            return 1;
        case 0xB9:  // ¹
            out[0] = {Weight(kDigits, 1), kOtherMark, 0};
            return 1;
        case 0xB2:  // ²
        case 0xB3:  // ³
            out[0] = {Weight(kDigits, c - 0xB0u), kOtherMark, 0};
            return 1;
        case 0x152:  // Œ
        case 0x153:  // œ
            out[0] = Letter('o', kOtherMark, c == 0x152);
            out[1] = Letter('e', kOtherMark, c == 0x152);
            return 2;
        case 0x160:  // Š
        case 0x161:  // š
            out[0] = Letter('s', kCaron, c == 0x160);
            return 1;
        case 0x17D:  // Ž
        case 0x17E:  // ž
            out[0] = Letter('z', kCaron, c == 0x17D);
            return 1;
        case 0x178:  // Ÿ
            out[0] = Letter('y', kDiaeresis, true);
            return 1;
        case 0x192:  // ƒ
            out[0] = Letter('f', kOtherMark, false);
            return 1;
        default:
            break;
    }
    // The rest of ASCII and Latin-1, the spacing accents and general punctuation, currency
    // signs, letter-like symbols (™), arrows and mathematical signs are punctuation.
    const bool symbol = c < 0x100 || c == 0x2C6 || c == 0x2DC || (c >= 0x2000 && c < 0x2C00);
    out[0] = {Weight(symbol ? kSymbols : kOthers, c), kPlain, 0};
    return 1;
}

// Reads a text as a sequence of elements, counting the characters that weigh nothing.
class ElementReader {
  public:
    explicit ElementReader(std::u16string_view text) : text_(text) {}

    bool Next(Element* element) {
        if (pending_ < count_) {
            *element = buffer_[pending_++];
            return true;
        }
        while (position_ < text_.size()) {
            count_ = ElementsOf(text_[position_++], buffer_);
            if (count_ == 0) {
                ++ignored_;
                continue;
            }
            *element = buffer_[0];
            pending_ = 1;
            return true;
        }
        return false;
    }
    int Ignored() const { return ignored_; }

  private:
    std::u16string_view text_;
    std::size_t position_ = 0;
    Element buffer_[2];
    int count_ = 0;
    int pending_ = 0;
    int ignored_ = 0;
};

int Sign(long long value) {
    return value < 0 ? -1 : (value > 0 ? 1 : 0);
}

}  // namespace

int CompareTextLikeLstrcmp(std::u16string_view a, std::u16string_view b) {
    ElementReader left(a);
    ElementReader right(b);
    int accentOrder = 0;
    int caseOrder = 0;
    for (;;) {
        Element x;
        Element y;
        const bool hasX = left.Next(&x);
        const bool hasY = right.Next(&y);
        if (!hasX || !hasY) {
            if (hasX != hasY) return hasX ? 1 : -1;  // a text before its own continuation
            break;
        }
        if (x.primary != y.primary) return x.primary < y.primary ? -1 : 1;
        if (accentOrder == 0) accentOrder = Sign(int{x.accent} - int{y.accent});
        if (caseOrder == 0) caseOrder = Sign(int{x.upper} - int{y.upper});
    }
    if (accentOrder != 0) return accentOrder;
    if (caseOrder != 0) return caseOrder;
    if (left.Ignored() != right.Ignored()) return left.Ignored() < right.Ignored() ? -1 : 1;
    return Sign(a.compare(b));
}

// Reads the text like _wtoi: blanks, a sign, digits up to the first other character; a
// number out of range is held at the nearest end of the int range.
int RoundNumber(std::u16string_view text) {
    if (text.empty() || text[0] == u'?') return 0;
    std::size_t k = 0;
    while (k < text.size() && (text[k] == u' ' || (text[k] >= u'\t' && text[k] <= u'\r')))
        ++k;
    bool negative = false;
    if (k < text.size() && (text[k] == u'+' || text[k] == u'-')) negative = text[k++] == u'-';
    long long value = 0;
    for (; k < text.size() && text[k] >= u'0' && text[k] <= u'9'; ++k) {
        value = value * 10 + (text[k] - u'0');
        if (value > static_cast<long long>(INT_MAX) + 1) break;
    }
    if (negative) value = -value;
    return static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX));
}

namespace {

// Compares the texts of one field of two rows, each converted on its own.
int CompareField(const GameRow& a, const GameRow& b, RowField field) {
    return CompareTextLikeLstrcmp(a.Text(field).View(), b.Text(field).View());
}

}  // namespace

int CompareRows(const GameRow& a, const GameRow& b, int sortKey) {
    if (sortKey < 0) return 0;
    const int sign = (sortKey & 1) ? -1 : 1;
    switch (sortKey / 2) {
        case kColumnWhite:
            return CompareField(a, b, RowField::White) * sign;
        case kColumnBlack:
            return CompareField(a, b, RowField::Black) * sign;
        case kColumnResult: {
            // Reversed on purpose: ascending runs from "*" down to "1-0".
            const int left = a.Result() & 0xFF;
            const int right = b.Result() & 0xFF;
            return left < right ? sign : (left > right ? -sign : 0);
        }
        case kColumnEco:
            return CompareField(a, b, RowField::Eco) * sign;
        case kColumnEvent:
            return CompareField(a, b, RowField::Event) * sign;
        case kColumnRound: {
            const long long left = RoundNumber(a.Text(RowField::Round).View());
            return Sign(left - RoundNumber(b.Text(RowField::Round).View())) * sign;
        }
        case kColumnDate:
        case kColumnStart:  // the Start column sorts by date as well, on purpose
            return CompareField(a, b, RowField::Date) * sign;
        default:
            return 0;
    }
}

void SortRows(std::vector<GameRow>& rows, int sortKey) {
    std::stable_sort(rows.begin(), rows.end(), [sortKey](const GameRow& a, const GameRow& b) {
        return CompareRows(a, b, sortKey) < 0;
    });
}

std::u16string CellText(const GameRow& row, int column) {
    static constexpr RowField kFields[kGameListColumnCount] = {
        RowField::White, RowField::Black, RowField::White, RowField::Eco,
        RowField::Event, RowField::Round, RowField::Date,  RowField::Start};
    if (column == kColumnResult) return row.ResultText(ResultForm::Display);
    if (column < 0 || column >= kGameListColumnCount) return {};
    return std::u16string(row.Text(kFields[column]).View());
}

int GameListSort::TapColumn(int column) {
    if (column == column_) {
        descending_ = !descending_;
    } else {
        column_ = column;
        descending_ = false;
    }
    return Key();
}

}  // namespace velmora
