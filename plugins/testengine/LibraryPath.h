// LibraryPath: where the library holding a piece of code lies, so a plug-in finds its own files.
#pragma once

#include <string>

namespace velmora::plugin {

// Returns the full path of the library (or program) that contains address, or an empty text
// when the system cannot tell.
std::u16string LibraryPathOf(const void* address);

}  // namespace velmora::plugin
