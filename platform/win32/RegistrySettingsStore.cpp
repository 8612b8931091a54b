// RegistrySettingsStore: the settings store over the Windows registry, and the system store.
#include <windows.h>

#include <string>
#include <string_view>

#include "platform/SettingsStore.h"
#include "platform/win32/WideText.h"

namespace velmora::platform {

namespace {

// Longest key name and value name the registry allows, plus the terminator.
constexpr DWORD kKeyNameChars = 256;
constexpr DWORD kValueNameChars = 16384;
// Name buffer of the subkey enumeration while a tree is deleted.
constexpr DWORD kDeleteNameChars = 260;

HKEY RootKey(StoreRoot root) {
    return root == StoreRoot::ClassesRoot ? HKEY_CLASSES_ROOT : HKEY_CURRENT_USER;
}

// Joins the non-empty names of a backslash-separated path: the registry refuses a path that
// starts with a backslash, which a key opened below a root's own path would otherwise produce.
std::wstring Win32Path(std::u16string_view path) {
    std::wstring joined;
    std::size_t start = 0;
    while (start <= path.size()) {
        std::size_t end = path.find(u'\\', start);
        if (end == std::u16string_view::npos) end = path.size();
        if (end > start) {
            if (!joined.empty()) joined.push_back(L'\\');
            joined += win32::ToWin32(path.substr(start, end - start));
        }
        start = end + 1;
    }
    return joined;
}

// An open registry key, closed when it goes out of scope.
class OpenKey {
  public:
    OpenKey(StoreRoot root, const std::u16string& path, REGSAM access) {
        if (RegOpenKeyExW(RootKey(root), Win32Path(path).c_str(), 0, access, &key_) !=
            ERROR_SUCCESS) {
            key_ = nullptr;
        }
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    ~OpenKey() {
        if (key_ != nullptr) RegCloseKey(key_);
    }
    explicit operator bool() const { return key_ != nullptr; }
    HKEY Get() const { return key_; }

  private:
    HKEY key_ = nullptr;
};

// Maps a registry result onto the store's codes: anything but success, a too-small buffer or
// the end of an enumeration counts as not found.
int StoreResult(LONG result) {
    switch (result) {
        case ERROR_SUCCESS:
            return kStoreOk;
        case ERROR_MORE_DATA:
            return kStoreMoreData;
        case ERROR_NO_MORE_ITEMS:
            return kStoreNoMoreItems;
        default:
            return kStoreNotFound;
    }
}

// Deletes subkey of parent with everything below it: its own subkeys go first, one at a time
// from index 0, until the enumeration runs dry. False as soon as a step fails.
bool DeleteTree(HKEY parent, const std::wstring& subkey) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(parent, subkey.c_str(), 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS) {
        return false;
    }
    bool deleted = true;
    for (;;) {
        wchar_t name[kDeleteNameChars];
        DWORD length = kDeleteNameChars;
        const LONG result =
            RegEnumKeyExW(key, 0, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (result == ERROR_NO_MORE_ITEMS) break;
        if (result != ERROR_SUCCESS || !DeleteTree(key, std::wstring(name, length))) {
            deleted = false;
            break;
        }
    }
    RegCloseKey(key);
    return deleted && RegDeleteKeyW(parent, subkey.c_str()) == ERROR_SUCCESS;
}

}  // namespace

bool RegistrySettingsStore::KeyExists(StoreRoot root, const std::u16string& path) const {
    return static_cast<bool>(OpenKey(root, path, KEY_READ));
}

bool RegistrySettingsStore::CreateKey(StoreRoot root, const std::u16string& path) {
    HKEY key = nullptr;
    wchar_t keyClass[] = L"String";
    if (RegCreateKeyExW(RootKey(root), Win32Path(path).c_str(), 0, keyClass, 0, KEY_ALL_ACCESS,
                        nullptr, &key, nullptr) != ERROR_SUCCESS) {
        return false;
    }
    RegCloseKey(key);
    return true;
}

bool RegistrySettingsStore::DeleteKey(StoreRoot root, const std::u16string& path) {
    const std::wstring subkey = Win32Path(path);
    if (subkey.empty()) return false;  // a root is never deleted
    return DeleteTree(RootKey(root), subkey);
}

int RegistrySettingsStore::ReadValue(StoreRoot root, const std::u16string& path,
                                     const std::u16string& name, ValueType* type, void* data,
                                     std::uint32_t capacity, std::uint32_t* size) const {
    OpenKey key(root, path, KEY_READ);
    if (!key) return kStoreNotFound;
    DWORD valueType = 0;
    DWORD bytes = data != nullptr ? capacity : 0;
    const LONG result = RegQueryValueExW(key.Get(), win32::ToWin32(name).c_str(), nullptr,
                                         &valueType, static_cast<BYTE*>(data), &bytes);
    if (result != ERROR_SUCCESS && result != ERROR_MORE_DATA) return kStoreNotFound;
    if (type) *type = static_cast<ValueType>(valueType);
    if (size) *size = bytes;
    return StoreResult(result);
}

bool RegistrySettingsStore::WriteValue(StoreRoot root, const std::u16string& path,
                                       const std::u16string& name, ValueType type, const void* data,
                                       std::uint32_t size) {
    OpenKey key(root, path, KEY_SET_VALUE);
    return key &&
           RegSetValueExW(key.Get(), win32::ToWin32(name).c_str(), 0, static_cast<DWORD>(type),
                          static_cast<const BYTE*>(data), size) == ERROR_SUCCESS;
}

bool RegistrySettingsStore::DeleteValue(StoreRoot root, const std::u16string& path,
                                        const std::u16string& name) {
    OpenKey key(root, path, KEY_SET_VALUE);
    return key && RegDeleteValueW(key.Get(), win32::ToWin32(name).c_str()) == ERROR_SUCCESS;
}

int RegistrySettingsStore::ValueNameAt(StoreRoot root, const std::u16string& path, int index,
                                       std::u16string* name) const {
    OpenKey key(root, path, KEY_READ);
    if (!key) return kStoreNotFound;
    if (index < 0) return kStoreNoMoreItems;
    std::wstring buffer(kValueNameChars, L'\0');
    DWORD length = kValueNameChars;
    const LONG result = RegEnumValueW(key.Get(), static_cast<DWORD>(index), buffer.data(), &length,
                                      nullptr, nullptr, nullptr, nullptr);
    // ERROR_MORE_DATA here would be about the value's data, which was not asked for.
    if (result != ERROR_SUCCESS) return StoreResult(result);
    *name = win32::FromWin32(std::wstring_view(buffer.data(), length));
    return kStoreOk;
}

int RegistrySettingsStore::SubkeyNameAt(StoreRoot root, const std::u16string& path, int index,
                                        std::u16string* name) const {
    OpenKey key(root, path, KEY_READ);
    if (!key) return kStoreNotFound;
    if (index < 0) return kStoreNoMoreItems;
    wchar_t buffer[kKeyNameChars];
    DWORD length = kKeyNameChars;
    const LONG result = RegEnumKeyExW(key.Get(), static_cast<DWORD>(index), buffer, &length,
                                      nullptr, nullptr, nullptr, nullptr);
    if (result != ERROR_SUCCESS) return StoreResult(result);
    *name = win32::FromWin32(std::wstring_view(buffer, length));
    return kStoreOk;
}

namespace {
SettingsStore* replacementStore = nullptr;
}  // namespace

SettingsStore& SystemSettingsStore() {
    if (replacementStore != nullptr) return *replacementStore;
    static RegistrySettingsStore registry;
    return registry;
}

void SetSystemSettingsStore(SettingsStore* store) {
    replacementStore = store;
}

}  // namespace velmora::platform
