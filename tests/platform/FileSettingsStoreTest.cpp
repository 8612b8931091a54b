// The per-user store file of systems without a registry, and its text form.
#ifndef _WIN32

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/SettingsStore.h"
#include "tests/TestFiles.h"

namespace velmora::platform {
namespace {

using test::ReadBytes;

bool Exists(const std::u16string& path) {
    return std::filesystem::exists(std::filesystem::path(path));
}

std::u16string StringValue(const RegistryKey& key, const std::u16string& name) {
    char16_t text[64] = {};
    return key.GetString(name, text, sizeof text) ? text : u"<missing>";
}

// Subkeys, default values, quotes, line breaks and letters beyond ASCII must come back from the
// file as they were written.
TEST(FileSettingsStore, ValuesSurviveANewStoreOnTheSameFile) {
    test::TempFolder temp;
    const std::u16string file = temp.Path("config/velmora/registry");  // folders missing
    const std::u16string folder = u"/home/anna/Parties d'\u00E9checs \"club\"\nline";
    {
        FileSettingsStore store(file);
        RegistryKey key(store);
        ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, u"Software\\Trelvik\\Velmora", true));
        EXPECT_TRUE(key.SetDword(u"Layout", 4));
        EXPECT_TRUE(key.SetString(u"Open in", folder));
        EXPECT_TRUE(key.SetDefaultString(u"Velmora.Document"));
        RegistryKey files(store);
        ASSERT_TRUE(files.Open(key, u"Files", true));
        EXPECT_TRUE(files.SetString(u"0", u"caf\u00E9.pgn"));
        EXPECT_FALSE(Exists(file + u".tmp"));  // renamed over the file each time
        const std::string text = ReadBytes(file);
        EXPECT_NE(text.find("\"Layout\"=dword:00000004\n"), std::string::npos) << text;
    }
    FileSettingsStore reopened(file);
    RegistryKey key(reopened);
    ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, u"Software\\Trelvik\\Velmora", false));
    std::uint32_t layout = 0;
    EXPECT_TRUE(key.GetDword(u"Layout", &layout));
    EXPECT_EQ(layout, 4u);
    EXPECT_EQ(StringValue(key, u"Open in"), folder);
    EXPECT_EQ(StringValue(key, u""), u"Velmora.Document");
    RegistryKey files(reopened);
    ASSERT_TRUE(files.Open(key, u"Files", false));
    EXPECT_EQ(StringValue(files, u"0"), u"caf\u00E9.pgn");
}

TEST(FileSettingsStore, AFileThatCannotBeReadIsKeptAsideAndTheStoreStartsEmpty) {
    for (const char* broken : {"[HKEY_CURRENT_USER\\A]\n\"Layout\"=dword:4\n",
                               "\"Layout\"=dword:00000001\n",  // a value before any key
                               "[HKEY_LOCAL_MACHINE\\A]\n"}) {
        SCOPED_TRACE(broken);
        test::TempFolder temp;
        const std::u16string file = temp.Path("registry");
        test::WriteBytes(file, broken);
        FileSettingsStore store(file);
        EXPECT_FALSE(store.KeyExists(StoreRoot::CurrentUser, u"A"));
        ASSERT_TRUE(store.CreateKey(StoreRoot::CurrentUser, u"Software\\Trelvik"));
        EXPECT_TRUE(Exists(file));
        EXPECT_EQ(ReadBytes(file + u".bad"), broken);
    }
}

TEST(FileSettingsStore, AFileThatCannotBeKeptAsideIsNeverOverwritten) {
    test::TempFolder temp;
    const std::u16string file = temp.Path("registry");
    const std::string broken = "not a registry file\n";
    test::WriteBytes(file, broken);
    // A folder in the way, which the rename cannot replace.
    std::filesystem::create_directories(temp.dir / "registry.bad" / "occupied");
    FileSettingsStore store(file);
    EXPECT_FALSE(store.CreateKey(StoreRoot::CurrentUser, u"Software"));
    EXPECT_TRUE(store.KeyExists(StoreRoot::CurrentUser, u"Software"));  // held in memory
    EXPECT_EQ(ReadBytes(file), broken);
}

}  // namespace
}  // namespace velmora::platform

#endif  // _WIN32
