// ANSI (Windows-1252) and UTF-8 conversions.
#include "platform/CodePage.h"

#include <gtest/gtest.h>

#include <string>

namespace velmora::platform {
namespace {

struct AnsiPair {
    unsigned char byte;
    char16_t unit;
};

// Both directions of the bytes whose mapping differs from Latin-1 or sits at a range boundary.
constexpr AnsiPair kAnsiPairs[] = {
    {0x00, 0x0000}, {0x41, u'A'},   {0x7F, 0x007F}, {0x80, 0x20AC}, {0x81, 0x0081},
    {0x82, 0x201A}, {0x8C, 0x0152}, {0x8D, 0x008D}, {0x8E, 0x017D}, {0x8F, 0x008F},
    {0x90, 0x0090}, {0x96, 0x2013}, {0x99, 0x2122}, {0x9C, 0x0153}, {0x9D, 0x009D},
    {0x9F, 0x0178}, {0xA0, 0x00A0}, {0xBD, 0x00BD}, {0xE9, 0x00E9}, {0xFF, 0x00FF},
};

TEST(CodePage, AnsiBytesAndUnitsMapBothWays) {
    for (const AnsiPair& pair : kAnsiPairs) {
        SCOPED_TRACE(testing::Message() << "byte 0x" << std::hex << int{pair.byte});
        const std::string byte(1, static_cast<char>(pair.byte));
        EXPECT_EQ(AnsiToWide(byte), std::u16string(1, pair.unit));
        EXPECT_EQ(WideToAnsi(std::u16string(1, pair.unit)), byte);
    }
}

TEST(CodePage, EveryAnsiByteSurvivesARoundTrip) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all.push_back(static_cast<char>(byte));
    const std::u16string wide = AnsiToWide(all);
    ASSERT_EQ(wide.size(), 256u);
    EXPECT_EQ(WideToAnsi(wide), all);
}

TEST(CodePage, UnitsWithoutAnAnsiByteBecomeQuestionMarks) {
    const struct {
        std::u16string text;
        std::string ansi;
    } cases[] = {
        {u"", ""},
        {u"\u0100", "?"},                    // no look-alike 'A'
        {u"\u2212", "?"},                    // minus sign, not '-'
        {u"\uFF21", "?"},                    // full-width A
        {u"Dvo\u0159\u00E1k", "Dvo?\xE1k"},  // r with caron is not in the code page
        {u"\U0001F600", "??"},               // one '?' per UTF-16 unit
        {u"a\u20ACb\u00BD",
         "a\x80"
         "b\xBD"},  // mapped ones in between stay
    };
    for (const auto& c : cases) {
        EXPECT_EQ(WideToAnsi(c.text), c.ansi);
    }
}

TEST(Utf8, DecodesWellFormedInput) {
    const struct {
        std::string utf8;
        std::u16string wide;
    } cases[] = {
        {"", u""},
        {"Nf3", u"Nf3"},
        {"\xC3\xA9", u"\u00E9"},
        {"\xE2\x82\xAC", u"\u20AC"},
        {"\xEF\xBF\xBD", u"\uFFFD"},
        {"\xF0\x9F\x98\x80", u"\U0001F600"},
        {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
        {std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Utf8ToWide(c.utf8), c.wide) << c.utf8;
        EXPECT_EQ(WideToUtf8(c.wide), c.utf8);
    }
}

TEST(Utf8, EachIllFormedPartBecomesOneReplacement) {
    const struct {
        std::string utf8;
        std::u16string wide;
    } cases[] = {
        {"\x80", u"\uFFFD"},  // stray continuation byte
        {"a\xBF"
         "b",
         u"a\uFFFDb"},
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong '/'
        {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},            // overlong three-byte form
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // encoded surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // past U+10FFFF
        {"\xF5\x80", u"\uFFFD\uFFFD"},
        {"\xFF", u"\uFFFD"},
        {"\xE2\x82", u"\uFFFD"},  // cut off at the end
        {"\xE2\x82"
         "A",
         u"\uFFFDA"},  // cut off before a new character
        {"\xF0\x9F\x98"
         "\xC3\xA9",
         u"\uFFFD\u00E9"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Utf8ToWide(c.utf8), c.wide);
    }
}

TEST(Utf8, UnpairedSurrogatesBecomeReplacements) {
    const struct {
        std::u16string wide;
        std::string utf8;
    } cases[] = {
        {u"\xD83D", "\xEF\xBF\xBD"},
        {u"\xDE00", "\xEF\xBF\xBD"},
        {u"\xD83D"
         "A",
         "\xEF\xBF\xBD"
         "A"},
        {u"\xDE00\xD83D", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {u"\xD83D\xD83D\xDE00", "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(WideToUtf8(c.wide), c.utf8);
    }
}

TEST(Utf8, EveryCodePointSurvivesARoundTrip) {
    std::u16string all;
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF) continue;
        if (c < 0x10000) {
            all.push_back(static_cast<char16_t>(c));
        } else {
            all.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
            all.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
        }
    }
    const std::string utf8 = WideToUtf8(all);
    EXPECT_EQ(utf8.size(), 0x80u + 0x780u * 2 + (0x10000u - 0x800u - 0x800u) * 3 + 0x100000u * 4);
    EXPECT_TRUE(Utf8ToWide(utf8) == all);
}

}  // namespace
}  // namespace velmora::platform
