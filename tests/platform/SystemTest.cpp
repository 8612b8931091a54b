// The program's folder and the texts of system error codes.
#include <gtest/gtest.h>

#include <string>
#include <utility>

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
    const std::pair<ErrorCode, std::u16string> unknown[] = {{0x00ABCDEF, u"Err 0x00ABCDEF"},
                                                            {0xFFFFFFFF, u"Err 0xFFFFFFFF"}};
    for (const auto& [code, text] : unknown) {
        EXPECT_EQ(SystemErrorText(code), u"");
        EXPECT_EQ(ErrorTextOrCode(code), text);
    }
}

}  // namespace
}  // namespace velmora::platform
