// What both systems share about child programs: splitting arguments and output lines.
#include <string>
#include <vector>

#include "platform/Process.h"

namespace velmora::platform {

std::vector<std::u16string> SplitArguments(std::u16string_view arguments) {
    std::vector<std::u16string> words;
    std::u16string word;
    bool inWord = false;
    bool quoted = false;
    for (const char16_t c : arguments) {
        if (c == u'"') {
            quoted = !quoted;
            inWord = true;
        } else if (!quoted && (c == u' ' || c == u'\t')) {
            if (inWord) words.push_back(word);
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (inWord) words.push_back(word);
    return words;
}

void OutputLines::Add(const char* bytes, std::size_t count) {
    pending_.append(bytes, count);
    std::size_t start = 0;
    for (std::size_t end; (end = pending_.find('\n', start)) != std::string::npos;
         start = end + 1) {
        std::size_t length = end - start;
        if (length > 0 && pending_[end - 1] == '\r') --length;
        if (handler_) handler_(pending_.substr(start, length));
    }
    pending_.erase(0, start);
}

void OutputLines::Finish() {
    if (!pending_.empty() && handler_) handler_(pending_);
    pending_.clear();
}

}  // namespace velmora::platform
