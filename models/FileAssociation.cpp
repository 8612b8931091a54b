// FileAssociation: comparing and writing the ".pgn" entries of the classes root.
#include "models/FileAssociation.h"

#include "game/UserMessages.h"

namespace velmora {

using platform::RegistryKey;
using platform::StoreRoot;

namespace {

// Bytes of the buffers the association's values are read into.
constexpr std::uint32_t kValueBytes = 270;

// Folds ASCII and Latin-1 capitals to small letters; other characters stay as they are.
char16_t Lower(char16_t c) {
    if (c >= u'A' && c <= u'Z') return static_cast<char16_t>(c + 0x20);
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return static_cast<char16_t>(c + 0x20);
    return c;
}

bool SameText(std::u16string_view a, std::u16string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (Lower(a[i]) != Lower(b[i])) return false;
    }
    return true;
}

// Reads key's default value into a buffer of kValueBytes; false when it is missing or longer.
bool ReadDefault(const RegistryKey& key, std::u16string* text) {
    char16_t buffer[kValueBytes / 2 + 1] = {};  // the extra unit always ends the text
    if (!key.GetDefaultString(buffer, kValueBytes)) return false;
    *text = buffer;
    return true;
}

}  // namespace

std::u16string AssociationIconValue(std::u16string_view programPath) {
    return std::u16string(programPath) + u",0";
}

std::u16string AssociationCommandValue(std::u16string_view programPath) {
    std::u16string command(programPath);
    if (command.find(u' ') != std::u16string::npos) command = u"\"" + command + u"\"";
    return command + u" %1";
}

bool IsAssociated(platform::SettingsStore& store, const std::u16string& iconValue,
                  const std::u16string& commandValue) {
    RegistryKey extension(store);
    std::u16string className;
    if (!extension.Open(StoreRoot::ClassesRoot, u".pgn", false) ||
        !ReadDefault(extension, &className) || !SameText(className, kPgnFileClass)) {
        return false;
    }
    RegistryKey fileClass(store);
    RegistryKey icon(store);
    RegistryKey command(store);
    std::u16string value;
    return fileClass.Open(StoreRoot::ClassesRoot, className, false) &&
           icon.Open(fileClass, u"DefaultIcon", false) && ReadDefault(icon, &value) &&
           SameText(value, iconValue) && command.Open(fileClass, u"Shell\\Open\\Command", false) &&
           ReadDefault(command, &value) && SameText(value, commandValue);
}

void CheckAssociation(platform::SettingsStore& store, std::uint32_t checkAssoc,
                      const std::u16string& programPath, const AssociationQuestion& ask) {
    if (checkAssoc == 0 || programPath.empty() || !ask) return;
    const std::u16string iconValue = AssociationIconValue(programPath);
    const std::u16string commandValue = AssociationCommandValue(programPath);
    if (IsAssociated(store, iconValue, commandValue) || ask() == kAnswerNo) return;
    // A key that cannot be opened makes its write a no-op; nothing is reported.
    RegistryKey extension(store);
    extension.Open(StoreRoot::ClassesRoot, u".pgn", true);
    extension.SetDefaultString(kPgnFileClass);
    RegistryKey fileClass(store);
    fileClass.Open(StoreRoot::ClassesRoot, kPgnFileClass, true);
    RegistryKey icon(store);
    icon.Open(fileClass, u"DefaultIcon", true);
    icon.SetDefaultString(iconValue);
    RegistryKey command(store);
    command.Open(fileClass, u"Shell\\Open\\Command", true);
    command.SetDefaultString(commandValue);
}

}  // namespace velmora
