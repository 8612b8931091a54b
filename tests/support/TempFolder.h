// A fresh folder under the system's temporary folder for one test, removed with everything in it.
#pragma once

#include <chrono>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/Paths.h"

namespace velmora::test {

class TempFolder {
  public:
    TempFolder() {
        std::mt19937_64 random(std::random_device{}() ^
                               std::chrono::steady_clock::now().time_since_epoch().count());
        const std::filesystem::path base = std::filesystem::temp_directory_path();
        do {
            path_ = base / ("velmora-test-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

    // Returns the full path of an entry of this folder, as the platform layer takes paths.
    std::u16string File(std::u16string_view name) const {
        std::u16string full = path_.u16string();
        full += platform::PathSeparator();
        full += name;
        return full;
    }

  private:
    std::filesystem::path path_;
};

}  // namespace velmora::test
