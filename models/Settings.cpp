// Settings: loading and saving the user's choices and the recent-name lists.
#include "models/Settings.h"

#include <algorithm>
#include <memory>
#include <string>

#include "models/FileAssociation.h"
#include "platform/Paths.h"

namespace velmora {

using platform::RegistryKey;

namespace {

// The value name of a list entry: its index in decimal.
std::u16string Decimal(int index) {
    std::string digits = std::to_string(index);
    return std::u16string(digits.begin(), digits.end());
}

}  // namespace

bool RecentList::Load(int capacity, const RegistryKey& parent, const std::u16string& subkey) {
    capacity_ = capacity;
    names_.clear();
    RegistryKey key(parent);
    if (!key.Open(parent, subkey, true)) return false;
    for (int i = 0; Count() < capacity_; ++i) {
        const std::u16string name = Decimal(i);
        int size = key.ValueSize(name);
        if (size < 1) break;
        auto text = std::make_unique<char16_t[]>(static_cast<std::size_t>(size) + 1);
        // size bytes fit with room to spare; a value stored without its terminator gets one. A
        // value that changed between the two reads still takes its place, empty.
        if (!key.GetString(name, text.get(), (static_cast<std::uint32_t>(size) + 1) * 2))
            text[0] = 0;
        text[size / 2] = 0;
        names_.emplace_back(text.get());
    }
    return true;
}

bool RecentList::Save(const RegistryKey& parent, const std::u16string& subkey) const {
    RegistryKey key(parent);
    if (!key.Open(parent, subkey, true)) return false;
    bool written = true;
    for (int i = 0; i < Count(); ++i) {
        written &= key.SetString(Decimal(i), names_[i]);
    }
    return written;
}

void RecentList::Add(const std::u16string& text) {
    auto found = std::find(names_.begin(), names_.end(), text);
    if (found != names_.end()) {
        std::rotate(found, found + 1, names_.end());  // the same name, now the newest
        return;
    }
    if (Count() >= capacity_ && !names_.empty()) names_.erase(names_.begin());
    names_.push_back(text);
}

void Settings::CheckAssociation(platform::SettingsStore& store) {
    if (!associationQuestion) return;  // nobody to ask: the association is left as it is
    velmora::CheckAssociation(store, checkAssoc, platform::ProgramPath(), associationQuestion);
}

bool Settings::Load(platform::SettingsStore& store) {
    CheckAssociation(store);  // before "Check Assoc" is read, on purpose
    RegistryKey key(store);
    key.Open(platform::StoreRoot::CurrentUser, kKeyPath, false);
    bool complete = true;
    auto dword = [&](const char16_t* name, std::uint32_t* field) {
        std::uint32_t value = 0;
        if (key.GetDword(name, &value)) {
            *field = value;
        } else {
            complete = false;
        }
    };
    dword(u"Layout", &layout);
    dword(u"Indicate comment", &indicateComment);
    dword(u"White", &whiteColor);
    dword(u"Black", &blackColor);
    dword(u"Select", &selectColor);
    dword(u"Bitmap index", &bitmapIndex);
    char16_t folder[kOpenInBytes / 2 + 1] = {};
    if (key.GetString(u"Open in", folder, kOpenInBytes)) {
        openIn.Set(folder);
    } else {
        openIn.Reset();
        complete = false;
    }
    dword(u"Open Last Database", &openLastDatabase);
    dword(u"Database Option", &databaseOption);
    dword(u"Check Assoc", &checkAssoc);
    dword(u"Display Arrow", &displayArrow);
    complete &= recentFiles.Load(5, key, u"Files");
    complete &= recentPlayers.Load(15, key, u"Players");
    complete &= recentEvents.Load(5, key, u"Events");
    complete &= recentSites.Load(5, key, u"Sites");
    key.Close();
    return complete;
}

bool Settings::Save(platform::SettingsStore& store) const {
    RegistryKey key(store);
    key.Open(platform::StoreRoot::CurrentUser, kKeyPath, true);
    bool written = key.SetDword(u"Layout", layout);
    written &= key.SetDword(u"Indicate comment", indicateComment);
    written &= key.SetDword(u"White", whiteColor);
    written &= key.SetDword(u"Black", blackColor);
    written &= key.SetDword(u"Select", selectColor);
    written &= key.SetDword(u"Bitmap index", bitmapIndex);
    if (!openIn.IsNull()) written &= key.SetString(u"Open in", std::u16string(openIn.View()));
    written &= key.SetDword(u"Open Last Database", openLastDatabase);
    written &= key.SetDword(u"Database Option", databaseOption);
    written &= key.SetDword(u"Check Assoc", checkAssoc);
    written &= key.SetDword(u"Display Arrow", displayArrow);
    written &= recentFiles.Save(key, u"Files");
    written &= recentPlayers.Save(key, u"Players");
    written &= recentEvents.Save(key, u"Events");
    written &= recentSites.Save(key, u"Sites");
    key.Close();
    return written;
}

}  // namespace velmora
