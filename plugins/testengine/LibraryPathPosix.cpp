// The path of a loaded library on POSIX systems, through dladdr.
#include <dlfcn.h>

#include "platform/CodePage.h"
#include "plugins/testengine/LibraryPath.h"

namespace velmora::plugin {

std::u16string LibraryPathOf(const void* address) {
    Dl_info info{};
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) return {};
    return platform::Utf8ToWide(info.dli_fname);
}

}  // namespace velmora::plugin
