// POSIX: debug traces go to standard error when VELMORA_DEBUG is set.
#include "platform/DebugOutput.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/CodePage.h"

namespace velmora::platform {

void DebugTrace(const char16_t* text) {
    static const bool enabled = std::getenv("VELMORA_DEBUG") != nullptr;
    if (enabled) std::fputs(WideToUtf8(text).c_str(), stderr);
}

}  // namespace velmora::platform
