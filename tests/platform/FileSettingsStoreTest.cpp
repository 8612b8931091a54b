// The per-user store file of systems without a registry.
#ifndef _WIN32

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

#include "platform/CodePage.h"
#include "platform/SettingsStore.h"

namespace velmora::platform {
namespace {

namespace fs = std::filesystem;

// A fresh folder under the system's temporary folder, removed with everything in it.
class TempFolder {
  public:
    TempFolder() {
        std::string pattern = (fs::temp_directory_path() / "velmora-store-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TempFolder() { fs::remove_all(path_); }
    const fs::path& Path() const { return path_; }

  private:
    fs::path path_;
};

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void WriteFile(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

std::u16string Wide(const fs::path& path) {
    return Utf8ToWide(path.string());
}

TEST(FileSettingsStore, ValuesSurviveANewStoreOnTheSameFile) {
    TempFolder temp;
    const fs::path file = temp.Path() / "config" / "velmora" / "registry";  // folders missing
    {
        FileSettingsStore store(Wide(file));
        RegistryKey key(store);
        ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, u"Software\\Trelvik\\Velmora", true));
        EXPECT_TRUE(key.SetDword(u"Layout", 4));
        EXPECT_TRUE(key.SetString(u"Open in", u"/home/anna/Parties d'\u00E9checs"));
        EXPECT_TRUE(key.SetDword(u"Gone", 1));
        EXPECT_TRUE(key.DeleteValue(u"Gone"));
        RegistryKey classes(store);
        ASSERT_TRUE(classes.Open(StoreRoot::ClassesRoot, u".pgn", true));
        EXPECT_TRUE(classes.SetDefaultString(u"pgnfile"));
        EXPECT_TRUE(fs::exists(file));
        EXPECT_FALSE(fs::exists(file.string() + ".tmp"));  // renamed over the file each time
        const std::string text = ReadFile(file);
        EXPECT_NE(text.find("\"Layout\"=dword:00000004\n"), std::string::npos) << text;
        EXPECT_EQ(text.find("Gone"), std::string::npos) << text;
    }
    FileSettingsStore reopened(Wide(file));
    RegistryKey key(reopened);
    ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, u"Software\\Trelvik\\Velmora", false));
    std::uint32_t layout = 0;
    EXPECT_TRUE(key.GetDword(u"Layout", &layout));
    EXPECT_EQ(layout, 4u);
    char16_t text[64] = {};
    EXPECT_TRUE(key.GetString(u"Open in", text, sizeof text));
    EXPECT_EQ(std::u16string(text), u"/home/anna/Parties d'\u00E9checs");
    EXPECT_FALSE(key.Exists(u"Gone"));
    EXPECT_TRUE(key.Open(StoreRoot::ClassesRoot, u".pgn", false));
    EXPECT_TRUE(key.GetDefaultString(text, sizeof text));
    EXPECT_EQ(std::u16string(text), u"pgnfile");

    // Deleting a key is written too.
    RegistryKey software(reopened);
    ASSERT_TRUE(software.Open(StoreRoot::CurrentUser, u"Software", false));
    EXPECT_TRUE(software.DeleteTree(u"Trelvik"));
    FileSettingsStore third(Wide(file));
    EXPECT_TRUE(third.KeyExists(StoreRoot::CurrentUser, u"Software"));
    EXPECT_FALSE(third.KeyExists(StoreRoot::CurrentUser, u"Software\\Trelvik"));
}

TEST(FileSettingsStore, AMalformedFileIsKeptAside) {
    TempFolder temp;
    const fs::path file = temp.Path() / "registry";
    const std::string broken = "[HKEY_CURRENT_USER\\Software]\n\"Layout\"=dword:4\n";
    WriteFile(file, broken);
    FileSettingsStore store(Wide(file));
    EXPECT_FALSE(store.KeyExists(StoreRoot::CurrentUser, u"Software"));  // starts empty
    EXPECT_EQ(ReadFile(file.string() + ".bad"), broken);
    EXPECT_FALSE(fs::exists(file));
    ASSERT_TRUE(store.CreateKey(StoreRoot::CurrentUser, u"Software\\Trelvik"));
    EXPECT_TRUE(fs::exists(file));
    EXPECT_EQ(ReadFile(file.string() + ".bad"), broken);
}

TEST(FileSettingsStore, AFileThatCannotBeKeptAsideIsNeverOverwritten) {
    TempFolder temp;
    const fs::path file = temp.Path() / "registry";
    const std::string broken = "not a registry file\n";
    WriteFile(file, broken);
    fs::create_directories(file.string() + ".bad/occupied");  // the rename cannot replace it
    FileSettingsStore store(Wide(file));
    EXPECT_FALSE(store.CreateKey(StoreRoot::CurrentUser, u"Software"));
    EXPECT_TRUE(store.KeyExists(StoreRoot::CurrentUser, u"Software"));  // held in memory
    EXPECT_EQ(ReadFile(file), broken);
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
    TempFolder temp;
    // The only test that reaches the system store: it is made here, in the temporary folder,
    // and never in the real configuration folder of whoever runs the tests.
    ScopedEnvironment xdg("XDG_CONFIG_HOME", temp.Path().c_str());
    EXPECT_EQ(DefaultSettingsFilePath(), Wide(temp.Path() / "velmora" / "registry"));
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
