// The user's settings and recent-name lists over a store in memory.
#include <gtest/gtest.h>

#include "models/Settings.h"

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

TEST(Settings, FirstRunKeepsTheDefaultsAndSavedValuesComeBack) {
    MemorySettingsStore store;
    Settings saved;
    EXPECT_FALSE(saved.Load(store));
    EXPECT_EQ(saved.checkAssoc, 1u);
    EXPECT_TRUE(saved.openIn.IsNull());

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

    // A list stops at the first missing number.
    RegistryKey players(store);
    ASSERT_TRUE(players.Open(StoreRoot::CurrentUser,
                             std::u16string(Settings::kKeyPath) + u"\\Players", true));
    players.SetString(u"0", u"Anand");
    players.SetString(u"2", u"Carlsen");
    settings.Load(store);
    EXPECT_EQ(Names(settings.recentPlayers), u"Anand");
}

}  // namespace
}  // namespace velmora
