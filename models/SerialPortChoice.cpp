// Reading a port number that a person typed, and the device name it is opened by.
#include "models/SerialPortChoice.h"

namespace velmora {
namespace {

constexpr int kHighestPort = 255;

bool IsBlank(char16_t c) {
    return c == u' ' || c == u'\t';
}
char16_t Upper(char16_t c) {
    return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - u'a' + u'A') : c;
}

}  // namespace

// Accepts an optional "COM" (any letter case), the digits, an optional colon, and then nothing
// but blanks or a label in parentheses such as the driver's name. Anything else ("COM1:5", a
// number typed after a listed name) names no port rather than the wrong one.
int PortNumberFromText(std::u16string_view text) {
    std::size_t at = 0;
    while (at < text.size() && IsBlank(text[at]))
        ++at;
    if (text.size() - at >= 3 && Upper(text[at]) == u'C' && Upper(text[at + 1]) == u'O' &&
        Upper(text[at + 2]) == u'M') {
        at += 3;
    }
    int number = 0;
    std::size_t digits = 0;
    for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9'; ++at, ++digits) {
        number = number * 10 + (text[at] - u'0');
        if (number > kHighestPort) return -1;
    }
    if (digits == 0 || number == 0) return -1;
    if (at < text.size() && text[at] == u':') ++at;
    while (at < text.size() && IsBlank(text[at]))
        ++at;
    // What the port list shows after the name: the driver in parentheses.
    if (at < text.size() && text[at] == u'(' && text.back() == u')') return number;
    return at == text.size() ? number : -1;
}

std::u16string PortOpenName(int number) {
    std::u16string name = u"COM";
    for (char c : std::to_string(number))
        name += static_cast<char16_t>(c);
    name += u':';
    return name;
}

}  // namespace velmora
