// DeviceFrame: the desktop stand-in for a handheld's screen and shell: the frame window whose
// client area is the screen, full-screen dialogs inside it, and the shell calls around them.
#pragma once

#include <windows.h>

namespace velmora::pocketpc {

// SHInitDialog flags.
constexpr DWORD kDoneButton = 0x0001;      // SHIDIF_DONEBUTTON: an "OK" in the menu bar
constexpr DWORD kSizeFullScreen = 0x0004;  // SHIDIF_SIZEDLGFULLSCREEN: leaves the menu bar room
constexpr DWORD kFullScreenNoMenuBar = 0x0010;  // SHIDIF_FULLSCREENNOMENUBAR
constexpr DWORD kEmptyMenu = 0x0020;            // SHIDIF_EMPTYMENU
constexpr DWORD kSipDown = 0x0008;              // SHIDIF_SIPDOWN
// SHFullScreen flag.
constexpr DWORD kHideTaskBar = 0x0002;  // SHFS_HIDETASKBAR

// The handheld's screen in portrait; landscape swaps the sides.
constexpr int kPortraitWidth = 240;
constexpr int kPortraitHeight = 320;

// Registers the frame window; full-screen dialogs cover its client area from now on.
void SetDeviceFrame(HWND frame);
HWND DeviceFrame();
// The frame's client area in screen coordinates (a 240 x 320 rectangle at 0, 0 without one).
RECT FrameScreenRect();
// True while the frame's client area is taller than wide (or square); dialogs choose their
// portrait or landscape template by it, as the device's screen metrics would tell.
bool ScreenIsPortrait();
// Sizes the frame's client area to 240 x 320 (portrait) or 320 x 240 (landscape).
void SetOrientation(bool portrait);
// Moves every open full-screen dialog over the frame's client area again (after the frame
// moved, was resized or turned).
void FollowFrame();

// SHInitDialog: makes the dialog cover the device frame (leaving the menu bar's room below it
// when flags hold kSizeFullScreen); with kDoneButton it gets a bar with an "OK" button sending
// IDOK. Returns false when the dialog is not a window.
bool InitDialog(HWND dialog, DWORD flags);
// Forgets a dialog registered by InitDialog (called when it is destroyed).
void ForgetDialog(HWND dialog);

// SHSipInfo with SPI_SETSIPINFO and SIPF_ON cleared: there is no input panel on the desktop.
void HideInputPanel();
// SHHandleWMActivate and SHHandleWMSettingChange: nothing to do on the desktop.
inline void HandleActivate(HWND, WPARAM, LPARAM) {}
inline void HandleSettingChange(HWND, WPARAM, LPARAM) {}
// The shell calls known by their ordinals: 9 at start-up, 88 (the title shown in the
// navigation bar) on activation, and 65 (full screen) for the game window.
void ShellStartup();
void SetNavigationTitle(HWND window, const wchar_t* title);
void MakeFullScreen(HWND window, DWORD flags);

}  // namespace velmora::pocketpc
