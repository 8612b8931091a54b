// pocketpc: the Pocket PC shell calls the program uses, with their desktop equivalents inside
// the device frame (full-screen dialogs, a bottom menu bar, the document list of PGN files).
#pragma once

#include <windows.h>

namespace velmora::pocketpc {

// SHInitDialog flags.
constexpr DWORD kDoneButton = 0x0001;      // SHIDIF_DONEBUTTON: an "OK" in the menu bar
constexpr DWORD kSizeFullScreen = 0x0004;  // SHIDIF_SIZEDLGFULLSCREEN: leaves the menu bar room
constexpr DWORD kFullScreenNoMenuBar = 0x0010;  // SHIDIF_FULLSCREENNOMENUBAR
constexpr DWORD kEmptyMenu = 0x0020;            // SHIDIF_EMPTYMENU
constexpr DWORD kSipDown = 0x0008;              // SHIDIF_SIPDOWN

// Device frame: the top-level window whose client area stands for the handheld's screen.
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
// IDOK. Returns FALSE when the dialog is not a window.
BOOL InitDialog(HWND dialog, DWORD flags);
// Forgets a dialog registered by InitDialog (called when it is destroyed).
void ForgetDialog(HWND dialog);

// SHCreateMenuBar: a bar along the bottom of parent with one button per top-level item of the
// menu resource menuId (a popup opens its submenu upwards, a plain item sends its command) and
// room for toolbar buttons after them. Returns the bar's window, or null.
HWND CreateMenuBar(HWND parent, HINSTANCE module, int menuId);
// A bar with a single "OK" button sending IDOK to parent.
HWND CreateDoneBar(HWND parent);
struct ToolButton {
    int image;
    int command;
};
// Adds image buttons from a strip of 16 x 16 images (bitmap resource bitmapId of module, pure
// red transparent) to a menu bar. Returns FALSE when the buttons could not be added.
BOOL AddToolButtons(HWND menuBar, HINSTANCE module, int bitmapId, int imageCount,
                    const ToolButton* buttons, int count);
// The bar's height in pixels (0 for no bar).
int MenuBarHeight(HWND menuBar);
// The menu behind the bar's popup buttons (to enable, check or owner-draw items).
HMENU MenuBarMenu(HWND menuBar);
// Places the bar along the bottom of its parent's client area, one or two rows high.
void PlaceMenuBar(HWND menuBar);
// The menu bar of a window (created by CreateMenuBar, CreateDoneBar or InitDialog), or null.
HWND FindMenuBar(HWND parent);

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

// Document list notifications (WM_NOTIFY from control id 100).
constexpr UINT kDocListFileChosen = 11000;
constexpr UINT kDocListFolderChanged = 11012;
constexpr UINT kDocListRefresh = 1624;  // message that fills the list

struct DocListNotify {
    NMHDR header;
    wchar_t path[MAX_PATH];  // the chosen file, or the new folder ("" for all folders)
};

struct DocListCreate {
    HWND parent;
    const wchar_t* folder;  // the folder shown first; null for all folders
    const wchar_t* allFoldersText;
    const wchar_t* filterName;     // "PGN files"
    const wchar_t* filterPattern;  // "*.pgn"
    int controlId;
};
// DocList_Create: a child window listing the files that match the filter in the chosen folder,
// or in the documents root and its subfolders for "All Folders", with a folder chooser above
// the list. A tap on a file sends kDocListFileChosen to the parent, a folder change
// kDocListFolderChanged. The documents root is the current folder at start-up.
HWND CreateDocList(const DocListCreate& create);

}  // namespace velmora::pocketpc
