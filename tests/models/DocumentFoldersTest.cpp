// The document list's folders and rows over an in-memory file system: which folders the search
// finds and how deep, and which rows a folder shows.
#include "models/DocumentFolders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/CodePage.h"
#include "platform/Paths.h"
#include "tests/MemoryFileSystem.h"

namespace velmora {
namespace {

// A path written with '/', in the platform's separators.
std::u16string P(const std::string& path) {
    std::u16string wide = platform::Utf8ToWide(path);
    std::replace(wide.begin(), wide.end(), u'/', platform::PathSeparator());
    return wide;
}

std::vector<std::u16string> Names(const DocumentFolders& list) {
    std::vector<std::u16string> names;
    for (const DocumentRow& row : list.Rows())
        names.push_back(row.name);
    return names;
}

class DocumentFoldersTest : public testing::Test {
  protected:
    DocumentFoldersTest() {
        for (const char* path :
             {"top/docs/a.pgn", "top/docs/notes.txt", "top/docs/b.pgnx", "top/docs/club/Z.PGN",
              "top/docs/club/c.pgn", "top/docs/club/inner/d.pgn", "top/docs/.git/e.pgn",
              "top/docs/Bare/readme.txt", "top/docs/k1/k2/k3/k4/four.pgn",
              "top/docs/k1/k2/k3/k4/k5/five.pgn", "top/other/f.pgn"}) {
            files.files[P(path)] = "12345";
        }
    }
    test::MemoryFileSystem files;
    DocumentFolders list{files, P("top/docs"), u"*.pgn"};
};

TEST_F(DocumentFoldersTest, AllFoldersListsMatchingFilesDownToTheDepthLimitOrOneFolderItsOwn) {
    list.StartIn(u"");
    list.Refresh();
    // Subfolders by name in any case ("Bare" holds nothing), hidden ".git" and the sixth level
    // ("k5") never searched.
    EXPECT_EQ(list.Folders(),
              (std::vector<std::u16string>{P("top/docs/"), P("top/docs/club/"),
                                           P("top/docs/club/inner/"), P("top/docs/k1/k2/k3/k4/")}));
    EXPECT_EQ(Names(list),
              (std::vector<std::u16string>{P("a.pgn"), P("club/Z.PGN"), P("club/c.pgn"),
                                           P("club/inner/d.pgn"), P("k1/k2/k3/k4/four.pgn")}));
    EXPECT_EQ(list.Rows()[0].path, P("top/docs/a.pgn"));
    EXPECT_EQ(list.Label(list.Folders()[2]), P("docs/club/inner"));

    // A chosen folder lists only its own files, by name; an entry out of range shows all.
    list.Choose(2);
    EXPECT_EQ(Names(list), (std::vector<std::u16string>{u"c.pgn", u"Z.PGN"}));
    list.Choose(5);
    EXPECT_EQ(list.Folder(), u"");
    EXPECT_EQ(list.Rows().size(), 5u);
}

}  // namespace
}  // namespace velmora
