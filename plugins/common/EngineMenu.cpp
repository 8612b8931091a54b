// The time controls of the engine menus.
#include "plugins/common/EngineMenu.h"

namespace velmora::plugin {
namespace {

constexpr TimeLevel kLevels[] = {
    {kFirstLevelCommand + 0, u"1 second per move", {1, 0, 0, 0, 0, 0, 0}},
    {kFirstLevelCommand + 1, u"5 seconds per move", {5, 0, 0, 0, 0, 0, 0}},
    {kFirstLevelCommand + 2, u"30 seconds per move", {30, 0, 0, 0, 0, 0, 0}},
    {kFirstLevelCommand + 3, u"5 minutes", {0, 0, 300, 0, 0, 0, 0}},
    {kFirstLevelCommand + 4, u"5 minutes + 3 s", {0, 0, 300, 0, 0, 0, 3}},
    {kFirstLevelCommand + 5, u"15 minutes", {0, 0, 900, 0, 0, 0, 0}},
    {kFirstLevelCommand + 6, u"15 minutes + 10 s", {0, 0, 900, 0, 0, 0, 10}},
    {kFirstLevelCommand + 7, u"40 moves in 2 hours", {0, 40, 7200, 0, 0, 0, 0}},
    {kFirstLevelCommand + 8, u"40 moves in 2 hours, then 1 hour", {0, 40, 7200, 0, 3600, 0, 0}},
};

}  // namespace

std::span<const TimeLevel> TimeLevels() {
    return kLevels;
}

const TimeLevel* LevelOfCommand(std::uintptr_t command) {
    for (const TimeLevel& level : kLevels) {
        if (static_cast<std::uintptr_t>(level.command) == command) return &level;
    }
    return nullptr;
}

}  // namespace velmora::plugin
