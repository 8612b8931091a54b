// The program's path and folder on POSIX systems, found through /proc/self/exe.
#include "platform/Paths.h"

#include <unistd.h>

#include <string>

#include "platform/CodePage.h"

namespace velmora::platform {

std::u16string ProgramPath() {
    std::string path(256, '\0');
    for (;;) {
        const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
        if (length < 0) return {};
        if (static_cast<std::size_t>(length) < path.size()) {
            path.resize(static_cast<std::size_t>(length));
            break;
        }
        path.resize(path.size() * 2);
    }
    return Utf8ToWide(path);
}

std::u16string ProgramFolder() {
    const std::u16string path = ProgramPath();
    const std::size_t slash = path.rfind(u'/');
    if (slash == std::u16string::npos) return {};
    return path.substr(0, slash + 1);
}

char16_t PathSeparator() {
    return u'/';
}

}  // namespace velmora::platform
