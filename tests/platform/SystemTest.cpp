// The program's folder and the texts of system error codes.
#include <gtest/gtest.h>

#include <string>

#include "platform/CodePage.h"
#include "platform/File.h"
#include "platform/Paths.h"
#include "platform/SystemError.h"
#include "support/TempFolder.h"

namespace velmora::platform {
namespace {

TEST(Paths, ProgramFolderHoldsThisTestProgram) {
    const std::u16string folder = ProgramFolder();
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(folder.back(), PathSeparator());
    EXPECT_TRUE(SystemFileSystem().Exists(folder + Utf8ToWide(VELMORA_TEST_PROGRAM_NAME)));
    EXPECT_FALSE(SystemFileSystem().Exists(folder + u"no-such-program"));
}

TEST(SystemError, AFailedOpenHasASystemText) {
    test::TempFolder folder;
    ErrorCode error = 0;
    EXPECT_EQ(SystemFileSystem().Open(folder.File(u"missing.pgn"), OpenMode::ReadShared, &error),
              nullptr);
    ASSERT_NE(error, 0u);
    const std::u16string text = SystemErrorText(error);
    EXPECT_FALSE(text.empty());
    EXPECT_EQ(ErrorTextOrCode(error), text);
}

TEST(SystemError, UnknownCodesFallBackToTheNumber) {
    const struct {
        ErrorCode code;
        std::u16string text;
    } cases[] = {
        {0x2FFFFFFF, u"Err 0x2FFFFFFF"},
        {0x00ABCDEF, u"Err 0x00ABCDEF"},
        {0xFFFFFFFF, u"Err 0xFFFFFFFF"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SystemErrorText(c.code), u"");
        EXPECT_EQ(ErrorTextOrCode(c.code), c.text);
    }
}

}  // namespace
}  // namespace velmora::platform
