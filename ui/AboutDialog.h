// AboutDialog: the program's About box, which the main window and the game window both offer.
#pragma once

#include <windows.h>

namespace velmora {

// Shows the About box modally over owner, portrait or landscape by the screen.
void ShowAboutDialog(HWND owner);

}  // namespace velmora
