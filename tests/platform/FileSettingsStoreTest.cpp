// The per-user store file of systems without a registry.
#ifndef _WIN32

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <optional>
#include <string>

#include "platform/SettingsStore.h"
#include "tests/TestFiles.h"

namespace velmora::platform {
namespace {

using test::ReadBytes;

bool Exists(const std::u16string& path) {
    return std::filesystem::exists(std::filesystem::path(path));
}

TEST(FileSettingsStore, ValuesSurviveANewStoreOnTheSameFile) {
    test::TempFolder temp;
    const std::u16string file = temp.Path("config/velmora/registry");  // folders missing
    {
        FileSettingsStore store(file);
        RegistryKey key(store);
        ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, u"Software\\Trelvik\\Velmora", true));
        EXPECT_TRUE(key.SetDword(u"Layout", 4));
        EXPECT_TRUE(key.SetString(u"Open in", u"/home/anna/Parties d'\u00E9checs"));
        EXPECT_TRUE(key.SetDword(u"Gone", 1));
        EXPECT_TRUE(key.DeleteValue(u"Gone"));
        EXPECT_TRUE(Exists(file));
        EXPECT_FALSE(Exists(file + u".tmp"));  // renamed over the file each time
        const std::string text = ReadBytes(file);
        EXPECT_NE(text.find("\"Layout\"=dword:00000004\n"), std::string::npos) << text;
        EXPECT_EQ(text.find("Gone"), std::string::npos) << text;
    }
    FileSettingsStore reopened(file);
    RegistryKey key(reopened);
    ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, u"Software\\Trelvik\\Velmora", false));
    std::uint32_t layout = 0;
    EXPECT_TRUE(key.GetDword(u"Layout", &layout));
    EXPECT_EQ(layout, 4u);
    char16_t text[64] = {};
    EXPECT_TRUE(key.GetString(u"Open in", text, sizeof text));
    EXPECT_EQ(std::u16string(text), u"/home/anna/Parties d'\u00E9checs");
    EXPECT_FALSE(key.Exists(u"Gone"));

    // Deleting a key is written too.
    RegistryKey software(reopened);
    ASSERT_TRUE(software.Open(StoreRoot::CurrentUser, u"Software", false));
    EXPECT_TRUE(software.DeleteTree(u"Trelvik"));
    FileSettingsStore third(file);
    EXPECT_TRUE(third.KeyExists(StoreRoot::CurrentUser, u"Software"));
    EXPECT_FALSE(third.KeyExists(StoreRoot::CurrentUser, u"Software\\Trelvik"));
}

TEST(FileSettingsStore, AMalformedFileIsKeptAside) {
    test::TempFolder temp;
    const std::u16string file = temp.Path("registry");
    const std::string broken = "[HKEY_CURRENT_USER\\Software]\n\"Layout\"=dword:4\n";
    test::WriteBytes(file, broken);
    FileSettingsStore store(file);
    EXPECT_FALSE(store.KeyExists(StoreRoot::CurrentUser, u"Software"));  // starts empty
    EXPECT_EQ(ReadBytes(file + u".bad"), broken);
    EXPECT_FALSE(Exists(file));
    ASSERT_TRUE(store.CreateKey(StoreRoot::CurrentUser, u"Software\\Trelvik"));
    EXPECT_TRUE(Exists(file));
    EXPECT_EQ(ReadBytes(file + u".bad"), broken);
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
        {"/x/cfg", "/home/anna", u"/x/cfg/velmora/registry"},
        {nullptr, "/home/anna", u"/home/anna/.config/velmora/registry"},
        {"", "/home/anna", u"/home/anna/.config/velmora/registry"},
        {"relative/cfg", "/home/anna", u"/home/anna/.config/velmora/registry"},
        {"/x/cfg", nullptr, u"/x/cfg/velmora/registry"},
        {nullptr, nullptr, u""},
        {nullptr, "", u""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(SettingsFilePath(c.xdg, c.home), c.path)
            << (c.xdg ? c.xdg : "(null)") << " " << (c.home ? c.home : "(null)");
    }
}

// Sets an environment variable for one scope and puts the old value back.
class ScopedEnvironment {
  public:
    ScopedEnvironment(const char* name, const char* value) : name_(name) {
        if (const char* old = getenv(name)) old_ = old;
        setenv(name, value, 1);
    }
    ~ScopedEnvironment() {
        if (old_) {
            setenv(name_, old_->c_str(), 1);
        } else {
            unsetenv(name_);
        }
    }

  private:
    const char* name_;
    std::optional<std::string> old_;
};

TEST(FileSettingsStore, TheSystemStoreIsTheDefaultFileUnlessReplaced) {
    test::TempFolder temp;
    // The only test that reaches the system store: it is made here, in the temporary folder,
    // and never in the real configuration folder of whoever runs the tests.
    ScopedEnvironment xdg("XDG_CONFIG_HOME", temp.dir.c_str());
    EXPECT_EQ(DefaultSettingsFilePath(), temp.Path("velmora/registry"));
    auto* system = dynamic_cast<FileSettingsStore*>(&SystemSettingsStore());
    ASSERT_NE(system, nullptr);
    EXPECT_EQ(system->FilePath(), DefaultSettingsFilePath());

    MemorySettingsStore replacement;
    SetSystemSettingsStore(&replacement);
    EXPECT_EQ(&SystemSettingsStore(), &replacement);
    SetSystemSettingsStore(nullptr);
    EXPECT_EQ(&SystemSettingsStore(), system);
}

}  // namespace
}  // namespace velmora::platform

#endif  // _WIN32
