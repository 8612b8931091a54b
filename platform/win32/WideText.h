// Moves UTF-16 text across the Win32 boundary, where wide characters are wchar_t.
#pragma once

#include <string>
#include <string_view>

namespace velmora::platform::win32 {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "Win32 wide characters are UTF-16 units");

inline std::wstring ToWin32(std::u16string_view text) {
    return std::wstring(text.begin(), text.end());
}

inline std::u16string FromWin32(std::wstring_view text) {
    return std::u16string(text.begin(), text.end());
}

}  // namespace velmora::platform::win32
