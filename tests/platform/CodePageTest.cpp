// ANSI (Windows-1252) and UTF-8 conversions.
#include "platform/CodePage.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace velmora::platform {
namespace {

// Windows-1252 at 0x80..0x9F, where it differs from Latin-1. Intended: the five bytes the code
// page leaves undefined (0x81, 0x8D, 0x8F, 0x90, 0x9D) stand for the C1 control of the same
// value, as MultiByteToWideChar gives them, so every byte survives a round trip.
constexpr char16_t kWindows1252[32] = {
    u'\u20AC', 0x0081,    u'\u201A', u'\u0192', u'\u201E', u'\u2026', u'\u2020', u'\u2021',
    u'\u02C6', u'\u2030', u'\u0160', u'\u2039', u'\u0152', 0x008D,    u'\u017D', 0x008F,
    0x0090,    u'\u2018', u'\u2019', u'\u201C', u'\u201D', u'\u2022', u'\u2013', u'\u2014',
    u'\u02DC', u'\u2122', u'\u0161', u'\u203A', u'\u0153', 0x009D,    u'\u017E', u'\u0178',
};

// Each byte is its Windows-1252 character both ways (Latin-1 outside 0x80..0x9F); what has no
// byte becomes '?'.
TEST(CodePage, AnsiBytesAndUnitsMapBothWaysOrElseToQuestionMarks) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        SCOPED_TRACE(testing::Message() << "byte 0x" << std::hex << byte);
        const std::string ansi(1, static_cast<char>(byte));
        const std::u16string unit(
            1, byte >= 0x80 && byte <= 0x9F ? kWindows1252[byte - 0x80] : char16_t(byte));
        EXPECT_EQ(AnsiToWide(ansi), unit);
        EXPECT_EQ(WideToAnsi(unit), ansi);
        all += ansi;
    }
    // Into a buffer: the same units, cut at the buffer's capacity.
    for (std::size_t capacity : {std::size_t{0}, std::size_t{200}, all.size()}) {
        std::u16string buffer(all.size(), u'#');
        std::size_t count = AnsiToWide(all, buffer.data(), capacity);
        EXPECT_EQ(buffer.substr(0, count), AnsiToWide(all).substr(0, capacity)) << capacity;
        EXPECT_EQ(buffer.substr(count), std::u16string(all.size() - count, u'#')) << capacity;
    }

    const std::pair<std::u16string, std::string> unmappable[] = {
        {u"\u0080\u0100\u2212", "???"},  // no byte for U+0080; no look-alikes 'A' and '-'
        {u"\U0001F600", "??"},           // one '?' per UTF-16 unit
        {u"a\u20ACz\u0159\u00BD", "a\x80z?\xBD"},
    };
    for (const auto& [text, ansi] : unmappable)
        EXPECT_EQ(WideToAnsi(text), ansi);
}

// One sample of each length pins the encoding; every code point then round-trips at the length
// its value needs.
TEST(Utf8, WellFormedTextConvertsBothWays) {
    EXPECT_EQ(WideToUtf8(u"\u00E9\u20AC\U0001F600"), "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    std::u16string all;  // every code point: the rest of the BMP, then every surrogate pair
    for (char32_t c = 0; c < 0x10000; ++c)
        if (c < 0xD800 || c > 0xDFFF) all.push_back(static_cast<char16_t>(c));
    for (char16_t high = 0xD800; high < 0xDC00; ++high)
        for (char16_t low = 0xDC00; low < 0xE000; ++low)
            all += {high, low};
    const std::string utf8 = WideToUtf8(all);
    EXPECT_EQ(utf8.size(), 0x80u + 0x780u * 2 + (0x10000u - 0x800u - 0x800u) * 3 + 0x100000u * 4);
    EXPECT_TRUE(Utf8ToWide(utf8) == all);
}

TEST(Utf8, IllFormedPartsBecomeOneReplacementEach) {
    const std::pair<std::string, std::u16string> bytes[] = {
        {"a\x80z", u"a\uFFFDz"},                            // stray continuation byte
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong '/'
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // encoded surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // past U+10FFFF
        {"\xF5\x80\xFF", u"\uFFFD\uFFFD\uFFFD"},            // bytes that cannot start a character
        {"\xE2\x82", u"\uFFFD"},                            // cut off at the end
        {"\xF0\x9F\x98\xC3\xA9", u"\uFFFD\u00E9"},          // cut off by a new character
    };
    for (const auto& [utf8, wide] : bytes)
        EXPECT_EQ(Utf8ToWide(utf8), wide);

    const std::pair<std::u16string, std::string> unpaired[] = {
        {u"\xDE00\xD83D", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {u"\xD83D\xD83D\xDE00", "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
    };
    for (const auto& [wide, utf8] : unpaired)
        EXPECT_EQ(WideToUtf8(wide), utf8);
}

}  // namespace
}  // namespace velmora::platform
