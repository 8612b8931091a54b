// Window screenshots as 24-bit BMP files, copied from the screen.
#include "win32/Screenshot.h"

#include <algorithm>
#include <string>

namespace velmora::test {
namespace {

// The screenshot folder as a Windows path, created when it is missing.
std::wstring ShotFolder() {
    const std::string folder = VELMORA_SCREENSHOT_DIR;
    std::wstring path(folder.begin(), folder.end());
    std::replace(path.begin(), path.end(), L'/', L'\\');
    CreateDirectoryW(path.c_str(), nullptr);
    return path;
}

// Writes the header and the bottom-up rows of a 24-bit bitmap to path.
bool WriteBmp(const std::wstring& path, const BITMAPINFOHEADER& header, const void* bits,
              DWORD bitsSize) {
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;  // "BM"
    file.bfOffBits = sizeof(file) + sizeof(header);
    file.bfSize = file.bfOffBits + bitsSize;
    HANDLE out = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
    if (out == INVALID_HANDLE_VALUE) return false;
    DWORD written = 0;
    bool saved =
        WriteFile(out, &file, sizeof(file), &written, nullptr) && written == sizeof(file) &&
        WriteFile(out, &header, sizeof(header), &written, nullptr) && written == sizeof(header) &&
        WriteFile(out, bits, bitsSize, &written, nullptr) && written == bitsSize;
    CloseHandle(out);
    return saved;
}

}  // namespace

bool SaveWindowShot(HWND window, const wchar_t* name) {
    if (!IsWindow(window) || name == nullptr) return false;
    const bool ours = GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
    if (ours) {
        RedrawWindow(window, nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    }
    RECT rect{};
    if (!GetWindowRect(window, &rect)) return false;
    const int screenLeft = GetSystemMetrics(SM_XVIRTUALSCREEN);
    const int screenTop = GetSystemMetrics(SM_YVIRTUALSCREEN);
    rect.left = std::max<LONG>(rect.left, screenLeft);
    rect.top = std::max<LONG>(rect.top, screenTop);
    rect.right = std::min<LONG>(rect.right, screenLeft + GetSystemMetrics(SM_CXVIRTUALSCREEN));
    rect.bottom = std::min<LONG>(rect.bottom, screenTop + GetSystemMetrics(SM_CYVIRTUALSCREEN));
    const int width = rect.right - rect.left;
    const int height = rect.bottom - rect.top;
    if (width <= 0 || height <= 0) return false;

    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;  // positive: bottom-up rows, as a BMP file stores them
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    info.bmiHeader.biCompression = BI_RGB;
    const DWORD stride = (static_cast<DWORD>(width) * 3 + 3) & ~3u;
    info.bmiHeader.biSizeImage = stride * static_cast<DWORD>(height);

    // A window of this thread is copied from its own device context: under Wine that reads what
    // was painted, while the screen may not have received the latest painting yet. Another
    // process's window can only be copied from the screen.
    HDC screen = GetDC(nullptr);
    if (screen == nullptr) return false;
    HDC source = ours ? GetWindowDC(window) : screen;
    RECT windowRect{};
    GetWindowRect(window, &windowRect);
    const int sourceLeft = ours ? rect.left - windowRect.left : rect.left;
    const int sourceTop = ours ? rect.top - windowRect.top : rect.top;
    HDC memory = CreateCompatibleDC(screen);
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    bool saved = false;
    if (memory != nullptr && bitmap != nullptr) {
        HGDIOBJ previous = SelectObject(memory, bitmap);
        const bool copied =
            source != nullptr && BitBlt(memory, 0, 0, width, height, source, sourceLeft, sourceTop,
                                        SRCCOPY | CAPTUREBLT) != 0;
        GdiFlush();
        SelectObject(memory, previous);
        if (copied) {
            const std::wstring path = ShotFolder() + L"\\" + name + L".bmp";
            saved = WriteBmp(path, info.bmiHeader, bits, info.bmiHeader.biSizeImage);
        }
    }
    if (bitmap != nullptr) DeleteObject(bitmap);
    if (memory != nullptr) DeleteDC(memory);
    if (ours && source != nullptr) ReleaseDC(window, source);
    ReleaseDC(nullptr, screen);
    return saved;
}

}  // namespace velmora::test
