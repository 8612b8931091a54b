// MemorySettingsStore: the key tree in memory, and its text form for the per-user store file.
#include "platform/SettingsStore.h"

#include <cstdio>
#include <cstring>
#include <string_view>

#include "platform/CodePage.h"

namespace velmora::platform {

namespace {

const char* const kRootNames[2] = {"HKEY_CURRENT_USER", "HKEY_CLASSES_ROOT"};

char16_t Upper(char16_t c) {
    return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 0x20) : c;
}

bool SameName(std::u16string_view a, std::u16string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (Upper(a[i]) != Upper(b[i])) return false;
    }
    return true;
}

// Splits a backslash-separated path into its names; empty names (doubled or outer
// backslashes) are dropped, as the registry drops them.
std::vector<std::u16string_view> Split(std::u16string_view path) {
    std::vector<std::u16string_view> names;
    std::size_t start = 0;
    while (start <= path.size()) {
        std::size_t end = path.find(u'\\', start);
        if (end == std::u16string_view::npos) end = path.size();
        if (end > start) names.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return names;
}

// Writes text between double quotes as UTF-8, with backslash and quote escaped and line breaks
// written as \n and \r.
void AppendQuoted(std::string& out, std::u16string_view text) {
    out.push_back('"');
    for (char c : WideToUtf8(text)) {
        if (c == '\\' || c == '"') {
            out.push_back('\\');
        } else if (c == '\n' || c == '\r') {
            out += c == '\n' ? "\\n" : "\\r";  // one value, one line
            continue;
        }
        out.push_back(c);
    }
    out.push_back('"');
}

// Reads a quoted text at line[*at] (which must be '"'), moving *at past the closing quote.
bool ReadQuoted(std::string_view line, std::size_t* at, std::u16string* text) {
    if (*at >= line.size() || line[*at] != '"') return false;
    std::string bytes;
    for (std::size_t i = *at + 1; i < line.size(); ++i) {
        if (line[i] == '\\' && i + 1 < line.size()) {
            char c = line[++i];
            bytes.push_back(c == 'n' ? '\n' : c == 'r' ? '\r' : c);
        } else if (line[i] == '"') {
            *at = i + 1;
            *text = Utf8ToWide(bytes);
            return true;
        } else {
            bytes.push_back(line[i]);
        }
    }
    return false;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

MemorySettingsStore::Key* MemorySettingsStore::Find(StoreRoot root, const std::u16string& path,
                                                    bool create) {
    Key* key = &roots_[static_cast<int>(root)];
    for (std::u16string_view name : Split(path)) {
        Key* next = nullptr;
        for (const auto& child : key->keys) {
            if (SameName(child->name, name)) next = child.get();
        }
        if (next == nullptr) {
            if (!create) return nullptr;
            key->keys.push_back(std::make_unique<Key>());
            next = key->keys.back().get();
            next->name = name;
        }
        key = next;
    }
    return key;
}

bool MemorySettingsStore::KeyExists(StoreRoot root, const std::u16string& path) const {
    return Find(root, path) != nullptr;
}

bool MemorySettingsStore::CreateKey(StoreRoot root, const std::u16string& path) {
    return Find(root, path, true) != nullptr;
}

bool MemorySettingsStore::DeleteKey(StoreRoot root, const std::u16string& path) {
    std::vector<std::u16string_view> names = Split(path);
    if (names.empty()) return false;  // a root is never deleted
    std::u16string parentPath;
    for (std::size_t i = 0; i + 1 < names.size(); ++i)
        parentPath.append(names[i]).push_back(u'\\');
    Key* parent = Find(root, parentPath, false);
    if (parent == nullptr) return false;
    for (auto it = parent->keys.begin(); it != parent->keys.end(); ++it) {
        if (SameName((*it)->name, names.back())) {
            parent->keys.erase(it);
            return true;
        }
    }
    return false;
}

int MemorySettingsStore::ReadValue(StoreRoot root, const std::u16string& path,
                                   const std::u16string& name, ValueType* type, void* data,
                                   std::uint32_t capacity, std::uint32_t* size) const {
    const Key* key = Find(root, path);
    if (key == nullptr) return kStoreNotFound;
    for (const Value& value : key->values) {
        if (!SameName(value.name, name)) continue;
        auto bytes = static_cast<std::uint32_t>(value.data.size());
        if (type) *type = value.type;
        if (size) *size = bytes;
        if (data == nullptr) return kStoreOk;  // only the size and type were asked for
        if (bytes > capacity) return kStoreMoreData;
        if (bytes != 0) std::memcpy(data, value.data.data(), bytes);
        return kStoreOk;
    }
    return kStoreNotFound;
}

bool MemorySettingsStore::WriteValue(StoreRoot root, const std::u16string& path,
                                     const std::u16string& name, ValueType type, const void* data,
                                     std::uint32_t size) {
    Key* key = Find(root, path, false);
    if (key == nullptr) return false;
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    for (Value& value : key->values) {
        if (SameName(value.name, name)) {
            value.type = type;
            value.data.assign(bytes, bytes + size);
            return true;
        }
    }
    key->values.push_back(Value{name, type, std::vector<std::uint8_t>(bytes, bytes + size)});
    return true;
}

bool MemorySettingsStore::DeleteValue(StoreRoot root, const std::u16string& path,
                                      const std::u16string& name) {
    Key* key = Find(root, path, false);
    if (key == nullptr) return false;
    for (auto it = key->values.begin(); it != key->values.end(); ++it) {
        if (SameName(it->name, name)) {
            key->values.erase(it);
            return true;
        }
    }
    return false;
}

int MemorySettingsStore::ValueNameAt(StoreRoot root, const std::u16string& path, int index,
                                     std::u16string* name) const {
    const Key* key = Find(root, path);
    if (key == nullptr) return kStoreNotFound;
    if (index < 0 || index >= static_cast<int>(key->values.size())) return kStoreNoMoreItems;
    *name = key->values[index].name;
    return kStoreOk;
}

int MemorySettingsStore::SubkeyNameAt(StoreRoot root, const std::u16string& path, int index,
                                      std::u16string* name) const {
    const Key* key = Find(root, path);
    if (key == nullptr) return kStoreNotFound;
    if (index < 0 || index >= static_cast<int>(key->keys.size())) return kStoreNoMoreItems;
    *name = key->keys[index]->name;
    return kStoreOk;
}

std::string MemorySettingsStore::ToText() const {
    std::string out;
    // Every key is written, parents before children, so empty keys survive a round trip.
    struct Walker {
        std::string& out;
        void Walk(const Key& key, const std::string& path) {
            out += "[" + path + "]\n";
            for (const Value& value : key.values) {
                if (value.name.empty()) {
                    out += "@";
                } else {
                    AppendQuoted(out, value.name);
                }
                out += "=";
                char number[16];
                if (value.type == ValueType::Dword && value.data.size() == 4) {
                    std::uint32_t dword;
                    std::memcpy(&dword, value.data.data(), 4);
                    std::snprintf(number, sizeof number, "dword:%08x", dword);
                    out += number;
                } else if (value.type == ValueType::String && value.data.size() % 2 == 0) {
                    std::u16string text(value.data.size() / 2, u'\0');
                    std::memcpy(text.data(), value.data.data(), value.data.size());
                    if (!text.empty() && text.back() == 0) text.pop_back();
                    AppendQuoted(out, text);
                } else {
                    std::snprintf(number, sizeof number,
                                  "hex(%x):", static_cast<unsigned>(value.type));
                    out += number;
                    for (std::size_t i = 0; i < value.data.size(); ++i) {
                        std::snprintf(number, sizeof number, i ? ",%02x" : "%02x", value.data[i]);
                        out += number;
                    }
                }
                out += "\n";
            }
            for (const auto& child : key.keys)
                Walk(*child, path + "\\" + WideToUtf8(child->name));
        }
    } walker{out};
    for (int root = 0; root < 2; ++root)
        walker.Walk(roots_[root], kRootNames[root]);
    return out;
}

bool MemorySettingsStore::FromText(const std::string& text) {
    for (Key& root : roots_)
        root = Key{};
    StoreRoot root = StoreRoot::CurrentUser;
    std::u16string path;
    bool inKey = false;
    auto fail = [this]() {
        for (Key& r : roots_)
            r = Key{};
        return false;
    };
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string_view line(text.data() + start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line.empty()) continue;
        if (line.front() == '[') {
            if (line.back() != ']') return fail();
            std::string_view full = line.substr(1, line.size() - 2);
            std::string_view rootName = full.substr(0, full.find('\\'));
            if (rootName == kRootNames[0]) {
                root = StoreRoot::CurrentUser;
            } else if (rootName == kRootNames[1]) {
                root = StoreRoot::ClassesRoot;
            } else {
                return fail();
            }
            path = rootName.size() < full.size() ? Utf8ToWide(full.substr(rootName.size() + 1))
                                                 : std::u16string();
            CreateKey(root, path);
            inKey = true;
            continue;
        }
        if (!inKey) return fail();
        std::u16string name;
        std::size_t at = 0;
        if (line.front() == '@') {
            at = 1;
        } else if (!ReadQuoted(line, &at, &name)) {
            return fail();
        }
        if (at >= line.size() || line[at] != '=') return fail();
        std::string_view data = line.substr(at + 1);
        if (data.starts_with("dword:") && data.size() == 14) {
            std::uint32_t dword = 0;
            for (char c : data.substr(6)) {
                int digit = HexDigit(c);
                if (digit < 0) return fail();
                dword = dword * 16 + static_cast<std::uint32_t>(digit);
            }
            WriteValue(root, path, name, ValueType::Dword, &dword, 4);
        } else if (!data.empty() && data.front() == '"') {
            std::u16string value;
            std::size_t quoted = 0;
            if (!ReadQuoted(data, &quoted, &value) || quoted != data.size()) return fail();
            WriteValue(root, path, name, ValueType::String, value.c_str(),
                       static_cast<std::uint32_t>((value.size() + 1) * sizeof(char16_t)));
        } else if (data.starts_with("hex(")) {
            std::size_t close = data.find("):");
            if (close == std::string_view::npos) return fail();
            unsigned type = 0;
            for (char c : data.substr(4, close - 4)) {
                int digit = HexDigit(c);
                if (digit < 0) return fail();
                type = type * 16 + static_cast<unsigned>(digit);
            }
            std::vector<std::uint8_t> bytes;
            std::string_view hex = data.substr(close + 2);
            for (std::size_t i = 0; i < hex.size(); i += 3) {
                if (i + 1 >= hex.size() || HexDigit(hex[i]) < 0 || HexDigit(hex[i + 1]) < 0 ||
                    (i + 2 < hex.size() && hex[i + 2] != ',')) {
                    return fail();
                }
                bytes.push_back(
                    static_cast<std::uint8_t>(HexDigit(hex[i]) * 16 + HexDigit(hex[i + 1])));
            }
            WriteValue(root, path, name, static_cast<ValueType>(type), bytes.data(),
                       static_cast<std::uint32_t>(bytes.size()));
        } else {
            return fail();
        }
    }
    return true;
}

bool RegistryKey::Open(StoreRoot root, const std::u16string& subkey, bool create) {
    root_ = root;
    path_ = subkey;
    open_ = create ? store_->CreateKey(root, subkey) : store_->KeyExists(root, subkey);
    return open_;
}

bool RegistryKey::Open(const RegistryKey& parent, const std::u16string& subkey, bool create) {
    if (!parent.open_) {
        open_ = false;
        return false;
    }
    return Open(parent.root_, parent.path_ + u"\\" + subkey, create);
}

bool RegistryKey::GetDword(const std::u16string& name, std::uint32_t* value) const {
    std::uint32_t size = 0;
    return open_ && store_->ReadValue(root_, path_, name, nullptr, value, 4, &size) == kStoreOk &&
           size <= 4;
}

bool RegistryKey::SetDword(const std::u16string& name, std::uint32_t value) {
    return open_ && store_->WriteValue(root_, path_, name, ValueType::Dword, &value, 4);
}

bool RegistryKey::GetString(const std::u16string& name, char16_t* buffer,
                            std::uint32_t byteSize) const {
    std::uint32_t size = 0;
    return open_ &&
           store_->ReadValue(root_, path_, name, nullptr, buffer, byteSize, &size) == kStoreOk;
}

bool RegistryKey::SetString(const std::u16string& name, const std::u16string& text) {
    return open_ && store_->WriteValue(root_, path_, name, ValueType::String, text.c_str(),
                                       static_cast<std::uint32_t>((text.size() + 1) * 2));
}

bool RegistryKey::GetBinary(const std::u16string& name, void* buffer, std::uint32_t* size) const {
    return open_ && store_->ReadValue(root_, path_, name, nullptr, buffer, *size, size) == kStoreOk;
}

bool RegistryKey::SetBinary(const std::u16string& name, const void* data, std::uint32_t size) {
    return open_ && store_->WriteValue(root_, path_, name, ValueType::Binary, data, size);
}

bool RegistryKey::EnumValue(int* index, std::u16string* name) const {
    if (!open_ || store_->ValueNameAt(root_, path_, *index, name) != kStoreOk) return false;
    ++*index;
    return true;
}

bool RegistryKey::EnumSubkey(int* index, std::u16string* name) const {
    if (!open_ || store_->SubkeyNameAt(root_, path_, *index, name) != kStoreOk) return false;
    ++*index;
    return true;
}

int RegistryKey::ValueSize(const std::u16string& name) const {
    std::uint32_t size = 0;
    char probe = 0;
    // Asked with a one-byte buffer, as the size query is: only a value that does not fit in
    // it reports its size.
    if (!open_ ||
        store_->ReadValue(root_, path_, name, nullptr, &probe, 1, &size) != kStoreMoreData) {
        return -1;
    }
    return static_cast<int>(size);
}

bool RegistryKey::Exists(const std::u16string& name) const {
    std::uint32_t size = 0;
    char probe = 0;
    if (!open_) return false;
    int result = store_->ReadValue(root_, path_, name, nullptr, &probe, 1, &size);
    return result == kStoreOk || result == kStoreMoreData;
}

bool RegistryKey::DeleteValue(const std::u16string& name) {
    return open_ && store_->DeleteValue(root_, path_, name);
}

bool RegistryKey::DeleteTree(const std::u16string& name) {
    return open_ && store_->DeleteKey(root_, path_ + u"\\" + name);
}

}  // namespace velmora::platform
