// DrawingResources: the program-wide piece images, strips, fonts, cursor, popup menus and the
// pens and brush made from the user's colours, shared by the board and the game window.
#pragma once

#include <windows.h>

#include <commctrl.h>

namespace velmora {

class Settings;

class DrawingResources {
  public:
    static constexpr int kPieceSets = 4;
    static constexpr int kSmallSquare = 19;
    static constexpr int kLargeSquare = 25;

    // Loads every image list, font and menu, and the colour objects from settings.
    explicit DrawingResources(const Settings& settings);
    ~DrawingResources();
    DrawingResources(const DrawingResources&) = delete;
    DrawingResources& operator=(const DrawingResources&) = delete;

    // Rebuilds the colours, pens and brush from settings (after the Options end with OK).
    void RebuildColours(const Settings& settings);

    // The piece images of set index for squares of squareSize pixels (null when missing).
    HIMAGELIST Pieces(int set, int squareSize) const;

    HIMAGELIST smallPieces[kPieceSets] = {};
    HIMAGELIST largePieces[kPieceSets] = {};
    HIMAGELIST evaluationSymbols = nullptr;  // 15 x 14, masked
    HIMAGELIST indicators = nullptr;         // side to move: 14 x 14, not masked
    COLORREF lightColour = 0;
    COLORREF highlightColour = 0;
    COLORREF darkColour = 0;
    HPEN framePen = nullptr;
    HPEN arrowPen = nullptr;
    HBRUSH arrowBrush = nullptr;
    HFONT notationFont = nullptr;
    HFONT boldFont = nullptr;
    HCURSOR waitCursor = nullptr;
    HMENU nagMenu = nullptr;
    HMENU nagPopup = nullptr;
    HMENU engineMenu = nullptr;

  private:
    void DeleteColourObjects();
};

// The notation font's height for a screen of dotsPerInch: 8 points, rounded toward zero.
inline int NotationFontHeight(int dotsPerInch) {
    return -(dotsPerInch / 9);
}

}  // namespace velmora
