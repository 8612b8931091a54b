// MemoryFile and MemoryFileSystem: files held in strings, for tests and fuzz targets.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/File.h"

namespace velmora::test {

// A file whose bytes live in a string: reads, writes and seeks at a position, as a real file.
struct MemoryFile final : platform::File {
    using Error = platform::ErrorCode;
    explicit MemoryFile(std::string content = {}) : bytes(std::move(content)) {}

    Error Read(void* data, std::uint32_t size, std::uint32_t* bytesRead) override {
        std::size_t start = std::min<std::size_t>(position, bytes.size());
        std::uint32_t count =
            static_cast<std::uint32_t>(std::min<std::size_t>(size, bytes.size() - start));
        if (count) std::memcpy(data, bytes.data() + start, count);
        position += count;
        if (bytesRead) *bytesRead = count;
        return 0;
    }
    // Overwrites from the position, extending the file (with NUL bytes past its end).
    Error Write(const void* data, std::uint32_t size, std::uint32_t* written) override {
        if (bytes.size() < position + size) bytes.resize(position + size);
        bytes.replace(position, size, static_cast<const char*>(data), size);
        position += size;
        if (written) *written = size;
        return 0;
    }
    Error Seek(std::int64_t offset, platform::SeekOrigin origin,
               std::int64_t* newPosition) override {
        std::int64_t base = origin == platform::SeekOrigin::Begin     ? 0
                            : origin == platform::SeekOrigin::Current ? std::int64_t(position)
                                                                      : std::int64_t(bytes.size());
        if (base + offset < 0) return EINVAL;
        position = static_cast<std::size_t>(base + offset);
        if (newPosition) *newPosition = base + offset;
        return 0;
    }
    Error Size(std::int64_t* size) override {
        *size = static_cast<std::int64_t>(bytes.size());
        return 0;
    }
    Error SetEndOfFile() override {
        bytes.resize(position);
        return 0;
    }

    std::string bytes;
    std::size_t position = 0;
};

// Files by path. An open file is a copy of the stored bytes; writes to it are not stored back.
struct MemoryFileSystem final : platform::FileSystem {
    std::unique_ptr<platform::File> Open(const std::u16string& path, platform::OpenMode mode,
                                         platform::ErrorCode* error) override {
        auto found = files.find(path);
        if (found == files.end() && mode != platform::OpenMode::WriteAlways) {
            *error = ENOENT;
            return nullptr;
        }
        *error = 0;
        return std::make_unique<MemoryFile>(found == files.end() ? std::string() : found->second);
    }
    platform::ErrorCode Copy(const std::u16string& from, const std::u16string& to) override {
        auto found = files.find(from);
        if (found == files.end()) return ENOENT;
        files[to] = found->second;
        return 0;
    }
    platform::ErrorCode Delete(const std::u16string& path) override {
        return files.erase(path) ? 0 : ENOENT;
    }
    bool Exists(const std::u16string& path) override { return files.count(path) != 0; }
    // Folders are made of the paths below them ('/' and '\\' both separate): a folder exists
    // while it holds a file. Entries come in path order.
    platform::ErrorCode ListFolder(const std::u16string& folder, const std::u16string& pattern,
                                   std::vector<platform::FolderEntry>* entries) override {
        auto isSeparator = [](char16_t c) { return c == u'/' || c == u'\\'; };
        std::u16string prefix = folder;
        while (!prefix.empty() && isSeparator(prefix.back()))
            prefix.pop_back();
        entries->clear();
        bool found = false;
        for (const auto& [path, bytes] : files) {
            if (path.size() <= prefix.size() + 1 || path.compare(0, prefix.size(), prefix) != 0 ||
                !isSeparator(path[prefix.size()])) {
                continue;
            }
            found = true;
            const std::u16string rest = path.substr(prefix.size() + 1);
            const auto separator = std::find_if(rest.begin(), rest.end(), isSeparator);
            const std::u16string name(rest.begin(), separator);
            if (!platform::MatchesPattern(pattern, name)) continue;
            if (separator == rest.end()) {
                entries->push_back({name, false, false, std::int64_t(bytes.size())});
            } else if (std::none_of(entries->begin(), entries->end(),
                                    [&name](const auto& entry) { return entry.name == name; })) {
                entries->push_back({name, true, false, 0});
            }
        }
        return found ? 0 : ENOENT;
    }

    std::map<std::u16string, std::string> files;
};

}  // namespace velmora::test
