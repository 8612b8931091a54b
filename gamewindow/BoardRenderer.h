// BoardRenderer: draws a position as a board of coloured squares with piece images through an
// off-screen bitmap, keeps the selected square, maps taps to squares and draws the move arrow.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstdint>

#include "core/ChessTypes.h"
#include "models/BoardGeometry.h"

namespace velmora {

class Position;
class DrawingResources;

class BoardRenderer {
  public:
    static constexpr int kBitmapSize = 240;

    BoardRenderer();
    virtual ~BoardRenderer();
    BoardRenderer(const BoardRenderer&) = delete;
    BoardRenderer& operator=(const BoardRenderer&) = delete;

    // Stores the placement and creates the 240 x 240 off-screen bitmap for window.
    void Attach(HWND window, const BoardPlacement& placement, HIMAGELIST pieces);
    void SetLayout(int squareSize, int left, HIMAGELIST pieces);
    void SetTop(int top) { placement_.top = top; }
    void Select(int file, int rank) {
        selectedFile_ = static_cast<std::uint8_t>(file);
        selectedRank_ = static_cast<std::uint8_t>(rank);
    }
    void ClearSelection() { Select(255, 255); }
    bool HasSelection() const { return selectedFile_ != 255; }
    int SelectedFile() const { return selectedFile_; }
    int SelectedRank() const { return selectedRank_; }
    void SetFlipped(bool flipped) { placement_.flipped = flipped; }
    bool Flipped() const { return placement_.flipped; }
    const BoardPlacement& Placement() const { return placement_; }

    // Paints the board (and its frame) into the off-screen bitmap and copies it to target.
    void DrawBoard(HDC target, const Position& position, bool withFrame);
    void DrawSquare(const Position& position, int file, int rank, HDC dc, COLORREF colour);
    // Fills the square at x, y in colour and draws the piece of code on it (none for 0).
    static void DrawPieceAt(PieceCode code, int x, int y, int size, HIMAGELIST pieces, HDC dc,
                            COLORREF colour);
    // Repaints the selected square on the window, highlighted or in its own colour.
    void RefreshSelected(bool highlighted, const Position& position);
    // True with the square under the point, or false with both outputs 0.
    bool SquareFromPoint(int x, int y, int* file, int* rank) const;
    // Draws the arrow of a move from one square to another.
    void DrawArrow(HDC dc, int from, int to);

  private:
    HWND window_ = nullptr;
    BoardPlacement placement_{};
    std::uint8_t selectedFile_ = 255;
    std::uint8_t selectedRank_ = 255;
    HIMAGELIST pieces_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HDC memory_ = nullptr;
};

}  // namespace velmora
