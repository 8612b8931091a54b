// The save-target dialog's choices and button stacking.
#include "models/SaveTargets.h"

#include <algorithm>

#include "models/Settings.h"

namespace velmora {

std::u16string FileNamePart(const std::u16string& path) {
    const std::size_t slash = path.find_last_of(u"\\/");
    return slash == std::u16string::npos ? path : path.substr(slash + 1);
}

std::vector<std::u16string> AppendLabels(const RecentList& recent) {
    std::vector<std::u16string> labels;
    const int shown = std::min(recent.Count(), kRecentTargetButtons);
    for (int k = 0; k < shown; ++k)
        labels.push_back(u"Append to " + FileNamePart(recent.At(recent.Count() - 1 - k)));
    return labels;
}

std::u16string RecentTargetPath(const RecentList& recent, int button) {
    if (button < 0 || button >= std::min(recent.Count(), kRecentTargetButtons)) return {};
    return recent.At(recent.Count() - 1 - button);
}

std::vector<ButtonBox> StackButtons(const std::vector<ButtonBox>& sizes, int clientWidth) {
    std::vector<ButtonBox> placed;
    int top = 3;
    for (const ButtonBox& size : sizes) {
        ButtonBox box = size;
        box.left = (clientWidth - size.width) / 2;
        box.top = top;
        top += size.height + 2;
        placed.push_back(box);
    }
    return placed;
}

}  // namespace velmora
