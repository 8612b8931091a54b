// SaveTargets: the choices of the save-target dialog: a new file, one of the recent files
// (newest first), or another file; and how its buttons stack on the screen.
#pragma once

#include <string>
#include <vector>

namespace velmora {

class RecentList;

// The buttons that name recent files, at most this many.
constexpr int kRecentTargetButtons = 5;

// The file name part of a path: what follows its last backslash or slash.
std::u16string FileNamePart(const std::u16string& path);

// The labels of the recent-file buttons, newest file first: "Append to <file name>".
std::vector<std::u16string> AppendLabels(const RecentList& recent);
// The path of recent-file button k (0 for the newest); empty when there is no such button.
std::u16string RecentTargetPath(const RecentList& recent, int button);

// A button's rectangle in client coordinates.
struct ButtonBox {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

// Stacks the visible buttons, each keeping its size: centred across clientWidth, the first at
// y = 3, each next one 2 pixels below the one before.
std::vector<ButtonBox> StackButtons(const std::vector<ButtonBox>& sizes, int clientWidth);

}  // namespace velmora
