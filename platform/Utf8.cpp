// UTF-8 <-> UTF-16 conversion, shared by every build.
#include <cstdint>

#include "platform/CodePage.h"

namespace velmora::platform {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool IsContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

void AppendCodePoint(std::u16string& out, char32_t codePoint) {
    if (codePoint < 0x10000) {
        out.push_back(static_cast<char16_t>(codePoint));
    } else {
        codePoint -= 0x10000;
        out.push_back(static_cast<char16_t>(0xD800 + (codePoint >> 10)));
        out.push_back(static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF)));
    }
}

}  // namespace

// Decodes with the "maximal subpart" rule: a lead byte followed by fewer continuation bytes than
// it announces yields one U+FFFD for the bytes seen, and decoding resumes at the offending byte.
// Overlong forms, surrogates and values past U+10FFFF are caught by the range of the second byte.
std::u16string Utf8ToWide(std::string_view bytes) {
    std::u16string out;
    out.reserve(bytes.size());
    std::size_t i = 0;
    while (i < bytes.size()) {
        const auto lead = static_cast<unsigned char>(bytes[i]);
        if (lead < 0x80) {
            out.push_back(lead);
            ++i;
            continue;
        }
        int length = 0;
        char32_t codePoint = 0;
        unsigned char low = 0x80;  // allowed range of the second byte
        unsigned char high = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
            codePoint = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            codePoint = lead & 0x0F;
            if (lead == 0xE0) low = 0xA0;
            if (lead == 0xED) high = 0x9F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            codePoint = lead & 0x07;
            if (lead == 0xF0) low = 0x90;
            if (lead == 0xF4) high = 0x8F;
        } else {
            out.push_back(kReplacement);
            ++i;
            continue;
        }
        std::size_t next = i + 1;
        bool complete = true;
        for (int k = 1; k < length; ++k, ++next) {
            if (next >= bytes.size()) {
                complete = false;
                break;
            }
            const auto byte = static_cast<unsigned char>(bytes[next]);
            const bool inRange = k == 1 ? (byte >= low && byte <= high) : IsContinuation(byte);
            if (!inRange) {
                complete = false;
                break;
            }
            codePoint = (codePoint << 6) | (byte & 0x3F);
        }
        if (complete) {
            AppendCodePoint(out, codePoint);
        } else {
            out.push_back(kReplacement);
        }
        i = next;
    }
    return out;
}

std::string WideToUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t codePoint = text[i];
        if (codePoint >= 0xD800 && codePoint <= 0xDBFF && i + 1 < text.size() &&
            text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        } else if (codePoint >= 0xD800 && codePoint <= 0xDFFF) {
            codePoint = kReplacement;
        }
        if (codePoint < 0x80) {
            out.push_back(static_cast<char>(codePoint));
        } else if (codePoint < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
            out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
        } else if (codePoint < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
            out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (codePoint >> 18)));
            out.push_back(static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
        }
    }
    return out;
}

}  // namespace velmora::platform
