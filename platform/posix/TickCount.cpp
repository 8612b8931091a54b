// POSIX: the monotonic clock, cut to 32 bits of milliseconds like the Windows tick count.
#include "platform/TickCount.h"

#include <time.h>

namespace velmora::platform {

std::uint32_t TickCount() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const std::uint64_t milliseconds = static_cast<std::uint64_t>(now.tv_sec) * 1000u +
                                       static_cast<std::uint64_t>(now.tv_nsec) / 1000000u;
    return static_cast<std::uint32_t>(milliseconds);
}

}  // namespace velmora::platform
