// DebugTrace: diagnostic lines for a developer's debugger, never shown to the user.
#pragma once

namespace velmora::platform {

// Sends text to the debugger (OutputDebugStringW on Windows). Elsewhere it goes to standard
// error only when the environment variable VELMORA_DEBUG is set.
void DebugTrace(const char16_t* text);

}  // namespace velmora::platform
