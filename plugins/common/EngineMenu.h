// EngineMenu: the time controls an engine library offers in its menu, and "Move now".
#pragma once

#include <cstdint>
#include <span>

#include "engine/PluginInterface.h"

namespace velmora::plugin {

// One time control of the menu: its command, its text, and the clock's seven numbers (time
// per move, first control moves and time, second control moves and time, third control time,
// increment; times in seconds).
struct TimeLevel {
    int command;
    const char16_t* text;
    std::int32_t numbers[7];
};

// Commands of the engine menus lie in a range of their own, away from the program's.
constexpr int kFirstLevelCommand = 45001;
constexpr int kMoveNowCommand = 45100;
constexpr const char16_t* kMoveNowText = u"Move now";

// The time controls, in menu order.
std::span<const TimeLevel> TimeLevels();
// The level of a command, or null when the command is not a level.
const TimeLevel* LevelOfCommand(std::uintptr_t command);

// Creates the popup menu: the levels, a separator and "Move now", with checked's level
// marked. Null where the system has no menus (the native tests).
MenuHandle CreateEngineMenu(int checked);
// Moves the mark to the level of command.
void CheckEngineMenuLevel(MenuHandle menu, int command);
void DestroyEngineMenu(MenuHandle menu);

}  // namespace velmora::plugin
