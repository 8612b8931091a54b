// Files for tests: temporary folders, paths and file bytes. Bytes are read and written through
// the standard library, so that a fault in the platform layer under test cannot cancel itself out.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>
#include <utility>

#include "platform/CodePage.h"
#include "platform/Paths.h"

namespace velmora::test {

inline std::u16string JoinPath(std::u16string folder, const std::string& name) {
    std::u16string path = std::move(folder) + u'/' + platform::Utf8ToWide(name);
    std::replace(path.begin(), path.end(), u'/', platform::PathSeparator());
    return path;
}
inline std::string ReadBytes(const std::u16string& path) {
    std::ifstream in(std::filesystem::path(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}
inline void WriteBytes(const std::u16string& path, const std::string& bytes) {
    std::ofstream(std::filesystem::path(path), std::ios::binary) << bytes;
}
struct TempFolder {  // a fresh temporary folder, removed with everything in it
    TempFolder() { std::filesystem::create_directories(dir); }
    ~TempFolder() { std::filesystem::remove_all(dir, ignored); }
    std::u16string Path(const std::string& name) const { return JoinPath(dir.u16string(), name); }
    std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                ("velmora-test-" + std::to_string(std::random_device{}()));
    std::error_code ignored;
};

}  // namespace velmora::test
