// The ANSI code page on POSIX systems: Windows-1252, the code page of Western Windows systems.
#include "platform/CodePage.h"

#include <algorithm>

namespace velmora::platform {
namespace {

// Bytes 0x80..0x9F of Windows-1252. The five bytes the code page leaves undefined map to the C1
// control of the same value, as MultiByteToWideChar does, so every byte survives a round trip.
constexpr char16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80..87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88..8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90..97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98..9F
};

}  // namespace

std::u16string AnsiToWide(std::string_view bytes) {
    std::u16string out;
    out.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        out.push_back(byte >= 0x80 && byte <= 0x9F ? kHighControls[byte - 0x80] : byte);
    }
    return out;
}

std::size_t AnsiToWide(std::string_view bytes, char16_t* out, std::size_t capacity) {
    std::size_t count = std::min(bytes.size(), capacity);
    for (std::size_t i = 0; i < count; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        out[i] = byte >= 0x80 && byte <= 0x9F ? kHighControls[byte - 0x80] : byte;
    }
    return count;
}

std::size_t MaxAnsiCharBytes() {
    return 1;
}

// Maps each UTF-16 unit on its own, so a surrogate pair becomes "??" as it does on Windows.
std::string WideToAnsi(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char16_t unit : text) {
        char byte = '?';
        if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) {
            byte = static_cast<char>(unit);
        } else {
            for (int i = 0; i < 32; ++i) {
                if (kHighControls[i] == unit) {
                    byte = static_cast<char>(0x80 + i);
                    break;
                }
            }
        }
        out.push_back(byte);
    }
    return out;
}

}  // namespace velmora::platform
