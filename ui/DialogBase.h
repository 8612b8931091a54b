// DialogBase: the modal dialog every window of the program derives from (template by
// orientation, full screen in the device frame, optional menu bar).
#pragma once

#include <windows.h>

#include <string>

namespace velmora {

class DialogBase {
  public:
    // Two templates: the one that fits the screen's orientation is used and the controls are
    // laid out again from the other when the screen turns.
    DialogBase(int portraitTemplate, int landscapeTemplate, int menuBarId, DWORD extraFlags);
    DialogBase(int templateId, int menuBarId, DWORD extraFlags);
    virtual ~DialogBase();
    DialogBase(const DialogBase&) = delete;
    DialogBase& operator=(const DialogBase&) = delete;

    // Runs the dialog; returns what ended it, or -1 when it could not be created.
    virtual INT_PTR DoModal(HWND owner);
    virtual INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual BOOL OnInitDialog();
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);

    HWND Window() const { return window_; }
    HWND MenuBar() const { return menuBar_; }
    bool Portrait() const { return portrait_; }

  protected:
    HWND window_ = nullptr;
    HWND menuBar_ = nullptr;
    HWND previousOwner_ = nullptr;
    int portraitTemplate_;
    int landscapeTemplate_;
    int menuBarId_;
    DWORD extraFlags_;
    bool portrait_;

  private:
    static INT_PTR CALLBACK SharedProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
};

// Lays the dialog's controls out again from the template templateId of module (all but
// control 1108), applying the template's titles to buttons and static texts.
void LayoutFromTemplate(HINSTANCE module, HWND dialog, int templateId);

// The whole text of a dialog's control.
std::u16string ControlText(HWND dialog, int id);

// Shows the system's wait cursor, or takes the cursor away.
void ShowWaitCursor(bool on);

}  // namespace velmora
