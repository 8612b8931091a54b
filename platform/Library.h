// Library: a code library loaded at run time (an engine plug-in).
#pragma once

#include <memory>
#include <string>

#include "platform/File.h"

namespace velmora::platform {

// A loaded library. Destroying the object unloads it.
class Library {
  public:
    virtual ~Library() = default;
    // Returns the address of an exported function, or null when there is none of that name.
    virtual void* Symbol(const char* name) = 0;
};

// Loads the library at path. A path without an extension gets the system's own (".dll" on
// Windows, ".so" elsewhere). Returns null with *error set (a system code; on POSIX 1, the text
// going to the debug output) when it cannot be loaded.
std::unique_ptr<Library> LoadLibraryAt(const std::u16string& path, ErrorCode* error);

// Returns the full path of the library or program whose code or data holds address (a library
// finds its own file this way), or an empty string when the system cannot tell.
std::u16string ModulePathOf(const void* address);

}  // namespace velmora::platform
