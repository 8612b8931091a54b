// Text output of the command-line tool: UTF-16 inside, UTF-8 on the streams.
#include "cli/Commands.h"
#include "platform/CodePage.h"

namespace velmora::cli {

void Print(std::ostream& stream, std::u16string_view text) {
    stream << platform::WideToUtf8(text);
}

}  // namespace velmora::cli
