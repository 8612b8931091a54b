// Error texts on Windows: the system message table through FormatMessageW.
#include "platform/SystemError.h"

#include <windows.h>

#include "platform/win32/WideText.h"

namespace velmora::platform {

// Keeps the text exactly as the system words it, trailing line break included; a message that
// does not fit in 512 characters counts as none.
std::u16string SystemErrorText(ErrorCode code) {
    wchar_t buffer[512];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                        nullptr, code, 0, buffer, 512, nullptr);
    return win32::FromWin32(std::wstring_view(buffer, length));
}

}  // namespace velmora::platform
