// The program's path and folder on Windows, from the path of the running executable.
#include "platform/Paths.h"

#include <windows.h>

#include <string>

#include "platform/win32/WideText.h"

namespace velmora::platform {

// Grows the buffer until GetModuleFileNameW stops truncating, then cuts after the last '\'.
std::u16string ProgramFolder() {
    std::wstring path(MAX_PATH + 1, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) return {};
        if (length < path.size()) {
            path.resize(length);
            break;
        }
        if (path.size() >= 32768) return {};
        path.resize(path.size() * 2);
    }
    const std::size_t slash = path.rfind(L'\\');
    if (slash == std::wstring::npos) return {};
    return win32::FromWin32(std::wstring_view(path).substr(0, slash + 1));
}

// Asks for at most 261 characters: a longer path comes back cut off and counts as unknown.
std::u16string ProgramPath() {
    wchar_t path[261];
    const DWORD length = GetModuleFileNameW(nullptr, path, 261);
    if (length == 0 || length >= 261) return {};
    return win32::FromWin32(std::wstring_view(path, length));
}

char16_t PathSeparator() {
    return u'\\';
}

}  // namespace velmora::platform
