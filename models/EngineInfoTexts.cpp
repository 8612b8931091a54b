// The engine information panel's texts, printed as the panel has always printed them, and its
// cells.
#include "models/EngineInfoTexts.h"

#include <algorithm>
#include <cstdio>

namespace velmora {
namespace {

std::u16string Widened(const char* text, int length) {
    std::u16string wide;
    for (int i = 0; i < length; ++i)
        wide += static_cast<char16_t>(static_cast<unsigned char>(text[i]));
    return wide;
}

template <typename... Numbers>
std::u16string Printed(const char* format, Numbers... numbers) {
    char text[64];
    const int length = std::snprintf(text, sizeof text, format, numbers...);
    return Widened(text, std::clamp(length, 0, static_cast<int>(sizeof text) - 1));
}

}  // namespace

std::u16string EngineEvalText(const char16_t* move) {
    return u"Eval : " + std::u16string(move != nullptr ? move : u"");
}

std::u16string EngineDepthText(std::int32_t depth) {
    return Printed("Depth :%3d  ", static_cast<int>(depth));
}

std::u16string EngineSpeedText(std::int32_t speed) {
    return Printed("KN/s :%3d   ", static_cast<int>(speed));
}

std::u16string EngineTimeText(std::int32_t milliseconds) {
    // The remainder is in milliseconds but printed with two places, so 3050 ms reads "3.50"
    // and 3500 ms "3.500": the panel has always shown it so.
    const int seconds = milliseconds / 1000;
    const int rest = milliseconds - 1000 * seconds;
    return Printed("Time :%4d.%02d  ", seconds, rest);
}

std::u16string EngineNodesText(std::int32_t nodes) {
    return Printed("Total nodes : %d   ", static_cast<int>(nodes));
}

std::u16string EngineLineText(const char16_t* line) {
    return std::u16string(line != nullptr ? line : u"") + u"   ";
}

EngineInfoCells LayOutEngineInfo(const Rect& panel, int lineHeight) {
    const int mid = panel.left + (panel.right - panel.left) / 2;
    const auto row = [&](int index) {
        const int top = std::min(panel.top + index * lineHeight, panel.bottom);
        return std::pair{top, std::min(top + lineHeight, panel.bottom)};
    };
    EngineInfoCells cells;
    const auto [top1, bottom1] = row(0);
    const auto [top2, bottom2] = row(1);
    const auto [top3, bottom3] = row(2);
    cells.eval = {panel.left, top1, mid, bottom1};
    cells.depth = {mid, top1, panel.right, bottom1};
    cells.time = {panel.left, top2, mid, bottom2};
    cells.speed = {mid, top2, panel.right, bottom2};
    cells.nodes = {panel.left, top3, mid, bottom3};
    cells.line = {panel.left, bottom3, panel.right, panel.bottom};
    if (cells.line.IsEmpty()) cells.line = {};
    return cells;
}

}  // namespace velmora
