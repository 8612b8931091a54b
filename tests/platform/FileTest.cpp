// Files through the platform layer: open modes, sharing, positions, copy, delete, exists and
// folder listings.
#include "platform/File.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/CodePage.h"
#include "platform/Paths.h"
#include "tests/TestFiles.h"

namespace velmora::platform {
namespace {

#ifdef _WIN32
constexpr ErrorCode kSharingConflict = 32;  // ERROR_SHARING_VIOLATION
#else
constexpr ErrorCode kSharingConflict = EWOULDBLOCK;
#endif

// Throws on failure, which ends the test with a failure instead of a null dereference.
std::unique_ptr<File> OpenOk(const std::u16string& path, OpenMode mode) {
    ErrorCode error = 1;
    std::unique_ptr<File> file = SystemFileSystem().Open(path, mode, &error);
    EXPECT_EQ(error, 0u);
    if (!file) throw std::runtime_error("open failed");
    return file;
}

std::int64_t SeekTo(File& file, std::int64_t offset, SeekOrigin origin) {
    std::int64_t position = -1;
    return file.Seek(offset, origin, &position) == 0 ? position : -1;
}

std::int64_t SizeOf(File& file) {
    std::int64_t size = -1;
    return file.Size(&size) == 0 ? size : -1;
}

class Files : public testing::Test {
  protected:
    test::TempFolder temp;
    std::u16string folder = temp.dir.u16string();
    std::u16string path = temp.Path("Caf\u00E9 \u00BD \u20AC \u0416.pgn");  // not just ASCII
    FileSystem& fs = SystemFileSystem();
};

TEST_F(Files, EachModeOpensSharesReadsAndWritesOnlyAsItMay) {
    const struct {
        OpenMode mode;
        bool creates, shared, reads, writes;
        const char* after;  // "abc" after reading and writing one byte
    } modes[] = {
        {OpenMode::ReadShared, false, true, true, false, "abc"},
        {OpenMode::ReadExclusive, false, false, true, false, "abc"},
        {OpenMode::ReadWriteExisting, false, false, true, true, "axc"},
        {OpenMode::WriteAlways, true, false, false, true, "xbc"},  // not truncated, from the start
    };
    for (const auto& m : modes) {
        SCOPED_TRACE(static_cast<int>(m.mode));
        ErrorCode error = 0;
        EXPECT_EQ(fs.Open(folder, m.mode, &error), nullptr);
        EXPECT_NE(error, 0u);
        EXPECT_EQ(fs.Open(path, m.mode, &error) != nullptr, m.creates);
        EXPECT_EQ(error != 0, !m.creates);

        test::WriteBytes(path, "abc");
        auto file = OpenOk(path, m.mode);
        for (const auto& other : modes) {
            SCOPED_TRACE(testing::Message() << "then " << static_cast<int>(other.mode));
            const bool coexist = m.shared && other.shared;
            EXPECT_EQ(fs.Open(path, other.mode, &error) != nullptr, coexist);
            EXPECT_EQ(error, coexist ? 0 : kSharingConflict);
        }
        char byte = 0;
        EXPECT_EQ(file->Read(&byte, 1, nullptr) == 0, m.reads);
        EXPECT_EQ(file->Write("x", 1, nullptr) == 0, m.writes);
        file.reset();
        EXPECT_EQ(test::ReadBytes(path), m.after);
        std::filesystem::remove(std::filesystem::path(path));
    }
}

// Saving a game rewrites the file's tail and cuts it where the new text ends.
TEST_F(Files, ReadSeekSizeAndSetEndOfFile) {
    test::WriteBytes(path, "0123456789");
    auto file = OpenOk(path, OpenMode::ReadWriteExisting);
    EXPECT_EQ(SeekTo(*file, -3, SeekOrigin::End), 7);
    EXPECT_EQ(SeekTo(*file, -2, SeekOrigin::Current), 5);
    char buffer[16];
    std::uint32_t count = 0;
    EXPECT_EQ(file->Read(buffer, sizeof buffer, &count), 0u);
    EXPECT_EQ(std::string(buffer, count), "56789");
    EXPECT_EQ(SeekTo(*file, 1, SeekOrigin::Begin), 1);
    EXPECT_EQ(file->Write("AB", 2, &count), 0u);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(file->SetEndOfFile(), 0u);
    EXPECT_EQ(SizeOf(*file), 3);
    file.reset();
    EXPECT_EQ(test::ReadBytes(path), "0AB");
}

TEST_F(Files, CopyAndDeleteReplaceOrRemoveOnlyWhatIsNotHeldOpen) {
    const std::u16string target = path + u".bak";
    test::WriteBytes(path, "short");
    EXPECT_EQ(fs.Copy(path, target), 0u);
    EXPECT_EQ(test::ReadBytes(target), "short");
    test::WriteBytes(target, "a much longer old backup");
    EXPECT_EQ(fs.Copy(path, target), 0u);
    EXPECT_EQ(test::ReadBytes(target), "short");

    test::WriteBytes(target, "old");
    EXPECT_NE(fs.Copy(path + u".missing", target), 0u);
    EXPECT_NE(fs.Delete(target + u".missing"), 0u);
    for (const auto& [locked, mode] :
         {std::pair{target, OpenMode::ReadShared}, std::pair{path, OpenMode::ReadExclusive}}) {
        auto held = OpenOk(locked, mode);
        EXPECT_EQ(fs.Copy(path, target), kSharingConflict);
    }
    EXPECT_EQ(test::ReadBytes(target), "old");
    // No temporary copy is left behind.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(temp.dir), {}), 2);
    {
        auto held = OpenOk(path, OpenMode::ReadShared);
        EXPECT_EQ(fs.Delete(path), kSharingConflict);
    }
    EXPECT_EQ(fs.Delete(path), 0u);
    EXPECT_FALSE(fs.Exists(path));
    EXPECT_TRUE(fs.Exists(folder));
}

TEST_F(Files, ListFolderGivesTheMatchingFilesWithSizesAndSubfoldersButNotItself) {
    test::WriteBytes(path, "12345");
    test::WriteBytes(temp.Path("B.PGN"), "");
    test::WriteBytes(temp.Path("notes.txt"), "");
    std::filesystem::create_directory(std::filesystem::path(temp.Path("sub")));
    std::filesystem::create_directory(std::filesystem::path(temp.Path("old.pgn")));
    test::WriteBytes(temp.Path("sub/inner.pgn"), "x");
    using Entry = std::tuple<std::u16string, bool, std::int64_t>;
    const Entry name = {path.substr(folder.size() + 1), false, 5};
    const struct {
        std::u16string pattern;
        std::set<Entry> expected;
    } cases[] = {
        {u"*",
         {name,
          {u"B.PGN", false, 0},
          {u"notes.txt", false, 0},
          {u"sub", true, 0},
          {u"old.pgn", true, 0}}},
        {u"*.pgn", {name, {u"B.PGN", false, 0}, {u"old.pgn", true, 0}}},  // any letter case
    };
    for (const auto& c : cases) {
        for (const std::u16string& listed : {folder, folder + PathSeparator()}) {
            SCOPED_TRACE(WideToUtf8(c.pattern + u" in " + listed));
            std::vector<FolderEntry> entries(1);  // replaced, not appended to
            ASSERT_EQ(fs.ListFolder(listed, c.pattern, &entries), 0u);
            std::set<Entry> found;
            for (const FolderEntry& entry : entries)
                found.insert({entry.name, entry.isFolder, entry.size});
            EXPECT_EQ(found, c.expected);
            EXPECT_EQ(entries.size(), c.expected.size());
        }
    }
    std::vector<FolderEntry> entries;
    EXPECT_NE(fs.ListFolder(temp.Path("missing"), u"*", &entries), 0u);
}

}  // namespace
}  // namespace velmora::platform
