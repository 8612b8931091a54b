// The stores behind RegistryKey, held to the same checks: the store in memory everywhere, and on
// Windows the registry beside it: keys, dwords, strings, sizes, binary values, enumeration and
// deletion.
#include <gtest/gtest.h>

#include <set>
#include <string>

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
    EXPECT_EQ(read.ValueSize(u"Empty"), 2);
    EXPECT_EQ(read.ValueSize(u"Missing"), -1);
    EXPECT_FALSE(this->store_.KeyExists(StoreRoot::CurrentUser, kBase + u"\\Missing"));
}

// Binary values, enumeration that moves its index only on success, and deleting values and
// whole trees. Orders differ between stores, so names are compared as sets.
TYPED_TEST(StoreAgreement, BinaryValuesEnumerationAndDeletion) {
    RegistryKey key(this->store_);
    ASSERT_TRUE(key.Open(StoreRoot::CurrentUser, kBase + u"\\Tree", true));
    const unsigned char bytes[5] = {0, 1, 0x80, 0xFF, 7};
    EXPECT_TRUE(key.SetBinary(u"Blob", bytes, sizeof bytes));
    EXPECT_TRUE(key.SetDword(u"Count", 3));
    unsigned char back[8] = {};
    std::uint32_t size = 4;
    EXPECT_FALSE(key.GetBinary(u"Blob", back, &size));  // does not fit
    size = sizeof back;
    ASSERT_TRUE(key.GetBinary(u"Blob", back, &size));
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(std::basic_string<unsigned char>(back, 5),
              std::basic_string<unsigned char>(bytes, 5));

    RegistryKey child(this->store_);
    ASSERT_TRUE(child.Open(key, u"A\\Deep", true));
    ASSERT_TRUE(child.Open(key, u"B", true));
    EXPECT_TRUE(child.SetString(u"x", u"y"));
    auto names = [&](bool subkeys) {
        std::set<std::u16string> found;
        int index = 0;
        std::u16string name;
        while (subkeys ? key.EnumSubkey(&index, &name) : key.EnumValue(&index, &name))
            found.insert(name);
        EXPECT_EQ(index, static_cast<int>(found.size()));  // not moved by the failing call
        return found;
    };
    EXPECT_EQ(names(false), (std::set<std::u16string>{u"Blob", u"Count"}));
    EXPECT_EQ(names(true), (std::set<std::u16string>{u"A", u"B"}));

    EXPECT_TRUE(key.DeleteValue(u"Count"));
    EXPECT_FALSE(key.Exists(u"Count"));
    EXPECT_TRUE(key.DeleteTree(u"A"));  // has a subkey of its own
    EXPECT_FALSE(this->store_.KeyExists(StoreRoot::CurrentUser, kBase + u"\\Tree\\A"));
    EXPECT_TRUE(this->store_.KeyExists(StoreRoot::CurrentUser, kBase + u"\\Tree\\B"));
    EXPECT_FALSE(key.DeleteTree(u"Missing"));
}

}  // namespace
}  // namespace velmora::platform
