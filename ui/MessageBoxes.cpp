// The message boxes and their default owner.
#include "ui/MessageBoxes.h"

#include "platform/SystemError.h"
#include "ui/Application.h"

namespace velmora {
namespace {

HWND currentOwner = nullptr;

}  // namespace

HWND SwapCurrentOwner(HWND owner) {
    HWND previous = currentOwner;
    currentOwner = owner;
    return previous;
}

HWND CurrentOwner() {
    return currentOwner;
}

int MessageFromString(int textId, const wchar_t* caption, UINT style, HWND owner) {
    wchar_t text[1024] = {};
    LoadStringW(App().resourceInstance, static_cast<UINT>(textId), text, 1024);
    return MessageBoxW(owner != nullptr ? owner : App().mainWindow, text, caption, style);
}

int MessageFromStrings(int textId, int captionId, UINT style, HWND owner) {
    wchar_t text[512];
    wchar_t caption[128];
    if (LoadStringW(App().resourceInstance, static_cast<UINT>(textId), text, 512) == 0) {
        lstrcpyW(text, L"???");
    }
    if (LoadStringW(App().resourceInstance, static_cast<UINT>(captionId), caption, 128) == 0) {
        lstrcpyW(caption, L"???");
    }
    return MessageBoxW(owner != nullptr ? owner : currentOwner, text, caption, style);
}

int SystemErrorBox(DWORD code, const wchar_t* caption, HWND owner) {
    std::u16string text = platform::ErrorTextOrCode(code);
    return MessageBoxW(owner != nullptr ? owner : currentOwner, Wide(text.c_str()), caption,
                       MB_ICONERROR);
}

int SystemErrorBoxFromString(DWORD code, int captionId, HWND owner) {
    wchar_t caption[128];
    if (LoadStringW(App().programInstance, static_cast<UINT>(captionId), caption, 128) == 0) {
        lstrcpyW(caption, L"Message not available");
    }
    return SystemErrorBox(code, caption, owner);
}

int SystemErrorBoxUnowned(DWORD code, const wchar_t* caption) {
    std::u16string text = platform::ErrorTextOrCode(code);
    return MessageBoxW(nullptr, Wide(text.c_str()), caption, MB_ICONERROR);
}

int MessageBoxMessages::Show(const std::u16string& text, const std::u16string& caption,
                             MessageIcon icon, MessageButtons buttons, MessageOwner owner) {
    UINT style = buttons == MessageButtons::YesNo         ? MB_YESNO
                 : buttons == MessageButtons::YesNoCancel ? MB_YESNOCANCEL
                                                          : MB_OK;
    switch (icon) {
        case MessageIcon::Error:
            style |= MB_ICONERROR;
            break;
        case MessageIcon::Warning:
            style |= MB_ICONWARNING;
            break;
        case MessageIcon::Question:
            style |= MB_ICONQUESTION;
            break;
        case MessageIcon::Stop:
            style |= MB_ICONSTOP;
            break;
        case MessageIcon::None:
            break;
    }
    HWND window = owner != nullptr ? WindowOf(owner) : CurrentOwner();
    return MessageBoxW(window, Wide(text.c_str()), Wide(caption.c_str()), style);
}

}  // namespace velmora
