// Application: the process-wide values set once at start-up (instances, settings, drawing
// resources, main window) that the windows and dialogs of the program reach.
#pragma once

#include <windows.h>

#include <string>

namespace velmora {

class Settings;
class DrawingResources;
class MainWindow;

struct Application {
    HINSTANCE programInstance = nullptr;
    // The program itself, or the French resource module when the system language is French.
    HINSTANCE resourceInstance = nullptr;
    Settings* settings = nullptr;
    DrawingResources* drawing = nullptr;
    MainWindow* mainWindow = nullptr;
    HWND mainWindowHandle = nullptr;
    bool french = false;
};

Application& App();

// Loads string id from the resource module; fallback when it is missing.
std::wstring LoadText(int id, const wchar_t* fallback = L"???");

// Converts between the program's UTF-16 text and the Win32 wide strings.
inline const wchar_t* Wide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}
inline const char16_t* Utf16(const wchar_t* text) {
    return reinterpret_cast<const char16_t*>(text);
}
inline std::wstring Wide(const std::u16string& text) {
    return std::wstring(text.begin(), text.end());
}
inline std::u16string Utf16(const std::wstring& text) {
    return std::u16string(text.begin(), text.end());
}

}  // namespace velmora
