// The settings store in memory, its text form, and keys opened on it.
#include <gtest/gtest.h>

#include "platform/SettingsStore.h"

namespace velmora::platform {
namespace {

// Keys, values and names are checked through RegistryKey in the store agreement tests; here
// only what the text form must carry over: both roots, subkeys, default values, quotes, line
// breaks and letters beyond ASCII.
TEST(SettingsStore, EverythingSurvivesTheTextForm) {
    MemorySettingsStore store;
    RegistryKey key(store);
    ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, u"Software\\Trelvik\\Velmora", true));
    EXPECT_TRUE(key.SetDword(u"Layout", 4));
    EXPECT_TRUE(key.SetString(u"Open in", u"\\My Documents \"Games\"\nline"));
    EXPECT_TRUE(key.SetDefaultString(u"Velmora.Document"));
    RegistryKey files(store);
    ASSERT_TRUE(files.Open(key, u"Files", true));
    EXPECT_TRUE(files.SetString(u"0", u"caf\u00E9.pgn"));
    ASSERT_TRUE(key.Open(StoreRoot::ClassesRoot, u".pgn", true));
    EXPECT_TRUE(key.SetString(u"", u"pgnfile"));

    MemorySettingsStore copy;
    ASSERT_TRUE(copy.FromText(store.ToText()));
    EXPECT_EQ(copy.ToText(), store.ToText());
    RegistryKey read(copy);
    ASSERT_TRUE(read.Open(StoreRoot::CurrentUser, u"Software\\Trelvik\\Velmora", false));
    std::uint32_t layout = 0;
    EXPECT_TRUE(read.GetDword(u"Layout", &layout));
    EXPECT_EQ(layout, 4u);
    char16_t text[64];
    EXPECT_TRUE(read.GetString(u"Open in", text, sizeof text));
    EXPECT_EQ(std::u16string(text), u"\\My Documents \"Games\"\nline");
    EXPECT_TRUE(read.GetDefaultString(text, sizeof text));
    EXPECT_EQ(std::u16string(text), u"Velmora.Document");
    RegistryKey list(copy);
    ASSERT_TRUE(list.Open(read, u"Files", false));
    EXPECT_TRUE(list.GetString(u"0", text, sizeof text));
    EXPECT_EQ(std::u16string(text), u"caf\u00E9.pgn");
    ASSERT_TRUE(read.Open(StoreRoot::ClassesRoot, u".pgn", false));
    EXPECT_TRUE(read.GetDefaultString(text, sizeof text));
    EXPECT_EQ(std::u16string(text), u"pgnfile");
}

TEST(SettingsStore, TextThatCannotBeReadLeavesAnEmptyStore) {
    for (const char* text : {"\"Layout\"=dword:1\n",  // a value before any key
                             "[HKEY_LOCAL_MACHINE\\Software]\n", "[HKEY_CURRENT_USER\\A]\nx=1\n",
                             "[HKEY_CURRENT_USER\\A]\n\"v\"=dword:0000001\n",
                             "[HKEY_CURRENT_USER\\A]\n\"v\"=hex(3):0g\n"}) {
        MemorySettingsStore store;
        EXPECT_FALSE(store.FromText(text)) << text;
        EXPECT_FALSE(store.KeyExists(StoreRoot::CurrentUser, u"A")) << text;
    }
    MemorySettingsStore store;
    ASSERT_TRUE(store.FromText("[HKEY_CURRENT_USER\\A]\r\n\"b\"=hex(3):01,ff\r\n@=\"x\"\r\n"));
    std::uint8_t bytes[4];
    std::uint32_t size = 0;
    ValueType type{};
    EXPECT_EQ(store.ReadValue(StoreRoot::CurrentUser, u"A", u"b", &type, bytes, 4, &size),
              kStoreOk);
    EXPECT_EQ(type, ValueType::Binary);
    EXPECT_EQ(size, 2u);
    EXPECT_EQ(bytes[1], 0xFF);
}

}  // namespace
}  // namespace velmora::platform
