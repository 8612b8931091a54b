// Text output of the command-line tool: UTF-16 inside, UTF-8 on the streams.
#include "cli/Commands.h"
#include "platform/CodePage.h"

namespace velmora::cli {

// ASCII, nearly all of what the tool prints, is copied a unit at a time; from the first other
// character on, the rest is converted as a whole.
void AppendUtf8(std::string& out, std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] >= 0x80) {
            out += platform::WideToUtf8(text.substr(i));
            return;
        }
        out.push_back(static_cast<char>(text[i]));
    }
}

void Print(std::ostream& stream, std::u16string_view text) {
    thread_local std::string bytes;
    bytes.clear();
    AppendUtf8(bytes, text);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace velmora::cli
