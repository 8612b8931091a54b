// The program's folder and the texts of system error codes.
#include <gtest/gtest.h>

#include <string>

#include "platform/CodePage.h"
#include "platform/File.h"
#include "platform/Paths.h"
#include "platform/SystemError.h"

namespace velmora::platform {
namespace {

TEST(Paths, ProgramFolderEndsWithTheSeparatorAndHoldsThisProgram) {
    const std::u16string folder = ProgramFolder();
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(folder.back(), PathSeparator());
    EXPECT_TRUE(SystemFileSystem().Exists(folder + Utf8ToWide(VELMORA_TEST_PROGRAM_NAME)));
}

TEST(SystemError, SystemTextOrElseTheCode) {
    ErrorCode notFound = 0;
    SystemFileSystem().Open(ProgramFolder() + u"missing.pgn", OpenMode::ReadShared, &notFound);
    ASSERT_NE(notFound, 0u);
    EXPECT_NE(SystemErrorText(notFound), u"");
    EXPECT_EQ(ErrorTextOrCode(notFound), SystemErrorText(notFound));

    // Codes without a text; the number keeps its leading zeros and stays unsigned.
    EXPECT_EQ(ErrorTextOrCode(0x00ABCDEF), u"Err 0x00ABCDEF");
    EXPECT_EQ(ErrorTextOrCode(0xFFFFFFFF), u"Err 0xFFFFFFFF");
}

}  // namespace
}  // namespace velmora::platform
