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
};

}  // namespace

FileSystem& SystemFileSystem() {
    static Win32FileSystem fileSystem;
    return fileSystem;
}

}  // namespace velmora::platform
