// BridgeSettings: a small ini reader for the bridge's one file.
#include "plugins/ucibridge/BridgeSettings.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <memory>

#include "platform/CodePage.h"
#include "platform/File.h"

namespace velmora::plugin {
namespace {

// The largest ini file read; the rest is ignored.
constexpr std::uint32_t kMaxFileSize = 64 * 1024;

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

bool SameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

bool IsAbsolute(const std::u16string& path) {
    return (!path.empty() && (path[0] == u'/' || path[0] == u'\\')) ||
           (path.size() > 1 && path[1] == u':');
}

}  // namespace

bool ReadBridgeSettings(std::string_view text, BridgeSettings* settings) {
    enum class Section { Engine, Options, Other } section = Section::Engine;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = Trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty() || line[0] == ';' || line[0] == '#') continue;
        if (line.front() == '[' && line.back() == ']') {
            const std::string_view name = Trimmed(line.substr(1, line.size() - 2));
            section = SameName(name, "Engine")    ? Section::Engine
                      : SameName(name, "Options") ? Section::Options
                                                  : Section::Other;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        const std::string_view name = Trimmed(line.substr(0, equals));
        const std::string_view value = Trimmed(line.substr(equals + 1));
        if (name.empty() || section == Section::Other) continue;
        if (section == Section::Options) {
            settings->options.emplace_back(name, value);
        } else if (SameName(name, "Program")) {
            settings->program = platform::AnsiToWide(value);
        } else if (SameName(name, "Arguments")) {
            settings->arguments = platform::AnsiToWide(value);
        } else if (SameName(name, "HandshakeTimeout")) {
            int timeout = 0;
            const auto [stop, error] =
                std::from_chars(value.data(), value.data() + value.size(), timeout);
            if (error == std::errc() && stop == value.data() + value.size() && timeout > 0)
                settings->handshakeTimeoutMs = timeout;
        }
    }
    return !settings->program.empty();
}

bool LoadBridgeSettings(const std::u16string& path, BridgeSettings* settings) {
    platform::ErrorCode error = 0;
    std::unique_ptr<platform::File> file =
        platform::SystemFileSystem().Open(path, platform::OpenMode::ReadShared, &error);
    if (file == nullptr) return false;
    std::string text(kMaxFileSize, '\0');
    std::uint32_t read = 0;
    if (file->Read(text.data(), kMaxFileSize, &read) != 0) return false;
    text.resize(read);
    if (!ReadBridgeSettings(text, settings)) return false;
    if (!IsAbsolute(settings->program)) settings->program = FolderOf(path) + settings->program;
    return true;
}

std::u16string FolderOf(const std::u16string& path) {
    const std::size_t separator = path.find_last_of(u"/\\");
    return separator == std::u16string::npos ? std::u16string() : path.substr(0, separator + 1);
}

}  // namespace velmora::plugin
