// Libraries on POSIX systems, through dlopen.
#include <dlfcn.h>
#include <limits.h>
#include <stdlib.h>

#include "platform/CodePage.h"
#include "platform/DebugOutput.h"
#include "platform/Library.h"

namespace velmora::platform {
namespace {

class PosixLibrary final : public Library {
  public:
    explicit PosixLibrary(void* handle) : handle_(handle) {}
    ~PosixLibrary() override { dlclose(handle_); }
    void* Symbol(const char* name) override { return dlsym(handle_, name); }

  private:
    void* handle_;
};

}  // namespace

std::unique_ptr<Library> LoadLibraryAt(const std::u16string& path, ErrorCode* error) {
    std::string bytes = WideToUtf8(path);
    const std::size_t slash = bytes.rfind('/');
    const std::size_t dot = bytes.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) bytes += ".so";
    void* handle = dlopen(bytes.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* reason = dlerror();
        if (reason != nullptr) DebugTrace(Utf8ToWide(std::string(reason) + "\n").c_str());
        *error = 1;
        return nullptr;
    }
    *error = 0;
    return std::make_unique<PosixLibrary>(handle);
}

std::u16string ModulePathOf(const void* address) {
    Dl_info info;
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) return {};
    // dladdr gives the name the library was loaded by, which may be relative.
    char full[PATH_MAX];
    if (realpath(info.dli_fname, full) == nullptr) return Utf8ToWide(info.dli_fname);
    return Utf8ToWide(full);
}

}  // namespace velmora::platform
