// FileSettingsStore: the per-user settings store as one text file, and the system store.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "platform/CodePage.h"
#include "platform/SettingsStore.h"

namespace velmora::platform {

namespace {

// Reads the whole file into *text. Returns 0, or the errno of the failure (ENOENT: no file).
int ReadWholeFile(const std::string& path, std::string* text) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno;
    int error = 0;
    char buffer[4096];
    for (;;) {
        const ssize_t n = read(fd, buffer, sizeof buffer);
        if (n < 0) {
            if (errno == EINTR) continue;
            error = errno;
            break;
        }
        if (n == 0) break;
        text->append(buffer, static_cast<std::size_t>(n));
    }
    close(fd);
    return error;
}

// Creates folder and its missing parents, private to the user as configuration folders are.
bool MakeFolders(const std::string& folder) {
    if (folder.empty()) return true;
    struct stat info;
    if (stat(folder.c_str(), &info) == 0) return S_ISDIR(info.st_mode);
    const std::size_t slash = folder.find_last_of('/');
    if (slash != std::string::npos && slash > 0 && !MakeFolders(folder.substr(0, slash))) {
        return false;
    }
    return mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST;
}

// Writes text to path + ".tmp", flushes it to the disk and renames it over path, so that path
// holds either the old text or the new one whole.
bool ReplaceFile(const std::string& path, const std::string& text) {
    const std::size_t slash = path.find_last_of('/');
    if (slash != std::string::npos && !MakeFolders(path.substr(0, slash))) return false;
    const std::string temporary = path + ".tmp";
    const int fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0) return false;
    bool written = true;
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t n = write(fd, text.data() + done, text.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            written = false;
            break;
        }
        done += static_cast<std::size_t>(n);
    }
    written = written && fsync(fd) == 0;
    written = close(fd) == 0 && written;
    if (written && rename(temporary.c_str(), path.c_str()) == 0) return true;
    unlink(temporary.c_str());
    return false;
}

}  // namespace

// Loads the file; what cannot be read is moved aside to ".bad" before anything is written.
FileSettingsStore::FileSettingsStore(std::u16string path) : path_(std::move(path)) {
    if (path_.empty()) {
        persisting_ = false;
        return;
    }
    const std::string nativePath = WideToUtf8(path_);
    std::string text;
    const int error = ReadWholeFile(nativePath, &text);
    if (error == ENOENT) return;  // first run: an empty store
    if (error == 0 && memory_.FromText(text)) return;
    // The store is empty (FromText empties it when it fails). Keep the user's file aside as it
    // was; without that copy, nothing may be written over it.
    persisting_ = rename(nativePath.c_str(), (nativePath + ".bad").c_str()) == 0;
}

bool FileSettingsStore::Persist() {
    return persisting_ && ReplaceFile(WideToUtf8(path_), memory_.ToText());
}

bool FileSettingsStore::KeyExists(StoreRoot root, const std::u16string& path) const {
    return memory_.KeyExists(root, path);
}

// Writes the file only when the key is new: opening a key with create is frequent and usually
// finds it there.
bool FileSettingsStore::CreateKey(StoreRoot root, const std::u16string& path) {
    if (memory_.KeyExists(root, path)) return true;
    return memory_.CreateKey(root, path) && Persist();
}

bool FileSettingsStore::DeleteKey(StoreRoot root, const std::u16string& path) {
    return memory_.DeleteKey(root, path) && Persist();
}

int FileSettingsStore::ReadValue(StoreRoot root, const std::u16string& path,
                                 const std::u16string& name, ValueType* type, void* data,
                                 std::uint32_t capacity, std::uint32_t* size) const {
    return memory_.ReadValue(root, path, name, type, data, capacity, size);
}

bool FileSettingsStore::WriteValue(StoreRoot root, const std::u16string& path,
                                   const std::u16string& name, ValueType type, const void* data,
                                   std::uint32_t size) {
    return memory_.WriteValue(root, path, name, type, data, size) && Persist();
}

bool FileSettingsStore::DeleteValue(StoreRoot root, const std::u16string& path,
                                    const std::u16string& name) {
    return memory_.DeleteValue(root, path, name) && Persist();
}

int FileSettingsStore::ValueNameAt(StoreRoot root, const std::u16string& path, int index,
                                   std::u16string* name) const {
    return memory_.ValueNameAt(root, path, index, name);
}

int FileSettingsStore::SubkeyNameAt(StoreRoot root, const std::u16string& path, int index,
                                    std::u16string* name) const {
    return memory_.SubkeyNameAt(root, path, index, name);
}

std::u16string SettingsFilePath(const char* xdgConfigHome, const char* home) {
    // A relative XDG_CONFIG_HOME is invalid and ignored, as the base directory rules say.
    if (xdgConfigHome != nullptr && xdgConfigHome[0] == '/') {
        return Utf8ToWide(std::string(xdgConfigHome) + "/velmora/registry");
    }
    if (home != nullptr && home[0] != '\0') {
        return Utf8ToWide(std::string(home) + "/.config/velmora/registry");
    }
    return {};
}

std::u16string DefaultSettingsFilePath() {
    return SettingsFilePath(std::getenv("XDG_CONFIG_HOME"), std::getenv("HOME"));
}

namespace {
SettingsStore* replacementStore = nullptr;
}  // namespace

SettingsStore& SystemSettingsStore() {
    if (replacementStore != nullptr) return *replacementStore;
    static FileSettingsStore file(DefaultSettingsFilePath());
    return file;
}

void SetSystemSettingsStore(SettingsStore* store) {
    replacementStore = store;
}

}  // namespace velmora::platform
