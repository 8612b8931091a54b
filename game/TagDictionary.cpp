// TagDictionary: loading the names line by line, and the program's one instance.
#include "game/TagDictionary.h"

#include <memory>

#include "game/PgnLineReader.h"
#include "game/UserMessages.h"
#include "platform/CodePage.h"
#include "platform/Paths.h"
#include "platform/SystemError.h"

namespace velmora {

void TagDictionary::Load(platform::FileSystem& fileSystem) {
    LoadFrom(platform::ProgramFolder() + kFileName, fileSystem);
}

void TagDictionary::LoadFrom(const std::u16string& path, platform::FileSystem& fileSystem) {
    names_.clear();
    names_.reserve(50);
    platform::ErrorCode error = 0;
    std::unique_ptr<platform::File> file =
        fileSystem.Open(path, platform::OpenMode::ReadExclusive, &error);
    if (!file) {
        ShowMessage(platform::ErrorTextOrCode(error), u"Unable to load headers' dictionary",
                    MessageIcon::Error);
        return;
    }
    PgnLineReader reader(*file);
    char line[PgnLineReader::kLineSize];
    int length = 0;
    while (reader.ReadLine(line, &length)) {
        names_.emplace_back();
        names_.back().Set(platform::AnsiToWide(line));
    }
}

const char16_t* TagDictionary::Get(int index) const {
    return index >= 0 && index < Count() ? names_[index].Get() : nullptr;
}

TagDictionary& GlobalTagDictionary() {
    static TagDictionary dictionary;
    return dictionary;
}

}  // namespace velmora
