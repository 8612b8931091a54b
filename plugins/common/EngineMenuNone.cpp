// Engine menus where the system has none: the native build, whose libraries only tests load.
#include "plugins/common/EngineMenu.h"

namespace velmora::plugin {

MenuHandle CreateEngineMenu(int) {
    return nullptr;
}
void CheckEngineMenuLevel(MenuHandle, int) {}
void DestroyEngineMenu(MenuHandle) {}

}  // namespace velmora::plugin
