// ClockWindow: the "CeClock" child window of the game window, which paints a ChessClock.
#pragma once

#include <windows.h>

#include "clock/ChessClock.h"

namespace velmora {

constexpr const wchar_t* kClockClass = L"CeClock";

// Registers the "CeClock" window class; once at start-up, beside the other window classes.
bool RegisterClockClass(HINSTANCE instance);
void UnregisterClockClass(HINSTANCE instance);

// A view of a clock that its owner keeps: the clock tells it which side changed and the window
// repaints from the clock's texts and colours. Normal mode: one line per side, White above
// Black, the running side's line in white on black. Large mode: per side "Move :" and "Total :"
// with their times, White left of (or above) Black, the running side in white on black, and
// the move text below.
class ClockWindow final : public ClockDisplay {
  public:
    // Becomes clock's display until destroyed.
    explicit ClockWindow(ChessClock& clock);
    ~ClockWindow() override;
    ClockWindow(const ClockWindow&) = delete;
    ClockWindow& operator=(const ClockWindow&) = delete;

    // Creates the window, hidden, at rect in parent's client area; false when it cannot be made
    // (or already exists).
    bool Create(HWND parent, const RECT& rect);
    void Move(const RECT& rect);
    void Show(bool show);
    // Repaints all of the window: after the mode or the move text changed.
    void Refresh();
    HWND Window() const { return window_; }

    void RedrawSide(int side) override;
    void SetText(const char16_t* text) override;

  private:
    friend bool RegisterClockClass(HINSTANCE instance);
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    // Recreates the fonts for the window's size and mode.
    void MakeFonts();
    void DeleteFonts();
    void Paint(HDC dc, const RECT& client);
    void PaintNormal(HDC dc, const RECT& client);
    void PaintLarge(HDC dc, const RECT& client);
    // Paints side's face (background, colour mark, texts) in cell.
    void PaintLargeSide(HDC dc, int side, const RECT& cell);
    // Where side is painted in the current mode.
    RECT SideRect(int side) const;

    ChessClock& clock_;
    HWND window_ = nullptr;
    HFONT lineFont_ = nullptr;   // normal mode
    HFONT labelFont_ = nullptr;  // large mode: labels and move text
    HFONT timeFont_ = nullptr;   // large mode: the times
    bool fontsLarge_ = false;    // the mode the fonts were made for
};

}  // namespace velmora
