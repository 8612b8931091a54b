// Window screenshots as 24-bit BMP files, copied from the screen.
#include "win32/Screenshot.h"

#include <filesystem>
#include <fstream>

namespace velmora::test {

bool SaveWindowShot(HWND window, const wchar_t* name) {
    if (!IsWindow(window) || name == nullptr) return false;
    const bool ours = GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
    if (ours) {
        RedrawWindow(window, nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    }
    // The window's rectangle, clipped to the screen.
    const RECT screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    RECT windowRect{}, rect{};
    if (!GetWindowRect(window, &windowRect) || !IntersectRect(&rect, &windowRect, &screen)) {
        return false;
    }
    const int width = rect.right - rect.left;
    const int height = rect.bottom - rect.top;

    // A positive height: bottom-up rows, as a BMP file stores them.
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    info.bmiHeader.biSizeImage = ((static_cast<DWORD>(width) * 3 + 3) & ~3u) * height;

    // A window of this thread is copied from its own device context: under Wine that reads what
    // was painted, while the screen may not have received the latest painting yet. Another
    // process's window can only be copied from the screen.
    HDC screenDc = GetDC(nullptr);
    HDC source = ours ? GetWindowDC(window) : screenDc;
    HDC memory = CreateCompatibleDC(screenDc);
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(screenDc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    bool copied = false;
    if (source != nullptr && memory != nullptr && bitmap != nullptr) {
        HGDIOBJ previous = SelectObject(memory, bitmap);
        copied = BitBlt(memory, 0, 0, width, height, source,
                        ours ? rect.left - windowRect.left : rect.left,
                        ours ? rect.top - windowRect.top : rect.top, SRCCOPY | CAPTUREBLT) != 0;
        GdiFlush();
        SelectObject(memory, previous);
    }
    bool saved = false;
    if (copied) {
        const std::filesystem::path folder = VELMORA_SCREENSHOT_DIR;
        std::filesystem::create_directories(folder);
        BITMAPFILEHEADER file{};
        file.bfType = 0x4D42;  // "BM"
        file.bfOffBits = sizeof(file) + sizeof(info.bmiHeader);
        file.bfSize = file.bfOffBits + info.bmiHeader.biSizeImage;
        std::ofstream out(folder / (std::wstring(name) + L".bmp"), std::ios::binary);
        out.write(reinterpret_cast<const char*>(&file), sizeof(file));
        out.write(reinterpret_cast<const char*>(&info.bmiHeader), sizeof(info.bmiHeader));
        out.write(static_cast<const char*>(bits), info.bmiHeader.biSizeImage);
        saved = out.good();
    }
    if (bitmap != nullptr) DeleteObject(bitmap);
    if (memory != nullptr) DeleteDC(memory);
    if (ours && source != nullptr) ReleaseDC(window, source);
    if (screenDc != nullptr) ReleaseDC(nullptr, screenDc);
    return saved;
}

}  // namespace velmora::test
