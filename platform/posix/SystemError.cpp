// Error texts on POSIX systems: the C library's English description of an errno value.
#include "platform/SystemError.h"

#include <cstring>

#include "platform/CodePage.h"

namespace velmora::platform {

// Uses strerrordesc_np rather than strerror, which invents "Unknown error N" for codes it does
// not know; an unknown code must give an empty text so that callers show the number instead.
std::u16string SystemErrorText(ErrorCode code) {
    if (code > 0x7FFFFFFF) return {};
    const char* text = strerrordesc_np(static_cast<int>(code));
    if (text == nullptr) return {};
    return Utf8ToWide(text);
}

}  // namespace velmora::platform
