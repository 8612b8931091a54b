// OptionsSheet: the "Velmora options" property sheet (Display, Startup, Colors) that edits
// the settings in place.
#pragma once

#include <windows.h>

namespace velmora {

class Settings;

// Runs the sheet over owner. Each page that was shown writes its controls into settings when
// the sheet closes, by OK or by Cancel alike. Only OK rebuilds the drawing resources' colours
// and saves the settings; the function then returns true.
bool RunOptionsSheet(HWND owner, Settings& settings);

// The Colors page draws its preview board with squares of this size from this corner.
constexpr int kPreviewLeft = 19;
constexpr int kPreviewTop = 175;
constexpr int kPreviewSquare = 10;

}  // namespace velmora
