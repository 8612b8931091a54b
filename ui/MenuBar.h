// MenuBar: the desktop stand-in for the Pocket PC menu bar: a bar along the bottom of a window
// with a button per menu (a popup opens upwards) and image buttons sending commands.
#pragma once

#include <windows.h>

#include <span>

namespace velmora::pocketpc {

// SHCreateMenuBar: a bar along the bottom of parent with one button per top-level item of the
// menu resource menuId (a popup opens its submenu upwards, a plain item sends its command) and
// room for toolbar buttons after them. Returns the bar's window, or null.
HWND CreateMenuBar(HWND parent, HINSTANCE module, int menuId);
// A bar with a single "OK" button sending IDOK to parent.
HWND CreateDoneBar(HWND parent);

// A strip of 16 x 16 images side by side in one bitmap, pure red transparent.
struct ToolImages {
    HINSTANCE module;
    int bitmapId;
    int count;
};
// One image button: the image's place in the strip and the command it sends.
struct ToolButton {
    int image;
    int command;
};
// Adds image buttons to a menu bar. Returns false when the buttons could not be added.
bool AddToolButtons(HWND menuBar, const ToolImages& images, std::span<const ToolButton> buttons);

// The bar's height in pixels (0 for no bar).
int MenuBarHeight(HWND menuBar);
// The menu behind the bar's popup buttons (to enable, check or owner-draw items).
HMENU MenuBarMenu(HWND menuBar);
// Places the bar along the bottom of its parent's client area, one or two rows high.
void PlaceMenuBar(HWND menuBar);
// The menu bar of a window (created by CreateMenuBar, CreateDoneBar or InitDialog), or null.
HWND FindMenuBar(HWND parent);

}  // namespace velmora::pocketpc
