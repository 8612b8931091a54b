// Formatted debug output.
#include "ui/DebugTrace.h"

#include <windows.h>

#include <cstdarg>

#include "platform/DebugOutput.h"
#include "ui/Application.h"

namespace velmora {

void DebugTrace(const wchar_t* format, ...) {
    wchar_t text[1024];
    va_list arguments;
    va_start(arguments, format);
    wvsprintfW(text, format, arguments);
    va_end(arguments);
    platform::DebugTrace(Utf16(text));
}

}  // namespace velmora
