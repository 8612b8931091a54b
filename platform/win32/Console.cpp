// Win32: arguments come from the wide command line; the C streams are switched to binary.
#include "platform/Console.h"

// windows.h must come before the other Win32 headers.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <stdio.h>

namespace velmora::platform {

// Splits the wide command line the way the C runtime does, so non-ANSI characters survive.
std::vector<std::u16string> CommandLineArguments(int argc, char** argv) {
    std::vector<std::u16string> args;
    int count = 0;
    LPWSTR* words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (words == nullptr) return args;
    for (int i = 0; i < count; ++i) {
        args.emplace_back(reinterpret_cast<const char16_t*>(words[i]));
    }
    LocalFree(words);
    return args;
}

void UseBinaryStandardStreams() {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

bool StandardErrorIsTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

}  // namespace velmora::platform
