// The stores behind RegistryKey, held to the same checks: the store in memory everywhere, and on
// Windows the registry beside it.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/SettingsStore.h"

namespace velmora::platform {
namespace {

// Scratch key under the current user; removed before and after each test.
const std::u16string kBase = u"Software\\VelmoraTest";

template <typename Store>
class StoreAgreement : public testing::Test {
  protected:
    void SetUp() override { store_.DeleteKey(StoreRoot::CurrentUser, kBase); }
    void TearDown() override {
        store_.DeleteKey(StoreRoot::CurrentUser, kBase);
        EXPECT_FALSE(store_.KeyExists(StoreRoot::CurrentUser, kBase));
    }

    // The names a key enumerates until the end, sorted: the registry has its own order. Each
    // step must move the index on by one.
    std::vector<std::u16string> Names(const std::u16string& path, bool subkeys) {
        std::vector<std::u16string> names;
        RegistryKey key(store_);
        if (!key.Open(StoreRoot::CurrentUser, path, false)) return {u"<no key>"};
        std::u16string name;
        for (int index = 0;;) {
            const int before = index;
            if (!(subkeys ? key.EnumSubkey(&index, &name) : key.EnumValue(&index, &name))) {
                EXPECT_EQ(index, before) << "a failed step moved the index";
                break;
            }
            EXPECT_EQ(index, before + 1);
            names.push_back(name);
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    Store store_;
};

#ifdef _WIN32
using Stores = testing::Types<MemorySettingsStore, RegistrySettingsStore>;
#else
using Stores = testing::Types<MemorySettingsStore>;
#endif
TYPED_TEST_SUITE(StoreAgreement, Stores);

TYPED_TEST(StoreAgreement, ValuesRoundTripAndReportTheirSize) {
    RegistryKey key(this->store_);
    EXPECT_FALSE(key.Open(StoreRoot::CurrentUser, kBase + u"\\Velmora", false));
    EXPECT_FALSE(key.SetDword(u"Layout", 1));
    ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, kBase + u"\\Velmora", true));
    EXPECT_TRUE(key.SetDword(u"Layout", 0x00FF80FF));
    EXPECT_TRUE(key.SetString(u"Open in", u"\\My Documents\\caf\u00E9"));
    EXPECT_TRUE(key.SetDefaultString(u"pgnfile"));
    EXPECT_TRUE(key.SetString(u"Empty", u""));

    RegistryKey read(this->store_);
    ASSERT_TRUE(read.Open(StoreRoot::CurrentUser, u"SOFTWARE\\velmoratest\\VELMORA", false));
    std::uint32_t dword = 0;
    EXPECT_TRUE(read.GetDword(u"layout", &dword));
    EXPECT_EQ(dword, 0x00FF80FFu);
    char16_t text[32] = {};
    EXPECT_TRUE(read.GetString(u"Open in", text, sizeof text));
    EXPECT_EQ(std::u16string(text), u"\\My Documents\\caf\u00E9");
    EXPECT_TRUE(read.GetDefaultString(text, sizeof text));
    EXPECT_EQ(std::u16string(text), u"pgnfile");
    EXPECT_FALSE(read.GetString(u"Open in", text, 2 * 19 - 1));  // one byte short
    EXPECT_FALSE(read.GetDword(u"Open in", &dword));             // longer than a DWORD

    // Sizes come from a probe with a one-byte buffer: only what does not fit reports one.
    EXPECT_EQ(read.ValueSize(u"Open in"), 2 * 19);
    EXPECT_EQ(read.ValueSize(u"Layout"), 4);
    EXPECT_EQ(read.ValueSize(u"Empty"), 2);
    EXPECT_EQ(read.ValueSize(u"Missing"), -1);
    EXPECT_TRUE(read.Exists(u"Empty"));
    EXPECT_FALSE(read.Exists(u"Missing"));

