// EngineInfoTexts: the texts and cells of the engine information panel of the game window.
#pragma once

#include <cstdint>
#include <string>

#include "models/BoardGeometry.h"

namespace velmora {

// Panels this wide or wider use the system font; narrower ones the notation font.
constexpr int kEngineInfoSystemFontWidth = 201;
inline bool EngineInfoUsesSystemFont(int width) {
    return width >= kEngineInfoSystemFontWidth;
}

// "Eval : " and the engine's move or evaluation text (null for none).
std::u16string EngineEvalText(const char16_t* move);
// "Depth :%3d  ".
std::u16string EngineDepthText(std::int32_t depth);
// "KN/s :%3d   ", thousands of nodes per second.
std::u16string EngineSpeedText(std::int32_t speed);
// "Time :%4d.%02d  " with whole seconds and the milliseconds left over: 3050 ms reads "3.50".
std::u16string EngineTimeText(std::int32_t milliseconds);
// "Total nodes : %d   ".
std::u16string EngineNodesText(std::int32_t nodes);
// The engine's line followed by three blanks (null for none).
std::u16string EngineLineText(const char16_t* line);

// Where each text goes: three rows of lineHeight pixels, split at the middle, then the rest of
// the panel for the line. Nothing lies below the panel's bottom.
struct EngineInfoCells {
    Rect eval;   // row 1, left
    Rect depth;  // row 1, right
    Rect time;   // row 2, left
    Rect speed;  // row 2, right
    Rect nodes;  // row 3, left
    Rect line;   // below row 3 to the panel's bottom; empty when there is no room
};
EngineInfoCells LayOutEngineInfo(const Rect& panel, int lineHeight);

}  // namespace velmora
