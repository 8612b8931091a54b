// What every serial port shares: received bytes cut into lines, and driver names read as port
// numbers.
#include "platform/SerialPort.h"

#include <algorithm>
#include <climits>

namespace velmora::platform {

// Ends the line at CR or LF (an empty one gives no call), keeps every byte of 32 or more and
// drops the other control bytes; a line that fills the buffer is handed on at once.
void SerialLineCutter::Add(unsigned char byte) {
    if (byte == '\n' || byte == '\r') {
        if (length_ == 0) return;
    } else if (byte < 32) {
        return;
    } else {
        line_[length_++] = static_cast<char>(byte);
        if (length_ < kMaxLine) return;
    }
    line_[length_] = '\0';
    callback_(line_, context_);
    length_ = 0;
}

// Reads the number the way "%d" would after "COM": the digits up to the first other character.
// A number too large for an int stays at INT_MAX.
bool ReadComPortNumber(std::u16string_view name, int* number) {
    if (name.size() < 5 || name.back() != u':') return false;
    for (std::size_t at = 0; at < 3; ++at) {
        const char16_t upper = name[at] >= u'a' && name[at] <= u'z' ? name[at] - 32 : name[at];
        if (upper != u"COM"[at]) return false;
    }
    if (name[3] < u'0' || name[3] > u'9') return false;
    long long value = 0;
    for (std::size_t at = 3; at < name.size() && name[at] >= u'0' && name[at] <= u'9'; ++at)
        value = std::min<long long>(value * 10 + (name[at] - u'0'), INT_MAX);
    *number = static_cast<int>(value);
    return true;
}

}  // namespace velmora::platform
