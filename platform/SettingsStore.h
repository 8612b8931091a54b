// SettingsStore: the per-user store of keys and typed values, as the Windows registry keeps them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace velmora::platform {

// The two roots the program uses.
enum class StoreRoot { CurrentUser, ClassesRoot };

// Value types, numbered as the registry numbers them.
enum class ValueType : std::uint32_t { String = 1, Binary = 3, Dword = 4 };

// Result of a read that may not fit: kStoreMoreData is the registry's ERROR_MORE_DATA.
constexpr int kStoreOk = 0;
constexpr int kStoreNotFound = 2;
constexpr int kStoreMoreData = 234;
constexpr int kStoreNoMoreItems = 259;

// A tree of keys; each key holds named values and subkeys. Key and value names compare
// ignoring the case of ASCII letters, and keep the case they were created with. The empty
// value name is the key's default value.
class SettingsStore {
  public:
    virtual ~SettingsStore() = default;

    // Paths are subkey names joined by backslashes, below the root.
    virtual bool KeyExists(StoreRoot root, const std::u16string& path) const = 0;
    // Creates the key and any missing parent; true when it exists afterwards.
    virtual bool CreateKey(StoreRoot root, const std::u16string& path) = 0;
    // Removes the key with all its values and subkeys.
    virtual bool DeleteKey(StoreRoot root, const std::u16string& path) = 0;
    // Reads a value: kStoreOk, kStoreNotFound (no key or no value) or kStoreMoreData when it
    // holds more than capacity bytes. *size receives the value's size in bytes either way.
    virtual int ReadValue(StoreRoot root, const std::u16string& path, const std::u16string& name,
                          ValueType* type, void* data, std::uint32_t capacity,
                          std::uint32_t* size) const = 0;
    virtual bool WriteValue(StoreRoot root, const std::u16string& path, const std::u16string& name,
                            ValueType type, const void* data, std::uint32_t size) = 0;
    virtual bool DeleteValue(StoreRoot root, const std::u16string& path,
                             const std::u16string& name) = 0;
    // The name of the value or subkey at index: kStoreOk, kStoreNoMoreItems past the last one,
    // kStoreNotFound without the key. The memory store keeps creation order; the registry has an
    // order of its own (Wine sorts names), so callers must not rely on it.
    virtual int ValueNameAt(StoreRoot root, const std::u16string& path, int index,
                            std::u16string* name) const = 0;
    virtual int SubkeyNameAt(StoreRoot root, const std::u16string& path, int index,
                             std::u16string* name) const = 0;
};

// A store held in memory: what tests use, and what the file store keeps between loads.
class MemorySettingsStore : public SettingsStore {
  public:
    bool KeyExists(StoreRoot root, const std::u16string& path) const override;
    bool CreateKey(StoreRoot root, const std::u16string& path) override;
    bool DeleteKey(StoreRoot root, const std::u16string& path) override;
    int ReadValue(StoreRoot root, const std::u16string& path, const std::u16string& name,
                  ValueType* type, void* data, std::uint32_t capacity,
                  std::uint32_t* size) const override;
    bool WriteValue(StoreRoot root, const std::u16string& path, const std::u16string& name,
                    ValueType type, const void* data, std::uint32_t size) override;
    bool DeleteValue(StoreRoot root, const std::u16string& path,
                     const std::u16string& name) override;
    int ValueNameAt(StoreRoot root, const std::u16string& path, int index,
                    std::u16string* name) const override;
    int SubkeyNameAt(StoreRoot root, const std::u16string& path, int index,
                     std::u16string* name) const override;

    // The whole store as text, in the layout of a registry export: a "[ROOT\path]" line per
    // key, then one line per value: "name"=dword:0000002a, "name"="text" (with \\ and \"
    // escaped) or "name"=hex:01,02; @ stands for the default value's name. UTF-8.
    std::string ToText() const;
    // Replaces the store by what such a text holds. Returns false, leaving the store empty,
    // when a line cannot be read.
    bool FromText(const std::string& text);

  protected:
    struct Value {
        std::u16string name;
        ValueType type;
        std::vector<std::uint8_t> data;
    };
    struct Key {
        std::u16string name;
        std::vector<Value> values;               // in creation order
        std::vector<std::unique_ptr<Key>> keys;  // in creation order
    };
    // The key at path, created with its parents when create is set; null when missing.
    Key* Find(StoreRoot root, const std::u16string& path, bool create);
    const Key* Find(StoreRoot root, const std::u16string& path) const {
        return const_cast<MemorySettingsStore*>(this)->Find(root, path, false);
    }

    Key roots_[2];
};

