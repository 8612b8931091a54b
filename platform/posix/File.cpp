// Files on POSIX systems: open/read/write with flock() standing in for Windows share modes.
#include "platform/File.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "platform/CodePage.h"

namespace velmora::platform {
namespace {

ErrorCode LastError() {
    return static_cast<ErrorCode>(errno);
}

// Closes a descriptor on scope exit unless released.
class FdGuard {
  public:
    explicit FdGuard(int fd) : fd_(fd) {}
    ~FdGuard() {
        if (fd_ >= 0) close(fd_);
    }
    FdGuard(const FdGuard&) = delete;
    FdGuard& operator=(const FdGuard&) = delete;
    int Get() const { return fd_; }
    int Release() {
        const int fd = fd_;
        fd_ = -1;
        return fd;
    }

  private:
    int fd_;
};

// Retries a flock() interrupted by a signal; never blocks.
int TryLock(int fd, int operation) {
    int result;
    do {
        result = flock(fd, operation | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    return result;
}

class PosixFile final : public File {
  public:
    explicit PosixFile(int fd) : fd_(fd) {}
    ~PosixFile() override { close(fd_); }

    // Loops over short reads so that fewer bytes than asked means end of file, as on Windows.
    ErrorCode Read(void* buffer, std::uint32_t size, std::uint32_t* bytesRead) override {
        std::uint32_t total = 0;
        ErrorCode error = 0;
        while (total < size) {
            const ssize_t n = read(fd_, static_cast<char*>(buffer) + total, size - total);
            if (n < 0) {
                if (errno == EINTR) continue;
                error = LastError();
                break;
            }
            if (n == 0) break;
            total += static_cast<std::uint32_t>(n);
        }
        if (bytesRead) *bytesRead = total;
        return error;
    }

    ErrorCode Write(const void* buffer, std::uint32_t size, std::uint32_t* written) override {
        std::uint32_t total = 0;
        ErrorCode error = 0;
        while (total < size) {
            const ssize_t n = write(fd_, static_cast<const char*>(buffer) + total, size - total);
            if (n < 0) {
                if (errno == EINTR) continue;
                error = LastError();
                break;
            }
            total += static_cast<std::uint32_t>(n);
        }
        if (written) *written = total;
        return error;
    }

    ErrorCode Seek(std::int64_t offset, SeekOrigin origin, std::int64_t* newPosition) override {
        const int whence = origin == SeekOrigin::Begin     ? SEEK_SET
                           : origin == SeekOrigin::Current ? SEEK_CUR
                                                           : SEEK_END;
        const off_t position = lseek(fd_, static_cast<off_t>(offset), whence);
        if (position < 0) return LastError();
        if (newPosition) *newPosition = position;
        return 0;
    }

    ErrorCode Size(std::int64_t* size) override {
        struct stat info {};
        if (fstat(fd_, &info) != 0) return LastError();
        *size = info.st_size;
        return 0;
    }

    ErrorCode SetEndOfFile() override {
        const off_t position = lseek(fd_, 0, SEEK_CUR);
        if (position < 0) return LastError();
        if (ftruncate(fd_, position) != 0) return LastError();
        return 0;
    }

  private:
    int fd_;
};

class PosixFileSystem final : public FileSystem {
  public:
    // Refuses folders (EISDIR), which Windows cannot open as files either.
    std::unique_ptr<File> Open(const std::u16string& path, OpenMode mode,
                               ErrorCode* error) override {
        int flags = O_CLOEXEC;
        int lock = LOCK_EX;
        switch (mode) {
            case OpenMode::ReadShared:
                flags |= O_RDONLY;
                lock = LOCK_SH;
                break;
            case OpenMode::ReadExclusive:
                flags |= O_RDONLY;
                break;
            case OpenMode::ReadWriteExisting:
                flags |= O_RDWR;
                break;
            case OpenMode::WriteAlways:
                flags |= O_WRONLY | O_CREAT;
                break;
        }
        FdGuard fd(open(WideToUtf8(path).c_str(), flags, 0666));
        if (fd.Get() < 0) {
            *error = LastError();
            return nullptr;
        }
        struct stat info {};
        if (fstat(fd.Get(), &info) != 0) {
            *error = LastError();
            return nullptr;
        }
        if (S_ISDIR(info.st_mode)) {
            *error = EISDIR;
            return nullptr;
        }
        if (TryLock(fd.Get(), lock) != 0) {
            *error = LastError();
            return nullptr;
        }
        *error = 0;
        return std::make_unique<PosixFile>(fd.Release());
    }

    // Copies into a temporary file beside the target and renames it over the target, so the
    // target is either the old file or the complete copy. Like CopyFileW it fails while another
    // open holds the source exclusively or the target at all.
    ErrorCode Copy(const std::u16string& from, const std::u16string& to) override {
        const std::string fromPath = WideToUtf8(from);
        const std::string toPath = WideToUtf8(to);
        FdGuard source(open(fromPath.c_str(), O_RDONLY | O_CLOEXEC));
        if (source.Get() < 0) return LastError();
        struct stat info {};
        if (fstat(source.Get(), &info) != 0) return LastError();
        if (S_ISDIR(info.st_mode)) return EISDIR;
        if (TryLock(source.Get(), LOCK_SH) != 0) return LastError();

        FdGuard oldTarget(open(toPath.c_str(), O_RDONLY | O_CLOEXEC));
        if (oldTarget.Get() >= 0 && TryLock(oldTarget.Get(), LOCK_EX) != 0) return LastError();

        std::string tempPath = toPath + ".XXXXXX";
        FdGuard temp(mkostemp(tempPath.data(), O_CLOEXEC));
        if (temp.Get() < 0) return LastError();
        ErrorCode error = CopyContents(source.Get(), temp.Get());
        if (error == 0 && fchmod(temp.Get(), info.st_mode & 07777) != 0) error = LastError();
        if (error == 0 && fsync(temp.Get()) != 0) error = LastError();
        if (close(temp.Release()) != 0 && error == 0) error = LastError();
        if (error == 0 && rename(tempPath.c_str(), toPath.c_str()) != 0) error = LastError();
        if (error != 0) unlink(tempPath.c_str());
        return error;
    }

    // Fails while any open of this program holds the file, as DeleteFileW does on Windows.
    ErrorCode Delete(const std::u16string& path) override {
        const std::string nativePath = WideToUtf8(path);
        FdGuard fd(open(nativePath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        if (fd.Get() >= 0 && TryLock(fd.Get(), LOCK_EX) != 0) return LastError();
        if (unlink(nativePath.c_str()) != 0) return LastError();
        return 0;
    }

    bool Exists(const std::u16string& path) override {
        struct stat info {};
        return stat(WideToUtf8(path).c_str(), &info) == 0;
    }

    // Follows symbolic links, as Windows shows a linked folder as a folder; a link that leads
    // nowhere is left out.
    ErrorCode ListFolder(const std::u16string& folder, const std::u16string& pattern,
                         std::vector<FolderEntry>* entries) override {
        entries->clear();
        DIR* listing = opendir(WideToUtf8(folder).c_str());
        if (listing == nullptr) return LastError();
        ErrorCode error = 0;
        for (;;) {
            errno = 0;
            const dirent* entry = readdir(listing);
            if (entry == nullptr) {
                error = LastError();
                break;
            }
            const std::string name = entry->d_name;
            if (name == "." || name == "..") continue;
            std::u16string wide = Utf8ToWide(name);
            if (!MatchesPattern(pattern, wide)) continue;
            struct stat info {};
            if (fstatat(dirfd(listing), name.c_str(), &info, 0) != 0) continue;
            FolderEntry& added = entries->emplace_back();
            added.name = std::move(wide);
            added.isFolder = S_ISDIR(info.st_mode);
            added.size = added.isFolder ? 0 : static_cast<std::int64_t>(info.st_size);
        }
        closedir(listing);
        return error;
    }

  private:
    static ErrorCode CopyContents(int from, int to) {
        char buffer[64 * 1024];
        for (;;) {
            const ssize_t n = read(from, buffer, sizeof buffer);
            if (n < 0) {
                if (errno == EINTR) continue;
                return LastError();
            }
            if (n == 0) return 0;
            ssize_t done = 0;
            while (done < n) {
                const ssize_t w = write(to, buffer + done, static_cast<std::size_t>(n - done));
                if (w < 0) {
                    if (errno == EINTR) continue;
                    return LastError();
                }
                done += w;
            }
        }
    }
};

}  // namespace

FileSystem& SystemFileSystem() {
    static PosixFileSystem fileSystem;
    return fileSystem;
}

}  // namespace velmora::platform
