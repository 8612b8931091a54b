// DocumentFolders: the folder search behind the document list and the rows it shows.
#include "models/DocumentFolders.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/Paths.h"

namespace velmora {
namespace {

char16_t FoldCase(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

bool IsSeparator(char16_t c) {
    return c == u'\\' || c == u'/';
}

std::u16string WithSeparator(std::u16string folder) {
    if (!folder.empty() && !IsSeparator(folder.back())) folder += platform::PathSeparator();
    return folder;
}

std::u16string Number(std::uint64_t value) {
    std::string digits = std::to_string(value);
    return std::u16string(digits.begin(), digits.end());
}

}  // namespace

int CompareIgnoringCase(const std::u16string& a, const std::u16string& b) {
    const std::size_t length = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < length; ++i) {
        const char16_t x = FoldCase(a[i]), y = FoldCase(b[i]);
        if (x != y) return x < y ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

DocumentFolders::DocumentFolders(platform::FileSystem& files, std::u16string root,
                                 std::u16string pattern, NameCompare compare)
    : files_(files),
      root_(WithSeparator(std::move(root))),
      pattern_(std::move(pattern)),
      compare_(std::move(compare)) {}

void DocumentFolders::StartIn(const std::u16string& folder) {
    std::vector<platform::FolderEntry> entries;
    folder_.clear();
    if (!folder.empty() && files_.ListFolder(folder, u"*", &entries) == 0) {
        folder_ = WithSeparator(folder);
    }
}

void DocumentFolders::Collect(const std::u16string& folder, bool recursive, int depth,
                              std::vector<DocumentRow>& rows,
                              std::vector<std::u16string>* holding) const {
    std::vector<platform::FolderEntry> entries;
    bool any = false;
    if (files_.ListFolder(folder, pattern_, &entries) == 0) {
        for (const platform::FolderEntry& entry : entries) {
            if (!entry.isFolder && rows.size() < kMaxFiles) {
                rows.push_back({folder + entry.name, {}, SizeText(entry.size)});
                any = true;
            }
        }
    }
    if (any && holding != nullptr) holding->push_back(folder);
    if (!recursive || depth >= kMaxDepth || files_.ListFolder(folder, u"*", &entries) != 0) return;
    // Hidden folders and those named like ".git" are not searched.
    std::vector<std::u16string> subfolders;
    for (const platform::FolderEntry& entry : entries) {
        if (entry.isFolder && !entry.hidden && !entry.name.empty() && entry.name[0] != u'.') {
            subfolders.push_back(folder + entry.name + platform::PathSeparator());
        }
    }
    std::sort(
        subfolders.begin(), subfolders.end(),
        [this](const std::u16string& a, const std::u16string& b) { return compare_(a, b) < 0; });
    for (const std::u16string& subfolder : subfolders) {
        Collect(subfolder, true, depth + 1, rows, holding);
    }
}

void DocumentFolders::Refresh() {
    std::vector<DocumentRow> found;
    folders_.clear();
    Collect(root_, true, 0, found, &folders_);
    if (std::find(folders_.begin(), folders_.end(), root_) == folders_.end()) {
        folders_.insert(folders_.begin(), root_);
    }
    if (!folder_.empty() &&
        std::find(folders_.begin(), folders_.end(), folder_) == folders_.end()) {
        folders_.push_back(folder_);
    }
    ListRows();
}

void DocumentFolders::Choose(int entry) {
    folder_ = entry <= 0 || entry > static_cast<int>(folders_.size()) ? std::u16string()
                                                                      : folders_[entry - 1];
    ListRows();
}

void DocumentFolders::ListRows() {
    rows_.clear();
    if (folder_.empty()) {
        Collect(root_, true, 0, rows_, nullptr);
    } else {
        Collect(folder_, false, 0, rows_, nullptr);
        std::sort(rows_.begin(), rows_.end(), [this](const DocumentRow& a, const DocumentRow& b) {
            return compare_(a.path, b.path) < 0;
        });
    }
    const std::size_t base = (folder_.empty() ? root_ : folder_).size();
    for (DocumentRow& row : rows_)
        row.name = row.path.substr(base);
}

std::u16string DocumentFolders::Label(const std::u16string& folder) const {
    const std::size_t rootLength = root_.size();
    if (folder.size() < rootLength || compare_(folder.substr(0, rootLength), root_) != 0) {
        return folder;
    }
    const std::u16string trimmed = root_.substr(0, rootLength - 1);
    const auto slash = std::find_if(trimmed.rbegin(), trimmed.rend(), IsSeparator);
    std::u16string label(slash.base(), trimmed.end());
    const std::u16string below = folder.substr(rootLength);
    if (!below.empty()) label += platform::PathSeparator() + below.substr(0, below.size() - 1);
    return label;
}

// Several folders may equal the one shown but for letter case: the last of them is chosen.
int DocumentFolders::ChosenEntry() const {
    int chosen = 0;
    for (std::size_t i = 0; i < folders_.size() && !folder_.empty(); ++i) {
        if (compare_(folders_[i], folder_) == 0) chosen = static_cast<int>(i) + 1;
    }
    return chosen;
}

std::u16string DocumentFolders::SizeText(std::int64_t bytes) {
    constexpr std::uint64_t kKilo = 1024, kMega = 1024 * 1024;
    const auto size = static_cast<std::uint64_t>(bytes < 0 ? 0 : bytes);
    if (size < kKilo) return Number(size) + u" B";
    if (size < kMega) return Number((size + kKilo - 1) / kKilo) + u" KB";
    return Number(size / kMega) + u"." + Number(size % kMega * 10 / kMega) + u" MB";
}

}  // namespace velmora
