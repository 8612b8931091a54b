// Screenshot: saves what the screen shows of a window as a 24-bit BMP under the build folder.
#pragma once

#include <windows.h>

namespace velmora::test {

// Copies the visible window to "<build>/screenshots/<name>.bmp"; false when nothing was saved.
bool SaveWindowShot(HWND window, const wchar_t* name);

}  // namespace velmora::test
