// Libraries on Windows, through LoadLibraryW; the loader adds ".dll" to a name without one.
#include <windows.h>

#include "platform/Library.h"
#include "platform/win32/WideText.h"

namespace velmora::platform {
namespace {

class Win32Library final : public Library {
  public:
    explicit Win32Library(HMODULE module) : module_(module) {}
    ~Win32Library() override { FreeLibrary(module_); }
    void* Symbol(const char* name) override {
        return reinterpret_cast<void*>(GetProcAddress(module_, name));
    }

  private:
    HMODULE module_;
};

}  // namespace

std::unique_ptr<Library> LoadLibraryAt(const std::u16string& path, ErrorCode* error) {
    HMODULE module = LoadLibraryW(win32::ToWin32(path).c_str());
    if (module == nullptr) {
        *error = GetLastError();
        return nullptr;
    }
    *error = 0;
    return std::make_unique<Win32Library>(module);
}

// Grows the buffer until GetModuleFileNameW stops truncating.
std::u16string ModulePathOf(const void* address) {
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(
            GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            static_cast<LPCWSTR>(address), &module)) {
        return {};
    }
    std::wstring path(MAX_PATH + 1, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) return {};
        if (length < path.size())
            return win32::FromWin32(std::wstring_view(path).substr(0, length));
        if (path.size() >= 32768) return {};
        path.resize(path.size() * 2);
    }
}

}  // namespace velmora::platform
