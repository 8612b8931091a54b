// Files on Windows through CreateFileW and friends; share modes do the locking.
#include "platform/File.h"

#include <windows.h>

#include "platform/win32/WideText.h"

namespace velmora::platform {
namespace {

class Win32File final : public File {
  public:
    explicit Win32File(HANDLE handle) : handle_(handle) {}
    ~Win32File() override { CloseHandle(handle_); }

    ErrorCode Read(void* buffer, std::uint32_t size, std::uint32_t* bytesRead) override {
        DWORD done = 0;
        const BOOL ok = ReadFile(handle_, buffer, size, &done, nullptr);
        if (bytesRead) *bytesRead = done;
        return ok ? 0 : GetLastError();
    }

    ErrorCode Write(const void* buffer, std::uint32_t size, std::uint32_t* written) override {
        DWORD done = 0;
        const BOOL ok = WriteFile(handle_, buffer, size, &done, nullptr);
        if (written) *written = done;
        return ok ? 0 : GetLastError();
    }

    ErrorCode Seek(std::int64_t offset, SeekOrigin origin, std::int64_t* newPosition) override {
        const DWORD method = origin == SeekOrigin::Begin     ? FILE_BEGIN
                             : origin == SeekOrigin::Current ? FILE_CURRENT
                                                             : FILE_END;
        LARGE_INTEGER distance;
        distance.QuadPart = offset;
        LARGE_INTEGER position;
        if (!SetFilePointerEx(handle_, distance, &position, method)) return GetLastError();
        if (newPosition) *newPosition = position.QuadPart;
        return 0;
    }

    ErrorCode Size(std::int64_t* size) override {
        LARGE_INTEGER value;
        if (!GetFileSizeEx(handle_, &value)) return GetLastError();
        *size = value.QuadPart;
        return 0;
    }

    ErrorCode SetEndOfFile() override { return ::SetEndOfFile(handle_) ? 0 : GetLastError(); }

  private:
    HANDLE handle_;
};

class Win32FileSystem final : public FileSystem {
  public:
    std::unique_ptr<File> Open(const std::u16string& path, OpenMode mode,
                               ErrorCode* error) override {
        DWORD access = GENERIC_READ;
        DWORD share = 0;
        DWORD disposition = OPEN_EXISTING;
        switch (mode) {
            case OpenMode::ReadShared:
                share = FILE_SHARE_READ;
                break;
            case OpenMode::ReadExclusive:
                break;
            case OpenMode::ReadWriteExisting:
                access = GENERIC_READ | GENERIC_WRITE;
                break;
            case OpenMode::WriteAlways:
                access = GENERIC_WRITE;
                disposition = OPEN_ALWAYS;
                break;
        }
        const HANDLE handle = CreateFileW(win32::ToWin32(path).c_str(), access, share, nullptr,
                                          disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle == INVALID_HANDLE_VALUE) {
            *error = GetLastError();
            return nullptr;
        }
        // OPEN_ALWAYS leaves ERROR_ALREADY_EXISTS behind on success; that is not a failure.
        *error = 0;
        return std::make_unique<Win32File>(handle);
    }

    ErrorCode Copy(const std::u16string& from, const std::u16string& to) override {
        const BOOL ok = CopyFileW(win32::ToWin32(from).c_str(), win32::ToWin32(to).c_str(), FALSE);
        return ok ? 0 : GetLastError();
    }

    ErrorCode Delete(const std::u16string& path) override {
        return DeleteFileW(win32::ToWin32(path).c_str()) ? 0 : GetLastError();
    }

    bool Exists(const std::u16string& path) override {
        return GetFileAttributesW(win32::ToWin32(path).c_str()) != INVALID_FILE_ATTRIBUTES;
    }

    // Nothing found in an existing folder (no match, or a drive's root, which has no ".") is
    // an empty listing.
    ErrorCode ListFolder(const std::u16string& folder, const std::u16string& pattern,
                         std::vector<FolderEntry>* entries) override {
        entries->clear();
        std::wstring names = win32::ToWin32(folder);
        if (!names.empty() && names.back() != L'\\' && names.back() != L'/') names += L'\\';
        names += win32::ToWin32(pattern);
        WIN32_FIND_DATAW found;
        const HANDLE search = FindFirstFileW(names.c_str(), &found);
        if (search == INVALID_HANDLE_VALUE) {
            const DWORD error = GetLastError();
            return error == ERROR_FILE_NOT_FOUND ? 0 : error;
        }
        do {
            const std::wstring_view name = found.cFileName;
            if (name == L"." || name == L"..") continue;
            FolderEntry& entry = entries->emplace_back();
            entry.name = win32::FromWin32(name);
            entry.isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            entry.hidden = (found.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
            entry.size = entry.isFolder
                             ? 0
                             : static_cast<std::int64_t>(
                                   (static_cast<std::uint64_t>(found.nFileSizeHigh) << 32) |
                                   found.nFileSizeLow);
        } while (FindNextFileW(search, &found));
        const DWORD error = GetLastError();
        FindClose(search);
        return error == ERROR_NO_MORE_FILES ? 0 : error;
    }
};

}  // namespace

FileSystem& SystemFileSystem() {
    static Win32FileSystem fileSystem;
    return fileSystem;
}

}  // namespace velmora::platform
