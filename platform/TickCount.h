// TickCount: the system's millisecond counter, for measuring how long something took.
#pragma once

#include <cstdint>

namespace velmora::platform {

// Returns milliseconds since an arbitrary fixed moment. The count wraps around after 2^32 ms
// (about 49.7 days): take differences as unsigned values, never compare two counts.
std::uint32_t TickCount();

}  // namespace velmora::platform
