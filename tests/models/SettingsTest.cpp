// The user's settings and recent-name lists over a store in memory, and the ".pgn" association
// check at start-up.
#include <gtest/gtest.h>

#include <string>

#include "game/UserMessages.h"
#include "models/FileAssociation.h"
#include "models/Settings.h"
#include "platform/Paths.h"

namespace velmora {
namespace {

using platform::MemorySettingsStore;
using platform::RegistryKey;
using platform::StoreRoot;

std::u16string Names(const RecentList& list) {
    std::u16string joined;
    for (int i = 0; i < list.Count(); ++i)
        joined += (i ? u"," : u"") + list.At(i);
    return joined;
}

TEST(Settings, FirstRunFindsNothingAndSavedValuesComeBack) {
    MemorySettingsStore store;
    Settings saved;
    EXPECT_FALSE(saved.Load(store));

    saved.blackColor = 0x00336699;
    saved.checkAssoc = 0;
    saved.SetOpenIn(u"\\My Documents\\Chess");
    saved.recentPlayers.Load(15, RegistryKey(store), u"Players");  // capacity only: no key yet
    saved.recentPlayers.Add(u"Kasparov, Gary");
    EXPECT_TRUE(saved.Save(store));
    Settings loaded;
    EXPECT_TRUE(loaded.Load(store));
    EXPECT_EQ(loaded.blackColor, 0x00336699u);
    EXPECT_EQ(loaded.checkAssoc, 0u);
    EXPECT_EQ(loaded.openIn.View(), u"\\My Documents\\Chess");
    EXPECT_EQ(Names(loaded.recentPlayers), u"Kasparov, Gary");

    // With no folder stored, saving leaves the one already in the store.
    loaded.SetOpenIn(nullptr);
    EXPECT_TRUE(loaded.Save(store));
    Settings again;
    again.Load(store);
    EXPECT_EQ(again.openIn.View(), u"\\My Documents\\Chess");
}

TEST(Settings, RecentListsLoadUpToTheirCapacityAndKeepTheNewestLast) {
    MemorySettingsStore store;
    RegistryKey files(store);
    ASSERT_TRUE(
        files.Open(StoreRoot::CurrentUser, std::u16string(Settings::kKeyPath) + u"\\Files", true));
    for (char16_t i = u'0'; i <= u'7'; ++i)
        files.SetString(std::u16string(1, i), std::u16string(u"game") + i + u".pgn");
    Settings settings;
    settings.Load(store);
    EXPECT_EQ(Names(settings.recentFiles), u"game0.pgn,game1.pgn,game2.pgn,game3.pgn,game4.pgn");

    settings.recentFiles.Add(u"GAME2.pgn");  // case matters: a new name, and the oldest goes
    EXPECT_EQ(Names(settings.recentFiles), u"game1.pgn,game2.pgn,game3.pgn,game4.pgn,GAME2.pgn");
}

const std::u16string kPath = u"C:\\Program Files\\Velmora\\Velmora20.exe";

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

TEST(FileAssociation, CheckWritesOnYesAndAsksAgainAfterNo) {
    MemorySettingsStore store;
    Asker yes{kAnswerYes}, no{kAnswerNo};
    CheckAssociation(store, 1, kPath, no.Question());
    CheckAssociation(store, 1, kPath, no.Question());
    EXPECT_EQ(no.asked, 2);  // the next start asks again
    EXPECT_FALSE(store.KeyExists(StoreRoot::ClassesRoot, u".pgn"));

    CheckAssociation(store, 1, kPath, yes.Question());
    EXPECT_EQ(yes.asked, 1);
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
}

}  // namespace
}  // namespace velmora
