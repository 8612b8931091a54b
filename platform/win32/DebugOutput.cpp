// Win32: debug traces go to the debugger.
#include "platform/DebugOutput.h"

#include <windows.h>

namespace velmora::platform {

void DebugTrace(const char16_t* text) {
    OutputDebugStringW(reinterpret_cast<const wchar_t*>(text));
}

}  // namespace velmora::platform
