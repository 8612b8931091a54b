// Helpers of the PGN tests: data-file paths, game offsets, recorded messages.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "game/GameIndex.h"
#include "game/UserMessages.h"
#include "platform/CodePage.h"
#include "platform/File.h"
#include "tests/MemoryFileSystem.h"
#include "tests/TestFiles.h"

namespace velmora::test {

template <typename T>  // OwnedText or RowText: "<none>" when there is no value
std::u16string Text(const T& text) {
    return text.IsNull() ? u"<none>" : std::u16string(text.View());
}
inline std::u16string DataPath(const std::string& name) {
    return JoinPath(platform::Utf8ToWide(VELMORA_TEST_DATA_DIR), name);
}
inline std::vector<std::uint32_t> Offsets(const GameIndex& index) {  // in list order
    std::vector<std::uint32_t> offsets;
    for (GameRow row : index)
        offsets.push_back(row.Offset());
    return offsets;
}
struct RecordedMessages final : UserMessages {  // while it lives: records, gives answer to all
    RecordedMessages() { SetUserMessages(this); }
    ~RecordedMessages() override { SetUserMessages(nullptr); }
    int Show(const std::u16string& text, const std::u16string& caption, MessageIcon icon,
             MessageButtons buttons, MessageOwner) override {
        shown.emplace_back(caption, text);
        kinds.emplace_back(icon, buttons);
        return answer;
    }
    std::vector<std::pair<std::u16string, std::u16string>> shown;  // caption, text
    std::vector<std::pair<MessageIcon, MessageButtons>> kinds;
    int answer = kAnswerOk;
};

}  // namespace velmora::test
