// The ANSI code page on Windows: the system's CP_ACP through the Win32 conversion calls.
#include "platform/CodePage.h"

#include <algorithm>

#include <windows.h>

#include <climits>

namespace velmora::platform {

std::u16string AnsiToWide(std::string_view bytes) {
    if (bytes.empty() || bytes.size() > INT_MAX) return {};
    const int inLength = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(CP_ACP, 0, bytes.data(), inLength, nullptr, 0);
    if (length <= 0) return {};
    std::wstring out(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), inLength, out.data(), length);
    return std::u16string(out.begin(), out.end());
}

std::size_t AnsiToWide(std::string_view bytes, char16_t* out, std::size_t capacity) {
    if (bytes.empty() || capacity == 0 || bytes.size() > INT_MAX) return 0;
    const int inLength = static_cast<int>(bytes.size());
    const int room = static_cast<int>(std::min<std::size_t>(capacity, INT_MAX));
    int length = MultiByteToWideChar(CP_ACP, 0, bytes.data(), inLength,
                                     reinterpret_cast<wchar_t*>(out), room);
    if (length > 0) return static_cast<std::size_t>(length);
    // Too small a buffer: convert in full, then keep what fits.
    std::u16string whole = AnsiToWide(bytes);
    std::size_t count = std::min(whole.size(), capacity);
    std::copy_n(whole.begin(), count, out);
    return count;
}

// Asks the system once; a code page it cannot describe is taken at the widest, UTF-8's 4 bytes.
std::size_t MaxAnsiCharBytes() {
    static const std::size_t bytes = [] {
        CPINFO info{};
        return GetCPInfo(CP_ACP, &info) && info.MaxCharSize > 0
                   ? static_cast<std::size_t>(info.MaxCharSize)
                   : std::size_t{4};
    }();
    return bytes;
}

// Asks for no best-fit mapping, so a character without an exact byte becomes '?' (not a
// look-alike such as 'A' for U+0100) and the result matches the Windows-1252 table used elsewhere.
// A system whose ANSI code page is UTF-8 refuses those options, and needs none.
std::string WideToAnsi(std::u16string_view text) {
    if (text.empty() || text.size() > INT_MAX) return {};
    const std::wstring in(text.begin(), text.end());
    const int inLength = static_cast<int>(in.size());
    const bool utf8 = GetACP() == CP_UTF8;
    const DWORD flags = utf8 ? 0 : WC_NO_BEST_FIT_CHARS;
    const char* defaultChar = utf8 ? nullptr : "?";
    const int length =
        WideCharToMultiByte(CP_ACP, flags, in.data(), inLength, nullptr, 0, defaultChar, nullptr);
    if (length <= 0) return {};
    std::string out(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_ACP, flags, in.data(), inLength, out.data(), length, defaultChar,
                        nullptr);
    return out;
}

}  // namespace velmora::platform
