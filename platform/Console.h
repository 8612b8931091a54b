// The command-line tool's view of its process: arguments as UTF-16, raw standard streams.
#pragma once

#include <string>
#include <vector>

namespace velmora::platform {

// Returns the program's arguments (the program name first) as UTF-16: on Windows from the
// wide command line, elsewhere converted from the UTF-8 argv.
std::vector<std::u16string> CommandLineArguments(int argc, char** argv);
// Puts standard output and error in binary mode, so "\n" is written as a bare line feed.
void UseBinaryStandardStreams();
// Tells whether standard error is a terminal (where progress lines make sense).
bool StandardErrorIsTerminal();

}  // namespace velmora::platform
