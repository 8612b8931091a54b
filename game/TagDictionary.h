// TagDictionary: the tag names offered when a tag is added to a game, read from PgnTags.txt.
#pragma once

#include <string>
#include <vector>

#include "game/OwnedText.h"
#include "platform/File.h"

namespace velmora {

class TagDictionary {
  public:
    static constexpr const char16_t* kFileName = u"PgnTags.txt";

    // Reads "PgnTags.txt" from the program's folder. A file that cannot be opened is reported
    // to the user ("Unable to load headers' dictionary") and leaves the dictionary empty.
    void Load(platform::FileSystem& fileSystem = platform::SystemFileSystem());
    // Reads the names from the file at path: one per line as the PGN line reader cuts lines,
    // blank lines skipped, nothing trimmed, order kept.
    void LoadFrom(const std::u16string& path, platform::FileSystem& fileSystem);
    int Count() const { return static_cast<int>(names_.size()); }
    // The name at index, or null when index is out of range.
    const char16_t* Get(int index) const;
    void Free() { names_.clear(); }

  private:
    std::vector<OwnedText> names_;
};

// The program's one dictionary, loaded at start-up and freed at shut-down.
TagDictionary& GlobalTagDictionary();

}  // namespace velmora
