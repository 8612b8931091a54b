// Where the running program lives and how path components are separated.
#pragma once

#include <string>

namespace velmora::platform {

// Returns the folder of the running program with a trailing separator, or an empty string when
// the system cannot tell.
std::u16string ProgramFolder();

// Returns the full path of the running program, or an empty string when the system cannot tell.
std::u16string ProgramPath();

// Returns the path separator: '\' on Windows, '/' elsewhere.
char16_t PathSeparator();

}  // namespace velmora::platform
