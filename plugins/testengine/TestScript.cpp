// Reading the test engine's script, line by line.
#include "plugins/testengine/TestScript.h"

#include <charconv>

#include "platform/CodePage.h"

namespace velmora::plugin {
namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Cuts the first word off text and returns it; text keeps the rest, without leading blanks.
std::string_view NextWord(std::string_view& text) {
    text = Trimmed(text);
    const std::size_t end = std::min(text.find_first_of(kBlanks), text.size());
    const std::string_view word = text.substr(0, end);
    text = Trimmed(text.substr(end));
    return word;
}

template <typename Number>
bool ReadNumber(std::string_view& text, Number* value) {
    const std::string_view word = NextWord(text);
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), *value);
    return error == std::errc() && end == word.data() + word.size() && !word.empty();
}

// Resolves \t, \n, \r and \\; any other backslash stays as it is.
std::string Unescaped(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = i + 1 < text.size() ? text[i + 1] : 0;
        if (text[i] != '\\' || (next != 't' && next != 'n' && next != 'r' && next != '\\')) {
            out += text[i];
            continue;
        }
        out += next == 't' ? '\t' : next == 'n' ? '\n' : next == 'r' ? '\r' : '\\';
        ++i;
    }
    return out;
}

// Reads one directive into script; false when the line is not one.
bool ReadDirective(std::string_view line, TestScript& script,
                   std::vector<ScriptedInfo>& pendingInfos) {
    const std::string_view word = NextWord(line);
    if (word == "version") return ReadNumber(line, &script.version) && line.empty();
    if (word == "flags") return ReadNumber(line, &script.flags) && line.empty();
    if (word == "delay") return ReadNumber(line, &script.delayMilliseconds) && line.empty();
    if (word == "die-after") return ReadNumber(line, &script.dieAfter) && line.empty();
    if (word == "switch-sides") return ReadNumber(line, &script.switchSidesAfter) && line.empty();
    if (word == "null" || word == "hang") {
        (word == "null" ? script.loadNull : script.hang) = true;
        return line.empty();
    }
    if (word == "name" || word == "engine-name") {
        if (line.empty()) return false;
        (word == "name" ? script.name : script.engineName) = platform::AnsiToWide(line);
        return true;
    }
    if (word == "show-info") {
        int flag = 0;
        if (!ReadNumber(line, &flag) || !line.empty()) return false;
        script.showInfo = flag;
        return true;
    }
    if (word == "time-control") {
        std::array<std::int32_t, 7> numbers{};
        for (std::int32_t& number : numbers) {
            if (!ReadNumber(line, &number)) return false;
        }
        script.timeControl = numbers;
        return line.empty();
    }
    if (word == "game-over") {
        if (!ReadNumber(line, &script.gameOverAfter)) return false;
        const std::size_t bar = line.find('|');
        if (bar == std::string_view::npos) return false;
        script.gameOverCaption = platform::AnsiToWide(Trimmed(line.substr(0, bar)));
        script.gameOverText = platform::AnsiToWide(Trimmed(line.substr(bar + 1)));
        return true;
    }
    if (word == "info") {
        ScriptedInfo info;
        if (!ReadNumber(line, &info.depth) || !ReadNumber(line, &info.speed) ||
            !ReadNumber(line, &info.nodes) || !ReadNumber(line, &info.milliseconds)) {
            return false;
        }
        info.move = std::string(NextWord(line));
        if (info.move.empty()) return false;
        info.line = Unescaped(line);
        pendingInfos.push_back(std::move(info));
        return true;
    }
    if (word == "move") {
        if (line.empty()) return false;
        script.moves.push_back({std::move(pendingInfos), platform::AnsiToWide(line)});
        pendingInfos.clear();
        return true;
    }
    return false;
}

}  // namespace

TestScript ParseTestScript(std::string_view text) {
    TestScript script;
    std::vector<ScriptedInfo> pendingInfos;
    int number = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = Trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        ++number;
        if (line.empty() || line.front() == '#') continue;
        if (!ReadDirective(line, script, pendingInfos))
            script.errors.push_back("line " + std::to_string(number) + ": " + std::string(line));
    }
    if (!pendingInfos.empty())
        script.errors.push_back("info lines after the last move are never sent");
    return script;
}

}  // namespace velmora::plugin
