// Win32: the system tick count.
#include "platform/TickCount.h"

#include <windows.h>

namespace velmora::platform {

std::uint32_t TickCount() {
    return static_cast<std::uint32_t>(GetTickCount());
}

}  // namespace velmora::platform
