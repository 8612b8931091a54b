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

}  // namespace velmora::platform
