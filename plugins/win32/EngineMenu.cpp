// Engine menus on Windows: a popup menu the game window tracks and sends the commands of.
#include <windows.h>

#include "plugins/common/EngineMenu.h"

namespace velmora::plugin {

MenuHandle CreateEngineMenu(int checked) {
    HMENU menu = CreatePopupMenu();
    if (menu == nullptr) return nullptr;
    for (const TimeLevel& level : TimeLevels()) {
        const UINT flags = MF_STRING | (level.command == checked ? MF_CHECKED : MF_UNCHECKED);
        AppendMenuW(menu, flags, static_cast<UINT_PTR>(level.command),
                    reinterpret_cast<const wchar_t*>(level.text));
    }
    AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu, MF_STRING, kMoveNowCommand, reinterpret_cast<const wchar_t*>(kMoveNowText));
    return menu;
}

void CheckEngineMenuLevel(MenuHandle menu, int command) {
    if (menu == nullptr) return;
    for (const TimeLevel& level : TimeLevels()) {
        CheckMenuItem(static_cast<HMENU>(menu), static_cast<UINT>(level.command),
                      MF_BYCOMMAND | (level.command == command ? MF_CHECKED : MF_UNCHECKED));
    }
}

void DestroyEngineMenu(MenuHandle menu) {
    if (menu != nullptr) DestroyMenu(static_cast<HMENU>(menu));
}

}  // namespace velmora::plugin
