// Locates the files of tests/data/ from any test program, native or run under Wine.
#pragma once

#include <string>
#include <string_view>

#include "platform/CodePage.h"
#include "platform/Paths.h"

#ifndef VELMORA_TEST_DATA_DIR
#error "The build passes VELMORA_TEST_DATA_DIR, the absolute path of tests/data"
#endif

namespace velmora::test {

// Returns the full path of a file in tests/data/, with the system's separators.
inline std::u16string TestDataPath(std::string_view name) {
    std::u16string path = platform::Utf8ToWide(std::string(VELMORA_TEST_DATA_DIR) + "/");
    path += platform::Utf8ToWide(name);
    for (char16_t& c : path) {
        if (c == u'/') c = platform::PathSeparator();
    }
    return path;
}

}  // namespace velmora::test
