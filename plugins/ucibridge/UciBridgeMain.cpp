// UciBridge.dll: the entry point, which reads the ini file of the library's own name beside it.
#include "platform/Library.h"
#include "plugins/ucibridge/UciBridgeEngine.h"

namespace {

// Any address inside the library tells which file it was loaded from.
const char kInsideLibrary = 0;

// Replaces the extension of the library's file name with ".ini".
std::u16string IniPath() {
    std::u16string path = velmora::platform::ModulePathOf(&kInsideLibrary);
    const std::size_t dot = path.rfind(u'.');
    const std::size_t separator = path.find_last_of(u"/\\");
    if (dot != std::u16string::npos && (separator == std::u16string::npos || dot > separator))
        path.resize(dot);
    return path.empty() ? path : path + u".ini";
}

}  // namespace

VELMORA_PLUGIN_EXPORT velmora::plugin::Engine* LoadEngine(velmora::plugin::HostCallbacks* host) {
    const std::u16string ini = IniPath();
    return ini.empty() ? nullptr : velmora::plugin::LoadUciBridge(ini, host);
}
