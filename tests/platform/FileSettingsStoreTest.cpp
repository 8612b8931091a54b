// The per-user store file of systems without a registry, and its text form.
#ifndef _WIN32

#include <gtest/gtest.h>
#include <stdlib.h>

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

// Both roots, subkeys, default values, quotes, line breaks and letters beyond ASCII must come
// back from the file as they were written.
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
        ASSERT_TRUE(key.Open(StoreRoot::ClassesRoot, u".pgn", true));
        EXPECT_TRUE(key.SetDefaultString(u"pgnfile"));
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
    ASSERT_TRUE(key.Open(StoreRoot::ClassesRoot, u".pgn", false));
    EXPECT_EQ(StringValue(key, u""), u"pgnfile");
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
    // Line ends of a file edited on Windows, binary values and "@" for the default name are read.
    test::TempFolder temp;
    test::WriteBytes(temp.Path("registry"),
                     "[HKEY_CURRENT_USER\\A]\r\n\"b\"=hex(3):01,ff\r\n@=\"x\"\r\n");
    FileSettingsStore store(temp.Path("registry"));
    RegistryKey key(store);
    ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, u"A", false));
    EXPECT_EQ(key.ValueSize(u"b"), 2);
    EXPECT_EQ(StringValue(key, u""), u"x");
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

TEST(FileSettingsStore, PathFromTheEnvironment) {
    struct Case {
        const char* xdg;
        const char* home;
        std::u16string path;
    };
    const Case cases[] = {
        {nullptr, "/home/anna", u"/home/anna/.config/velmora/registry"},
        {"relative/cfg", "/home/anna", u"/home/anna/.config/velmora/registry"},
        {"/x/cfg", nullptr, u"/x/cfg/velmora/registry"},
        {nullptr, "", u""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(SettingsFilePath(c.xdg, c.home), c.path)
            << (c.xdg ? c.xdg : "(null)") << " " << (c.home ? c.home : "(null)");
    }
}

TEST(FileSettingsStore, TheSystemStoreIsTheFileNamedByTheEnvironment) {
    test::TempFolder temp;
    // The only test that reaches the system store: it is made here, in the temporary folder,
    // and never in the real configuration folder of whoever runs the tests.
    const char* old = getenv("XDG_CONFIG_HOME");
    const std::string saved = old != nullptr ? old : "";
    setenv("XDG_CONFIG_HOME", temp.dir.c_str(), 1);
    auto* system = dynamic_cast<FileSettingsStore*>(&SystemSettingsStore());
    EXPECT_EQ(system != nullptr ? system->FilePath() : u"<not a file>",
              temp.Path("velmora/registry"));
    old != nullptr ? setenv("XDG_CONFIG_HOME", saved.c_str(), 1) : unsetenv("XDG_CONFIG_HOME");
}

}  // namespace
}  // namespace velmora::platform

#endif  // _WIN32
