// Helpers of the PGN tests: data-file paths, temporary folders, file bytes, recorded messages.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "game/GameIndex.h"
#include "game/UserMessages.h"
#include "platform/CodePage.h"
#include "platform/File.h"
#include "platform/Paths.h"

namespace velmora::test {

// The text, or "<none>" when there is no value.
inline std::u16string Text(const OwnedText& text) {
    return text.IsNull() ? u"<none>" : std::u16string(text.View());
}

// Joins folder and name with the platform's separator ('/' in folder is converted too).
inline std::u16string JoinPath(std::u16string folder, const std::string& name) {
    std::u16string path = std::move(folder) + u'/' + platform::Utf8ToWide(name);
    std::replace(path.begin(), path.end(), u'/', platform::PathSeparator());
    return path;
}

inline std::u16string DataPath(const std::string& name) {
    return JoinPath(platform::Utf8ToWide(VELMORA_TEST_DATA_DIR), name);
}

inline std::string ReadBytes(const std::u16string& path) {
    std::ifstream in(std::filesystem::path(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

inline void WriteBytes(const std::u16string& path, const std::string& bytes) {
    std::ofstream(std::filesystem::path(path), std::ios::binary) << bytes;
}

// A fresh folder under the system's temporary folder, removed with everything in it.
class TempFolder {
  public:
    TempFolder()
        : folder_(std::filesystem::temp_directory_path() /
                  ("velmora-test-" + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directories(folder_);
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    std::u16string Path(const std::string& name) const {
        return JoinPath(folder_.u16string(), name);
    }

  private:
    std::filesystem::path folder_;
};

// Collects what the PGN writer writes, which needs nothing else from a file.
class MemoryFile final : public platform::File {
  public:
    platform::ErrorCode Read(void*, std::uint32_t, std::uint32_t*) override { return 1; }
    platform::ErrorCode Write(const void* data, std::uint32_t size,
                              std::uint32_t* written) override {
        bytes.append(static_cast<const char*>(data), size);
        if (written) *written = size;
        return 0;
    }
    platform::ErrorCode Seek(std::int64_t, platform::SeekOrigin, std::int64_t*) override {
        return 1;
    }
    platform::ErrorCode Size(std::int64_t*) override { return 1; }
    platform::ErrorCode SetEndOfFile() override { return 1; }
    std::string bytes;
};

// Records every message the core shows while the object lives.
class RecordedMessages final : public UserMessages {
  public:
    RecordedMessages() { SetUserMessages(this); }
    ~RecordedMessages() override { SetUserMessages(nullptr); }
    int Show(const std::u16string& text, const std::u16string& caption, MessageIcon, MessageButtons,
             void*) override {
        shown.emplace_back(caption, text);
        return kAnswerOk;
    }
    std::vector<std::pair<std::u16string, std::u16string>> shown;  // caption, text
};

// The offsets of the entries of an index, in list order.
inline std::vector<std::uint32_t> Offsets(const GameIndex& index) {
    std::vector<std::uint32_t> offsets;
    for (GameSummary* entry = index.First(); entry; entry = entry->next.get())
        offsets.push_back(entry->offset);
    return offsets;
}

}  // namespace velmora::test
