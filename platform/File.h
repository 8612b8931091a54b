// Files and the file system behind a small interface, so that tests of later code can inject
// faults.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::platform {

// 0 means success; otherwise the system's code: GetLastError() on Windows, errno on POSIX.
using ErrorCode = std::uint32_t;

// How a file is opened. "Not shared" means that no other open of the same file may coexist with
// this one; on POSIX this is emulated with flock() (LOCK_SH for ReadShared, LOCK_EX for the
// others), so it holds against this program's own opens and any other flock user, and a conflict
// fails with EWOULDBLOCK where Windows gives ERROR_SHARING_VIOLATION.
enum class OpenMode {
    ReadShared,         // read; others may read too; the file must exist
    ReadExclusive,      // read; not shared; the file must exist
    ReadWriteExisting,  // read and write; not shared; the file must exist
    WriteAlways,        // write; not shared; created when missing, never truncated, position 0
};

enum class SeekOrigin { Begin, Current, End };

// An open file. Destroying the object closes it.
class File {
  public:
    virtual ~File() = default;

    // Reads up to size bytes; *bytesRead (may be null) is less than size only at end of file.
    virtual ErrorCode Read(void* buffer, std::uint32_t size, std::uint32_t* bytesRead) = 0;
    // Writes all size bytes; *written (may be null) tells how many made it.
    virtual ErrorCode Write(const void* buffer, std::uint32_t size, std::uint32_t* written) = 0;
    // Moves the file position; newPosition may be null.
    virtual ErrorCode Seek(std::int64_t offset, SeekOrigin origin, std::int64_t* newPosition) = 0;
    virtual ErrorCode Size(std::int64_t* size) = 0;
    // Cuts or extends the file so that it ends at the current position.
    virtual ErrorCode SetEndOfFile() = 0;
};

// One entry of a folder: a file or a subfolder.
struct FolderEntry {
    std::u16string name;  // without the folder
    bool isFolder = false;
    bool hidden = false;    // marked hidden by the system; names starting with '.' are not
    std::int64_t size = 0;  // bytes of a file; 0 for a folder
};

class FileSystem {
  public:
    virtual ~FileSystem() = default;

    // Returns the open file, or null with *error set (error must not be null).
    virtual std::unique_ptr<File> Open(const std::u16string& path, OpenMode mode,
                                       ErrorCode* error) = 0;
    // Copies a file, replacing an existing target.
    virtual ErrorCode Copy(const std::u16string& from, const std::u16string& to) = 0;
    virtual ErrorCode Delete(const std::u16string& path) = 0;
    // Tells whether a file or folder of that name exists.
    virtual bool Exists(const std::u16string& path) = 0;
    // Replaces *entries with the files and subfolders of folder (with or without a separator
    // at its end) whose names match pattern (see MatchesPattern; "*" for all), in the order the
    // system gives them, "." and ".." left out. Fails when folder is missing or not a folder.
    virtual ErrorCode ListFolder(const std::u16string& folder, const std::u16string& pattern,
                                 std::vector<FolderEntry>* entries) = 0;
};

// Tells whether a name matches a pattern where '*' stands for any run of characters and '?'
// for any one, letters A..Z in either case. Windows matches its short names as well, so there
// "*.pgn" also finds "a.pgnx" (short name "A~1.PGN").
bool MatchesPattern(std::u16string_view pattern, std::u16string_view name);

// The real file system of the machine.
FileSystem& SystemFileSystem();

}  // namespace velmora::platform
