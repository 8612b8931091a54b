// Screenshot: saves what the screen shows of a window as a 24-bit BMP under the build folder.
#pragma once

#include <windows.h>

namespace velmora::test {

// Copies the screen inside window's rectangle (clipped to the screen) to
// "<build>/screenshots/<name>.bmp", creating the folder when it is missing. The window must be
// visible and not covered; a window of this thread is repainted first, one of another process
// must have painted already. Returns false when nothing could be captured or written.
bool SaveWindowShot(HWND window, const wchar_t* name);

}  // namespace velmora::test
