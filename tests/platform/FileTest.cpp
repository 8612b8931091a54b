// Files through the platform layer: open modes, sharing, positions, copy, delete and exists.
#include "platform/File.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/CodePage.h"
#include "support/TempFolder.h"
#include "support/TestData.h"

namespace velmora::platform {
namespace {

using test::TempFolder;

#ifdef _WIN32
constexpr ErrorCode kSharingConflict = 32;  // ERROR_SHARING_VIOLATION
#else
constexpr ErrorCode kSharingConflict = EWOULDBLOCK;
#endif

// Setup and checks go through the standard library, so that a fault in the layer under test
// cannot cancel itself out.
void WriteBytes(const std::u16string& path, const std::string& bytes) {
    std::ofstream out(std::filesystem::path(path), std::ios::binary | std::ios::trunc);
    out << bytes;
    ASSERT_TRUE(out.good());
}

std::string ReadBytes(const std::u16string& path) {
    std::ifstream in(std::filesystem::path(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::unique_ptr<File> OpenOk(const std::u16string& path, OpenMode mode) {
    ErrorCode error = 12345;
    std::unique_ptr<File> file = SystemFileSystem().Open(path, mode, &error);
    EXPECT_NE(file, nullptr);
    EXPECT_EQ(error, 0u);
    return file;
}

std::string ReadAll(File& file) {
    std::string bytes(4096, '\0');
    std::uint32_t count = 0;
    EXPECT_EQ(file.Read(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &count), 0u);
    bytes.resize(count);
    return bytes;
}

std::int64_t SizeOf(File& file) {
    std::int64_t size = -1;
    EXPECT_EQ(file.Size(&size), 0u);
    return size;
}

TEST(File, WriteAlwaysCreatesAMissingFile) {
    TempFolder folder;
    const std::u16string path = folder.File(u"new.pgn");
    {
        auto file = OpenOk(path, OpenMode::WriteAlways);
        ASSERT_NE(file, nullptr);
        std::uint32_t written = 0;
        EXPECT_EQ(file->Write("1. e4 e5\r\n", 10, &written), 0u);
        EXPECT_EQ(written, 10u);
    }
    EXPECT_EQ(ReadBytes(path), "1. e4 e5\r\n");
}

TEST(File, WriteAlwaysKeepsAnExistingFileAndStartsAtItsBeginning) {
    TempFolder folder;
    const std::u16string path = folder.File(u"old.pgn");
    WriteBytes(path, "abcdef");
    {
        auto file = OpenOk(path, OpenMode::WriteAlways);
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(SizeOf(*file), 6);
        EXPECT_EQ(file->Write("XY", 2, nullptr), 0u);
    }
    EXPECT_EQ(ReadBytes(path), "XYcdef");
}

TEST(File, ModesThatNeedAnExistingFileFailWithoutCreatingOne) {
    TempFolder folder;
    const std::u16string path = folder.File(u"missing.pgn");
    for (OpenMode mode :
         {OpenMode::ReadShared, OpenMode::ReadExclusive, OpenMode::ReadWriteExisting}) {
        SCOPED_TRACE(static_cast<int>(mode));
        ErrorCode error = 0;
        EXPECT_EQ(SystemFileSystem().Open(path, mode, &error), nullptr);
        EXPECT_NE(error, 0u);
        EXPECT_FALSE(SystemFileSystem().Exists(path));
    }
}

TEST(File, OnlySharedReadsCoexist) {
    const OpenMode modes[] = {OpenMode::ReadShared, OpenMode::ReadExclusive,
                              OpenMode::ReadWriteExisting, OpenMode::WriteAlways};
    TempFolder folder;
    const std::u16string path = folder.File(u"shared.pgn");
    WriteBytes(path, "data");
    for (OpenMode first : modes) {
        for (OpenMode second : modes) {
            SCOPED_TRACE(testing::Message() << "first " << static_cast<int>(first) << ", second "
                                            << static_cast<int>(second));
            auto held = OpenOk(path, first);
            ASSERT_NE(held, nullptr);
            ErrorCode error = 0;
            auto other = SystemFileSystem().Open(path, second, &error);
            if (first == OpenMode::ReadShared && second == OpenMode::ReadShared) {
                EXPECT_NE(other, nullptr);
                EXPECT_EQ(error, 0u);
            } else {
                EXPECT_EQ(other, nullptr);
                EXPECT_EQ(error, kSharingConflict);
            }
            other.reset();
            held.reset();
            // Closing releases the file for any mode.
            EXPECT_NE(OpenOk(path, second), nullptr);
        }
    }
    EXPECT_EQ(ReadBytes(path), "data");
}

TEST(File, HandlesRefuseTheDirectionTheyWereNotOpenedFor) {
    TempFolder folder;
    const std::u16string path = folder.File(u"direction.pgn");
    WriteBytes(path, "abc");
    for (OpenMode readOnly : {OpenMode::ReadShared, OpenMode::ReadExclusive}) {
        SCOPED_TRACE(static_cast<int>(readOnly));
        auto file = OpenOk(path, readOnly);
        ASSERT_NE(file, nullptr);
        std::uint32_t written = 99;
        EXPECT_NE(file->Write("x", 1, &written), 0u);
        EXPECT_EQ(written, 0u);
        EXPECT_NE(file->SetEndOfFile(), 0u);
    }
    auto writeOnly = OpenOk(path, OpenMode::WriteAlways);
    ASSERT_NE(writeOnly, nullptr);
    char byte = 0;
    EXPECT_NE(writeOnly->Read(&byte, 1, nullptr), 0u);
    writeOnly.reset();
    EXPECT_EQ(ReadBytes(path), "abc");
}

TEST(File, ReadStopsShortOnlyAtTheEnd) {
    TempFolder folder;
    const std::u16string path = folder.File(u"short.pgn");
    WriteBytes(path, "12345");
    auto file = OpenOk(path, OpenMode::ReadShared);
    ASSERT_NE(file, nullptr);
    char buffer[8] = {};
    std::uint32_t count = 0;
    EXPECT_EQ(file->Read(buffer, 3, &count), 0u);
    EXPECT_EQ(std::string(buffer, count), "123");
    EXPECT_EQ(file->Read(buffer, 8, &count), 0u);
    EXPECT_EQ(std::string(buffer, count), "45");
    EXPECT_EQ(file->Read(buffer, 8, &count), 0u);
    EXPECT_EQ(count, 0u);
}

TEST(File, SeekSizeAndSetEndOfFileShrinkAndGrow) {
    TempFolder folder;
    const std::u16string path = folder.File(u"seek.pgn");
    WriteBytes(path, "0123456789");
    auto file = OpenOk(path, OpenMode::ReadWriteExisting);
    ASSERT_NE(file, nullptr);
    std::int64_t position = -1;

    EXPECT_EQ(file->Seek(-3, SeekOrigin::End, &position), 0u);
    EXPECT_EQ(position, 7);
    EXPECT_EQ(file->Seek(-2, SeekOrigin::Current, &position), 0u);
    EXPECT_EQ(position, 5);
    EXPECT_EQ(ReadAll(*file), "56789");
    EXPECT_NE(file->Seek(-1, SeekOrigin::Begin, nullptr), 0u);

    EXPECT_EQ(file->Seek(4, SeekOrigin::Begin, &position), 0u);
    EXPECT_EQ(position, 4);
    EXPECT_EQ(file->SetEndOfFile(), 0u);
    EXPECT_EQ(SizeOf(*file), 4);
    EXPECT_EQ(file->Seek(0, SeekOrigin::End, &position), 0u);
    EXPECT_EQ(position, 4);

    EXPECT_EQ(file->Seek(100, SeekOrigin::Begin, nullptr), 0u);
    EXPECT_EQ(file->SetEndOfFile(), 0u);
    EXPECT_EQ(SizeOf(*file), 100);

    EXPECT_EQ(file->Seek(1, SeekOrigin::Begin, nullptr), 0u);
    EXPECT_EQ(file->Write("AB", 2, nullptr), 0u);
    EXPECT_EQ(file->Seek(0, SeekOrigin::Current, &position), 0u);
    EXPECT_EQ(position, 3);
    file.reset();

    const std::string bytes = ReadBytes(path);
    ASSERT_EQ(bytes.size(), 100u);
    EXPECT_EQ(bytes.substr(0, 4), "0AB3");
}

TEST(File, CopyCreatesOrReplacesTheTarget) {
    TempFolder folder;
    const std::u16string source = folder.File(u"games.pgn");
    const std::u16string target = folder.File(u"games.bak");
    WriteBytes(source, "short");
    EXPECT_EQ(SystemFileSystem().Copy(source, target), 0u);
    EXPECT_EQ(ReadBytes(target), "short");

    WriteBytes(target, "a much longer old backup");
    EXPECT_EQ(SystemFileSystem().Copy(source, target), 0u);
    EXPECT_EQ(ReadBytes(target), "short");
    EXPECT_EQ(ReadBytes(source), "short");
}

TEST(File, CopyFailuresLeaveTheTargetAlone) {
    TempFolder folder;
    const std::u16string source = folder.File(u"games.pgn");
    const std::u16string target = folder.File(u"games.bak");
    WriteBytes(target, "old");
    EXPECT_NE(SystemFileSystem().Copy(folder.File(u"missing.pgn"), target), 0u);
    EXPECT_EQ(ReadBytes(target), "old");

    WriteBytes(source, "new");
    {
        auto targetInUse = OpenOk(target, OpenMode::ReadShared);
        EXPECT_EQ(SystemFileSystem().Copy(source, target), kSharingConflict);
    }
    {
        auto sourceLocked = OpenOk(source, OpenMode::ReadExclusive);
        EXPECT_EQ(SystemFileSystem().Copy(source, target), kSharingConflict);
    }
    EXPECT_EQ(ReadBytes(target), "old");
    // Only the two files: no temporary copy is left behind.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 2);
}

TEST(File, DeleteRemovesAClosedFileOnly) {
    TempFolder folder;
    const std::u16string path = folder.File(u"gone.pgn");
    WriteBytes(path, "x");
    {
        auto open = OpenOk(path, OpenMode::ReadShared);
        EXPECT_EQ(SystemFileSystem().Delete(path), kSharingConflict);
        EXPECT_TRUE(SystemFileSystem().Exists(path));
    }
    EXPECT_EQ(SystemFileSystem().Delete(path), 0u);
    EXPECT_FALSE(SystemFileSystem().Exists(path));
    EXPECT_NE(SystemFileSystem().Delete(path), 0u);
}

TEST(File, ExistsSeesFilesAndFolders) {
    TempFolder folder;
    const std::u16string path = folder.File(u"here.pgn");
    WriteBytes(path, "");
    EXPECT_TRUE(SystemFileSystem().Exists(path));
    EXPECT_TRUE(SystemFileSystem().Exists(folder.Path().u16string()));
    EXPECT_FALSE(SystemFileSystem().Exists(folder.File(u"nowhere.pgn")));
}

TEST(File, AFolderCannotBeOpenedAsAFile) {
    TempFolder folder;
    for (OpenMode mode : {OpenMode::ReadShared, OpenMode::ReadWriteExisting}) {
        ErrorCode error = 0;
        EXPECT_EQ(SystemFileSystem().Open(folder.Path().u16string(), mode, &error), nullptr);
        EXPECT_NE(error, 0u);
    }
}

TEST(File, NamesOutsideAsciiReachTheSameFile) {
    TempFolder folder;
    const std::u16string name = u"Caf\u00E9 \u00BD \u20AC \u0416.pgn";
    {
        auto file = OpenOk(folder.File(name), OpenMode::WriteAlways);
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(file->Write("1-0", 3, nullptr), 0u);
    }
    EXPECT_TRUE(SystemFileSystem().Exists(folder.File(name)));
    EXPECT_EQ(ReadBytes(folder.File(name)), "1-0");
    std::u16string listed;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
        listed = entry.path().filename().u16string();
    }
    EXPECT_EQ(listed, name);
}

TEST(File, ReadsAnAnsiFileFromTheTestData) {
    auto file = OpenOk(test::TestDataPath("ansi-1252-sample.txt"), OpenMode::ReadShared);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(AnsiToWide(ReadAll(*file)), u"Tal \u2013 Fischer \u00BD-\u00BD \u20AC\r\n");
}

}  // namespace
}  // namespace velmora::platform
