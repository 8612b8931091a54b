// The fallback text for error codes the system cannot describe, shared by every build.
#include "platform/SystemError.h"

#include <cstdio>

namespace velmora::platform {

std::u16string ErrorTextOrCode(ErrorCode code) {
    std::u16string text = SystemErrorText(code);
    if (!text.empty()) return text;
    char buffer[32];
    const int length =
        std::snprintf(buffer, sizeof buffer, "Err 0x%08X", static_cast<unsigned>(code));
    return std::u16string(buffer, buffer + length);
}

}  // namespace velmora::platform
