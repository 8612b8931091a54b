// The ".pgn" association: its values, the comparison with the store, and the start-up check.
#include <gtest/gtest.h>

#include <string>

#include "game/UserMessages.h"
#include "models/FileAssociation.h"
#include "models/Settings.h"
#include "platform/CodePage.h"
#include "platform/Paths.h"

namespace velmora {
namespace {

using platform::MemorySettingsStore;
using platform::RegistryKey;
using platform::StoreRoot;

const std::u16string kPath = u"C:\\Program Files\\Velmora\\Velmora20.exe";

// Writes the three default values of an association by hand; a null value is left out.
void WriteAssociation(MemorySettingsStore& store, const char16_t* className, const char16_t* icon,
                      const char16_t* command) {
    RegistryKey key(store);
    key.Open(StoreRoot::ClassesRoot, u".pgn", true);
    if (className) key.SetDefaultString(className);
    key.Open(StoreRoot::ClassesRoot, u"pgnfile\\DefaultIcon", true);
    if (icon) key.SetDefaultString(icon);
    key.Open(StoreRoot::ClassesRoot, u"pgnfile\\Shell\\Open\\Command", true);
    if (command) key.SetDefaultString(command);
}

std::u16string DefaultValue(MemorySettingsStore& store, const std::u16string& path) {
    RegistryKey key(store);
    char16_t text[300] = {};
    if (!key.Open(StoreRoot::ClassesRoot, path, false) || !key.GetDefaultString(text, 600)) {
        return u"<missing>";
    }
    return text;
}

// Answers the question with a fixed answer and counts how often it was asked.
struct Asker {
    int answer;
    int asked = 0;
    AssociationQuestion Question() {
        return [this] {
            ++asked;
            return answer;
        };
    }
};

TEST(FileAssociation, IsAssociatedOnlyWhenAllThreeValuesMatch) {
    const std::u16string icon = AssociationIconValue(kPath);
    const std::u16string command = AssociationCommandValue(kPath);
    // Case-folded copies of the right values, as someone could have typed them by hand.
    const std::u16string upperIcon = u"C:\\PROGRAM FILES\\VELMORA\\VELMORA20.EXE,0";
    const std::u16string lowerCommand = u"\"c:\\program files\\velmora\\velmora20.exe\" %1";
    const std::u16string unquoted = kPath + u" %1";
    struct Case {
        const char* what;
        const char16_t* className;
        const char16_t* icon;
        const char16_t* command;
        bool associated;
    };
    const Case cases[] = {
        {"everything right", u"pgnfile", icon.c_str(), command.c_str(), true},
        {"other letter case", u"PgnFile", upperIcon.c_str(), lowerCommand.c_str(), true},
        {"no class name", nullptr, icon.c_str(), command.c_str(), false},
        {"another class", u"pgnfile2", icon.c_str(), command.c_str(), false},
        {"no icon", u"pgnfile", nullptr, command.c_str(), false},
        {"icon without ,0", u"pgnfile", kPath.c_str(), command.c_str(), false},
        {"no command", u"pgnfile", icon.c_str(), nullptr, false},
        {"unquoted command", u"pgnfile", icon.c_str(), unquoted.c_str(), false},
    };
    for (const Case& c : cases) {
        MemorySettingsStore store;
        WriteAssociation(store, c.className, c.icon, c.command);
        EXPECT_EQ(IsAssociated(store, icon, command), c.associated) << c.what;
    }
    // Letters beyond ASCII compare equal to themselves, and to their other case in Latin-1.
    const std::u16string accented = u"C:\\Program Files\\V\u00E9lmora\\Velmora20.exe";
    MemorySettingsStore latin;
    WriteAssociation(latin, u"pgnfile", u"C:\\PROGRAM FILES\\V\u00C9LMORA\\VELMORA20.EXE,0",
                     AssociationCommandValue(accented).c_str());
    EXPECT_TRUE(
        IsAssociated(latin, AssociationIconValue(accented), AssociationCommandValue(accented)));
}

TEST(FileAssociation, ValuesLongerThanTheReadBufferNeverMatch) {
    // 270 bytes hold 134 characters and the terminator; the command value, the path and three
    // characters, is the longer of the two.
    for (std::size_t length : {131u, 132u}) {
        const std::u16string path = u"C:\\" + std::u16string(length - 3, u'x');
        const std::u16string icon = AssociationIconValue(path);
        const std::u16string command = AssociationCommandValue(path);
        MemorySettingsStore store;
        WriteAssociation(store, u"pgnfile", icon.c_str(), command.c_str());
        EXPECT_EQ(IsAssociated(store, icon, command), length == 131u) << length;
    }
}

TEST(FileAssociation, CheckWritesOnYesAndAsksAgainAfterNo) {
    MemorySettingsStore store;
    // Switched off, without a program path or without a question: nothing is asked.
    Asker yes{kAnswerYes};
    CheckAssociation(store, 0, kPath, yes.Question());
    CheckAssociation(store, 1, u"", yes.Question());
    CheckAssociation(store, 1, kPath, AssociationQuestion());
    EXPECT_EQ(yes.asked, 0);
    Asker no{kAnswerNo};
    CheckAssociation(store, 1, kPath, no.Question());
    CheckAssociation(store, 1, kPath, no.Question());
    EXPECT_EQ(no.asked, 2);  // the next start asks again
    EXPECT_FALSE(store.KeyExists(StoreRoot::ClassesRoot, u".pgn"));

    CheckAssociation(store, 1, kPath, yes.Question());
    EXPECT_EQ(yes.asked, 1);
    EXPECT_EQ(DefaultValue(store, u".pgn"), u"pgnfile");
    EXPECT_EQ(DefaultValue(store, u"pgnfile\\DefaultIcon"),
              u"C:\\Program Files\\Velmora\\Velmora20.exe,0");  // never quoted
    EXPECT_EQ(DefaultValue(store, u"pgnfile\\Shell\\Open\\Command"),
              u"\"C:\\Program Files\\Velmora\\Velmora20.exe\" %1");

    // A second start finds its own association and asks nothing; another program path asks,
    // and a path without blanks is written unquoted.
    CheckAssociation(store, 1, kPath, yes.Question());
    EXPECT_EQ(yes.asked, 1);
    CheckAssociation(store, 1, u"D:\\Velmora20.exe", yes.Question());
    EXPECT_EQ(yes.asked, 2);
    EXPECT_EQ(DefaultValue(store, u"pgnfile\\Shell\\Open\\Command"), u"D:\\Velmora20.exe %1");

    // Any answer but No counts as yes (a dismissed box, for one).
    MemorySettingsStore other;
    Asker cancel{kAnswerCancel};
    CheckAssociation(other, 1, kPath, cancel.Question());
    EXPECT_TRUE(IsAssociated(other, AssociationIconValue(kPath), AssociationCommandValue(kPath)));
}

TEST(FileAssociation, LoadChecksBeforeReadingCheckAssoc) {
    MemorySettingsStore store;
    Settings saved;
    saved.checkAssoc = 0;
    saved.Save(store);

    Settings settings;
    Asker yes{kAnswerYes};
    settings.associationQuestion = yes.Question();
    settings.Load(store);
    // Intended: a stored "Check Assoc" of 0 does not stop the check at load.
    EXPECT_EQ(yes.asked, 1);
    EXPECT_EQ(settings.checkAssoc, 0u);
    EXPECT_EQ(DefaultValue(store, u"pgnfile\\Shell\\Open\\Command"),
              AssociationCommandValue(platform::ProgramPath()));

    // Once loaded, checkAssoc holds the stored 0 and a check of its own does nothing.
    MemorySettingsStore fresh;
    settings.CheckAssociation(fresh);
    EXPECT_EQ(yes.asked, 1);
    EXPECT_FALSE(fresh.KeyExists(StoreRoot::ClassesRoot, u".pgn"));
}

}  // namespace
}  // namespace velmora
