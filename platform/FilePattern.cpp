// Name patterns of folder listings, as FindFirstFileW reads them on the long names.
#include "platform/File.h"

namespace velmora::platform {
namespace {

char16_t FoldCase(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

}  // namespace

// Walks both texts once; after a mismatch the last '*' takes one more character and the
// match goes on from there.
bool MatchesPattern(std::u16string_view pattern, std::u16string_view name) {
    std::size_t p = 0, n = 0;
    std::size_t star = std::u16string_view::npos, resume = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == u'*') {
            star = p++;
            resume = n;
        } else if (p < pattern.size() &&
                   (pattern[p] == u'?' || FoldCase(pattern[p]) == FoldCase(name[n]))) {
            ++p;
            ++n;
        } else if (star != std::u16string_view::npos) {
            p = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == u'*')
        ++p;
    return p == pattern.size();
}

}  // namespace velmora::platform
