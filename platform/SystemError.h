// Texts of the system's error codes, for the messages shown when a file operation fails.
#pragma once

#include <string>

#include "platform/File.h"

namespace velmora::platform {

// Returns the system's message for the code as the system words it (at most 511 characters on
// Windows), or an empty string when the system has none.
std::u16string SystemErrorText(ErrorCode code);

// Returns SystemErrorText(code), or "Err 0x%08X" with the code when that is empty.
std::u16string ErrorTextOrCode(ErrorCode code);

}  // namespace velmora::platform