    // Binary values, through the key and through the store: type and size with and without a
    // buffer.
    std::uint8_t bytes[3] = {1, 2, 0xFF};
    EXPECT_TRUE(key.SetBinary(u"Bin", bytes, 3));
    std::uint8_t fromKey[4] = {};
    std::uint32_t keySize = 2;
    EXPECT_FALSE(read.GetBinary(u"Bin", fromKey, &keySize));
    keySize = 4;
    EXPECT_TRUE(read.GetBinary(u"bin", fromKey, &keySize));
    EXPECT_EQ(keySize, 3u);
    EXPECT_EQ(fromKey[2], 0xFF);
    ValueType type{};
    std::uint32_t size = 0;
    std::uint8_t back[3] = {};
    auto readValue = [&](const std::u16string& key, const char16_t* name, std::uint32_t capacity) {
        return this->store_.ReadValue(StoreRoot::CurrentUser, kBase + key, name, &type,
                                      capacity ? back : nullptr, capacity, &size);
    };
    EXPECT_EQ(readValue(u"\\Velmora", u"bin", 0), kStoreOk);
    EXPECT_EQ(type, ValueType::Binary);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(readValue(u"\\Velmora", u"Bin", 2), kStoreMoreData);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(readValue(u"\\Velmora", u"Bin", 3), kStoreOk);
    EXPECT_EQ(back[2], 0xFF);
    EXPECT_EQ(readValue(u"\\Missing", u"Bin", 3), kStoreNotFound);
    EXPECT_FALSE(this->store_.WriteValue(StoreRoot::CurrentUser, kBase + u"\\Missing", u"Bin",
                                         ValueType::Binary, bytes, 3));

    // A dword written over a string changes the value's type.
    EXPECT_TRUE(key.SetDword(u"Open in", 7));
    EXPECT_TRUE(read.GetDword(u"Open in", &dword));
    EXPECT_EQ(dword, 7u);
    EXPECT_TRUE(read.DeleteValue(u"OPEN IN"));
    EXPECT_FALSE(read.Exists(u"Open in"));
    EXPECT_FALSE(read.DeleteValue(u"Open in"));
}

TYPED_TEST(StoreAgreement, NamesAreEnumeratedToTheEnd) {
    RegistryKey key(this->store_);
    ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, kBase + u"\\List", true));
    for (const char16_t* name : {u"2", u"0", u"1"})
        key.SetString(name, u"x");
    RegistryKey child(this->store_);
    for (const char16_t* name : {u"players", u"events", u"files"})
        ASSERT_TRUE(child.Open(key, name, true));
    EXPECT_EQ(this->Names(kBase + u"\\List", false),
              (std::vector<std::u16string>{u"0", u"1", u"2"}));
    EXPECT_EQ(this->Names(kBase + u"\\List", true),
              (std::vector<std::u16string>{u"events", u"files", u"players"}));
    EXPECT_EQ(this->Names(kBase + u"\\List\\files", true), std::vector<std::u16string>{});
    std::u16string name;
    EXPECT_EQ(this->store_.ValueNameAt(StoreRoot::CurrentUser, kBase + u"\\List", -1, &name),
              kStoreNoMoreItems);
    EXPECT_EQ(this->store_.SubkeyNameAt(StoreRoot::CurrentUser, kBase + u"\\None", 0, &name),
              kStoreNotFound);

    // A key opened below the root's own (empty) path reaches the same key.
    RegistryKey root(this->store_);
    ASSERT_TRUE(root.Open(StoreRoot::CurrentUser, u"", false));
    EXPECT_TRUE(child.Open(root, kBase + u"\\List", false));
    EXPECT_TRUE(child.Exists(u"1"));
}

TYPED_TEST(StoreAgreement, DeleteTreeRemovesEverythingBelow) {
    RegistryKey key(this->store_);
    ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, kBase + u"\\Tree\\a\\b\\c", true));
    key.SetDword(u"deep", 1);
    ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, kBase + u"\\Tree\\a2", true));
    key.SetString(u"", u"side");
    ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, kBase + u"\\Kept", true));

    RegistryKey base(this->store_);
    ASSERT_TRUE(base.Open(StoreRoot::CurrentUser, kBase, false));
    EXPECT_TRUE(base.DeleteTree(u"TREE"));
    EXPECT_FALSE(this->store_.KeyExists(StoreRoot::CurrentUser, kBase + u"\\Tree"));
    EXPECT_TRUE(this->store_.KeyExists(StoreRoot::CurrentUser, kBase + u"\\Kept"));
    EXPECT_FALSE(base.DeleteTree(u"Tree"));                             // already gone
    EXPECT_FALSE(this->store_.DeleteKey(StoreRoot::CurrentUser, u""));  // never a root
    EXPECT_TRUE(this->store_.KeyExists(StoreRoot::CurrentUser, u"Software"));
}

}  // namespace
}  // namespace velmora::platform
