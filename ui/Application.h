// Application: the process-wide values set once at start-up (instances, settings, drawing
// resources, main window) that the windows and dialogs of the program reach.
#pragma once

#include <windows.h>

#include "game/UserMessages.h"

namespace velmora {

class Settings;
class DrawingResources;
class EngineHost;

struct Application {
    HINSTANCE programInstance = nullptr;
    // The program itself, or the French resource module when the system language is French.
    HINSTANCE resourceInstance = nullptr;
    Settings* settings = nullptr;
    DrawingResources* drawing = nullptr;
    // The program-wide engine host; null in tests that run windows without one.
    EngineHost* engineHost = nullptr;
    // The default owner of the string-table message box (MessageFromString).
    HWND mainWindow = nullptr;
    // The system language is French: built-in texts follow it even without the French module.
    bool french = false;
};

Application& App();

// Views the program's UTF-16 text as Win32 wide text and back, without copying (strings are
// converted by platform/win32/WideText.h).
inline const wchar_t* Wide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}
inline const char16_t* Utf16(const wchar_t* text) {
    return reinterpret_cast<const char16_t*>(text);
}

// The window handle as portable code passes it on to messages, and back.
inline MessageOwner OwnerOf(HWND window) {
    return reinterpret_cast<MessageOwner>(window);
}
inline HWND WindowOf(MessageOwner owner) {
    return reinterpret_cast<HWND>(owner);
}

}  // namespace velmora
