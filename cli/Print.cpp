// Text output of the command-line tool: UTF-16 inside, UTF-8 on the streams.
#include "cli/Commands.h"
#include "platform/CodePage.h"

namespace velmora::cli {

// ASCII text, most of what is printed, goes out through a buffer on the stack; from the first
// other character on the rest is converted as a whole.
void Print(std::ostream& stream, std::u16string_view text) {
    char buffer[256];
    std::size_t used = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] >= 0x80) {
            stream.write(buffer, static_cast<std::streamsize>(used));
            stream << platform::WideToUtf8(text.substr(i));
            return;
        }
        buffer[used++] = static_cast<char>(text[i]);
        if (used == sizeof buffer) {
            stream.write(buffer, static_cast<std::streamsize>(used));
            used = 0;
        }
    }
    stream.write(buffer, static_cast<std::streamsize>(used));
}

}  // namespace velmora::cli