#ifdef _WIN32
// The Windows registry itself, under HKEY_CURRENT_USER and HKEY_CLASSES_ROOT. Every operation
// opens the key it needs and closes it again, so nothing is held between calls.
class RegistrySettingsStore : public SettingsStore {
  public:
    bool KeyExists(StoreRoot root, const std::u16string& path) const override;
    bool CreateKey(StoreRoot root, const std::u16string& path) override;
    bool DeleteKey(StoreRoot root, const std::u16string& path) override;
    int ReadValue(StoreRoot root, const std::u16string& path, const std::u16string& name,
                  ValueType* type, void* data, std::uint32_t capacity,
                  std::uint32_t* size) const override;
    bool WriteValue(StoreRoot root, const std::u16string& path, const std::u16string& name,
                    ValueType type, const void* data, std::uint32_t size) override;
    bool DeleteValue(StoreRoot root, const std::u16string& path,
                     const std::u16string& name) override;
    int ValueNameAt(StoreRoot root, const std::u16string& path, int index,
                    std::u16string* name) const override;
    int SubkeyNameAt(StoreRoot root, const std::u16string& path, int index,
                     std::u16string* name) const override;
};
#else
// The per-user store of systems without a registry: a MemorySettingsStore kept in one text file
// (the ToText form). Each change rewrites the whole file through a temporary beside it that is
// renamed over it, so a crash never leaves half a file.
class FileSettingsStore : public SettingsStore {
  public:
    // Loads path. A missing file gives an empty store; a file that cannot be read or parsed is
    // renamed to path + ".bad" and the store starts empty. When even that rename fails, changes
    // stay in memory so that the file is never replaced without a copy. An empty path keeps
    // everything in memory.
    explicit FileSettingsStore(std::u16string path);

    bool KeyExists(StoreRoot root, const std::u16string& path) const override;
    bool CreateKey(StoreRoot root, const std::u16string& path) override;
    bool DeleteKey(StoreRoot root, const std::u16string& path) override;
    int ReadValue(StoreRoot root, const std::u16string& path, const std::u16string& name,
                  ValueType* type, void* data, std::uint32_t capacity,
                  std::uint32_t* size) const override;
    // The changing operations return false also when the change could not be written to the
    // file; the store in memory holds it all the same.
    bool WriteValue(StoreRoot root, const std::u16string& path, const std::u16string& name,
                    ValueType type, const void* data, std::uint32_t size) override;
    bool DeleteValue(StoreRoot root, const std::u16string& path,
                     const std::u16string& name) override;
    int ValueNameAt(StoreRoot root, const std::u16string& path, int index,
                    std::u16string* name) const override;
    int SubkeyNameAt(StoreRoot root, const std::u16string& path, int index,
                     std::u16string* name) const override;

    const std::u16string& FilePath() const { return path_; }

  private:
    // Writes the whole store to the file; true when it is on disk.
    bool Persist();

    std::u16string path_;
    bool persisting_ = true;
    MemorySettingsStore memory_;
};

// The store file for the given values of XDG_CONFIG_HOME and HOME (either may be null):
// "<XDG_CONFIG_HOME>/velmora/registry" when that is an absolute path, else
// "<HOME>/.config/velmora/registry"; empty when neither is usable.
std::u16string SettingsFilePath(const char* xdgConfigHome, const char* home);
// The same from this process's environment.
std::u16string DefaultSettingsFilePath();
#endif

// The store the program keeps its settings in: the registry on Windows, the file at
// DefaultSettingsFilePath() elsewhere, created on first use.
SettingsStore& SystemSettingsStore();
// Puts store in place of the system store (for tests and tools); null restores the system store.
void SetSystemSettingsStore(SettingsStore* store);

// One open key of a store, or none when opening failed: every operation on a key that is not
// open fails without touching the store.
class RegistryKey {
  public:
    explicit RegistryKey(SettingsStore& store) : store_(&store) {}

    // Opens root\subkey; with create, makes it (and its parents) when missing.
    bool Open(StoreRoot root, const std::u16string& subkey, bool create);
    // Opens a subkey of an open key.
    bool Open(const RegistryKey& parent, const std::u16string& subkey, bool create);
    void Close() { open_ = false; }
    bool IsOpen() const { return open_; }

    bool GetDword(const std::u16string& name, std::uint32_t* value) const;
    bool SetDword(const std::u16string& name, std::uint32_t value);
    // Reads a string value into buffer, which holds byteSize bytes; false when it is missing
    // or does not fit whole (terminator included).
    bool GetString(const std::u16string& name, char16_t* buffer, std::uint32_t byteSize) const;
    // Writes text and its terminator.
    bool SetString(const std::u16string& name, const std::u16string& text);
    bool GetDefaultString(char16_t* buffer, std::uint32_t byteSize) const {
        return GetString(u"", buffer, byteSize);
    }
    bool SetDefaultString(const std::u16string& text) { return SetString(u"", text); }
    // Reads a binary value into buffer; *size holds the buffer's size in bytes and receives the
    // value's. False when it is missing or does not fit.
    bool GetBinary(const std::u16string& name, void* buffer, std::uint32_t* size) const;
    bool SetBinary(const std::u16string& name, const void* data, std::uint32_t size);
    // The name of the value or subkey at *index; on success *index moves to the next one. False
    // past the last one. The order is the store's own.
    bool EnumValue(int* index, std::u16string* name) const;
    bool EnumSubkey(int* index, std::u16string* name) const;
    // The value's size in bytes, or -1 when it is missing or empty.
    int ValueSize(const std::u16string& name) const;
    bool Exists(const std::u16string& name) const;
    bool DeleteValue(const std::u16string& name);
    // Deletes the subkey name of this key with everything below it.
    bool DeleteTree(const std::u16string& name);

    StoreRoot Root() const { return root_; }
    const std::u16string& Path() const { return path_; }

  private:
    SettingsStore* store_;
    StoreRoot root_ = StoreRoot::CurrentUser;
    std::u16string path_;
    bool open_ = false;
};

}  // namespace velmora::platform
