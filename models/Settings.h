// Settings: the user's persistent choices and recent names, kept in the per-user settings store.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "game/OwnedText.h"
#include "platform/SettingsStore.h"

namespace velmora {

// Names recently used, oldest first, up to a fixed capacity.
class RecentList {
  public:
    explicit RecentList(int capacity = 0) : capacity_(capacity) {}
    // Reads the values "0", "1", ... of subkey (created when missing) until one is missing or
    // capacity names were read.
    bool Load(int capacity, const platform::RegistryKey& parent, const std::u16string& subkey);
    // Writes every name under "0", "1", ...; values left from a longer list stay.
    bool Save(const platform::RegistryKey& parent, const std::u16string& subkey) const;
    // Makes text the newest name: an equal name (case matters) moves to the end, otherwise the
    // text is added, dropping the oldest name when the list is full.
    void Add(const std::u16string& text);
    int Count() const { return static_cast<int>(names_.size()); }
    const std::u16string& At(int index) const { return names_[index]; }
    int Capacity() const { return capacity_; }

  private:
    int capacity_ = 0;
    std::vector<std::u16string> names_;
};

class Settings {
  public:
    static constexpr const char16_t* kKeyPath = u"Software\\Trelvik\\Velmora";
    // Bytes of the buffer "Open in" is read into: a longer folder is treated as absent.
    static constexpr std::uint32_t kOpenInBytes = 261;

    virtual ~Settings() = default;

    // Checks that ".pgn" files open with this program and offers to make them do so, through
    // associationQuestion; without a question nothing is asked or written.
    virtual void CheckAssociation(platform::SettingsStore& store);

    // Runs CheckAssociation first, while checkAssoc still holds what it held before (the default
    // 1 at start-up: the check runs whatever the stored "Check Assoc" says). Then reads every
    // value of the settings key; what is missing keeps its default. True only when everything
    // was read.
    bool Load(platform::SettingsStore& store);
    // Writes every value (the folder only when one is stored); true only when all were written.
    bool Save(platform::SettingsStore& store) const;
    // Replaces the stored folder; null clears it.
    void SetOpenIn(const char16_t* folder) { openIn.Set(folder); }

    std::uint32_t layout = 0;
    std::uint32_t indicateComment = 1;
    std::uint32_t displayArrow = 1;
    std::uint32_t whiteColor = 0x00FFFFFF;  // colours are 0x00BBGGRR
    std::uint32_t blackColor = 0x00808080;
    std::uint32_t selectColor = 0x00FF80FF;
    OwnedText openIn;
    std::uint32_t openLastDatabase = 0;
    std::uint32_t databaseOption = 0;
    std::uint32_t checkAssoc = 1;
    std::uint32_t bitmapIndex = 0;
    RecentList recentFiles{5};
    RecentList recentPlayers{15};
    RecentList recentEvents{5};
    RecentList recentSites{5};

    // Asks the user whether to register the program for ".pgn" files (kAnswerYes or kAnswerNo);
    // set by the program, not stored.
    std::function<int()> associationQuestion;
};

}  // namespace velmora
