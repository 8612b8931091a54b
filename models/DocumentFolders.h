// DocumentFolders: which folders below the documents root hold files of one pattern ("*.pgn"),
// and the rows the document list shows for all of them or for one chosen folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/File.h"

namespace velmora {

// One file of the list.
struct DocumentRow {
    std::u16string path;      // what choosing the row opens
    std::u16string name;      // the path below the folder shown (below the root for all folders)
    std::u16string sizeText;  // as SizeText gives it
};

// Compares two names as the list orders them, letter case aside: negative, 0 or positive.
using NameCompare = std::function<int(const std::u16string&, const std::u16string&)>;

// Compares names unit by unit with the letters A..Z taken as a..z.
int CompareIgnoringCase(const std::u16string& a, const std::u16string& b);

class DocumentFolders {
  public:
    // How deep below the root the search goes, and how many files one search lists at most.
    static constexpr int kMaxDepth = 4;
    static constexpr std::size_t kMaxFiles = 4000;

    // root is the documents root (the current folder at start-up); pattern selects the files
    // as the file system's ListFolder reads it.
    DocumentFolders(platform::FileSystem& files, std::u16string root, std::u16string pattern,
                    NameCompare compare = CompareIgnoringCase);

    // Shows folder from now on when it is an existing folder; otherwise all folders.
    void StartIn(const std::u16string& folder);
    // Searches the folders again and lists the rows of the folder shown.
    void Refresh();
    // Lists the files of another pattern ("*.*" for all files) from the next Refresh on.
    void SetPattern(std::u16string pattern) { pattern_ = std::move(pattern); }
    const std::u16string& Pattern() const { return pattern_; }
    // Takes a chooser entry: 0 for all folders, n for Folders()[n - 1]; lists its rows.
    void Choose(int entry);

    // The folder shown, with a separator at its end; empty for all folders.
    const std::u16string& Folder() const { return folder_; }
    // The chooser's folders after "All Folders": the root and every folder holding a matching
    // file (the root's before its subfolders', subfolders by name), then the folder shown when
    // the search did not find it.
    const std::vector<std::u16string>& Folders() const { return folders_; }
    // The chooser's text for a folder: the root's own name, followed by the path below it for
    // a subfolder; the whole path for a folder outside the root.
    std::u16string Label(const std::u16string& folder) const;
    // The chooser entry of the folder shown (0 for all folders).
    int ChosenEntry() const;
    // All folders: the files of the root and its subfolders, each folder's files in the order
    // the file system gives them and before its subfolders'. One folder: its files by name.
    const std::vector<DocumentRow>& Rows() const { return rows_; }

    // Bytes below 1 KB as "n B", below 1 MB as whole KB rounded up, else MB with one decimal
    // cut off: "512 B", "3 KB", "1.4 MB".
    static std::u16string SizeText(std::int64_t bytes);

  private:
    // Appends the matching files of folder to rows (up to kMaxFiles in all), and folder to
    // holding when it added any; then does the same for its subfolders when recursive.
    void Collect(const std::u16string& folder, bool recursive, int depth,
                 std::vector<DocumentRow>& rows, std::vector<std::u16string>* holding) const;
    void ListRows();

    platform::FileSystem& files_;
    std::u16string root_;
    std::u16string pattern_;
    NameCompare compare_;
    std::u16string folder_;
    std::vector<std::u16string> folders_;
    std::vector<DocumentRow> rows_;
};

}  // namespace velmora
