// The tag dictionary: names as the line reader cuts them, and a missing file.
#include <gtest/gtest.h>

#include "game/TagDictionary.h"
#include "tests/PgnTestSupport.h"

namespace velmora {
namespace {

// Names keep the file's order, without blank lines or trimming; a missing file is reported and
// leaves the dictionary empty.
TEST(TagDictionary, NamesAsTheLineReaderCutsThemOrAMissingFile) {
    test::TempFolder folder;
    test::RecordedMessages messages;
    TagDictionary dictionary;
    dictionary.LoadFrom(folder.Path("PgnTags.txt"), platform::SystemFileSystem());
    EXPECT_EQ(dictionary.Count(), 0);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].first, u"Unable to load headers' dictionary");
    EXPECT_EQ(messages.kinds[0].first, MessageIcon::Error);

    // The long line is cut at its last blank.
    test::WriteBytes(folder.Path("PgnTags.txt"), "Event\r\n\r\n\r\nWhite Elo \n" +
                                                     std::string(200, 'a') + " " +
                                                     std::string(100, 'b') + "\n");
    dictionary.LoadFrom(folder.Path("PgnTags.txt"), platform::SystemFileSystem());
    ASSERT_EQ(dictionary.Count(), 4);
    EXPECT_EQ(std::u16string(dictionary.Get(1)), u"White Elo ");
    EXPECT_EQ(std::u16string(dictionary.Get(2)), std::u16string(200, u'a'));
    EXPECT_EQ(std::u16string(dictionary.Get(3)), u" " + std::u16string(100, u'b'));
    EXPECT_TRUE(dictionary.Get(-1) == nullptr && dictionary.Get(4) == nullptr);
}

}  // namespace
}  // namespace velmora
