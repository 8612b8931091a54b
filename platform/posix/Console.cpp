// POSIX: arguments arrive as UTF-8 and the standard streams are already byte streams.
#include "platform/Console.h"

#include <unistd.h>

#include "platform/CodePage.h"

namespace velmora::platform {

std::vector<std::u16string> CommandLineArguments(int argc, char** argv) {
    std::vector<std::u16string> args;
    for (int i = 0; i < argc; ++i)
        args.push_back(Utf8ToWide(argv[i]));
    return args;
}

void UseBinaryStandardStreams() {}

bool StandardErrorIsTerminal() {
    return isatty(2) != 0;
}

}  // namespace velmora::platform
