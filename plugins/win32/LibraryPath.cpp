// The path of a loaded library on Windows: the module that holds the address, and its file.
#include <windows.h>

#include "plugins/testengine/LibraryPath.h"

namespace velmora::plugin {

std::u16string LibraryPathOf(const void* address) {
    HMODULE module = nullptr;
    const DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExW(flags, static_cast<LPCWSTR>(address), &module)) return {};
    wchar_t path[MAX_PATH * 4];
    const DWORD length = GetModuleFileNameW(module, path, MAX_PATH * 4);
    if (length == 0 || length >= MAX_PATH * 4) return {};
    return std::u16string(reinterpret_cast<const char16_t*>(path), length);
}

}  // namespace velmora::plugin
