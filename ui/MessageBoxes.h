// MessageBoxes: the message boxes of the program (text from the string table or a system error
// code), their default owner, and portable code's messages shown through them.
#pragma once

#include <windows.h>

#include <string>

#include "game/UserMessages.h"

namespace velmora {

// The default owner of error boxes (the dialog that came up last); returns the previous one.
HWND SwapCurrentOwner(HWND owner);
HWND CurrentOwner();

// Text id of the resource module (up to 1024 characters) with the given caption; the main
// window owns it unless owner is given.
int MessageFromString(int textId, const wchar_t* caption, UINT style, HWND owner = nullptr);
// Text and caption from the resource module, "???" for a missing one; returns the button.
int MessageFromStrings(int textId, int captionId, UINT style, HWND owner = nullptr);
// The system's text for code, or "Err 0x%08X"; an error icon.
int SystemErrorBox(DWORD code, const wchar_t* caption, HWND owner = nullptr);
// As SystemErrorBox, with caption captionId of the program's own strings ("Message not
// available" when missing).
int SystemErrorBoxFromString(DWORD code, int captionId, HWND owner = nullptr);
// As SystemErrorBox, owned by no window.
int SystemErrorBoxUnowned(DWORD code, const wchar_t* caption);

// Shows portable code's messages and questions as message boxes, owned by the window they
// belong to or else by the current owner.
class MessageBoxMessages final : public UserMessages {
  public:
    int Show(const std::u16string& text, const std::u16string& caption, MessageIcon icon,
             MessageButtons buttons, MessageOwner owner) override;
};

}  // namespace velmora
