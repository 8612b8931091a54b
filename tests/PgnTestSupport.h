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
#include "tests/MemoryFileSystem.h"

namespace velmora::test {

inline std::u16string Text(const OwnedText& text) {  // "<none>" when there is no value
    return text.IsNull() ? u"<none>" : std::u16string(text.View());
}
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
inline std::vector<std::uint32_t> Offsets(const GameIndex& index) {  // in list order
    std::vector<std::uint32_t> offsets;
    for (GameSummary* entry = index.First(); entry; entry = entry->next.get())
        offsets.push_back(entry->offset);
    return offsets;
}
struct TempFolder {  // a fresh temporary folder, removed with everything in it
    TempFolder() { std::filesystem::create_directories(dir); }
    ~TempFolder() { std::filesystem::remove_all(dir, ignored); }
    std::u16string Path(const std::string& name) const { return JoinPath(dir.u16string(), name); }
    std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                ("velmora-test-" + std::to_string(std::random_device{}()));
    std::error_code ignored;
};
struct RecordedMessages final : UserMessages {  // while it lives: records, gives answer to all
    RecordedMessages() { SetUserMessages(this); }
    ~RecordedMessages() override { SetUserMessages(nullptr); }
    int Show(const std::u16string& text, const std::u16string& caption, MessageIcon icon,
             MessageButtons buttons, void*) override {
        shown.emplace_back(caption, text);
        kinds.emplace_back(icon, buttons);
        return answer;
    }
    std::vector<std::pair<std::u16string, std::u16string>> shown;  // caption, text
    std::vector<std::pair<MessageIcon, MessageButtons>> kinds;
    int answer = kAnswerOk;
};

}  // namespace velmora::test
