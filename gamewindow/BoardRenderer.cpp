// Board drawing through an off-screen bitmap, so the board never flickers while it is painted.
#include "gamewindow/BoardRenderer.h"

#include "game/Position.h"
#include "ui/Application.h"
#include "ui/DrawingResources.h"

namespace velmora {

BoardRenderer::BoardRenderer() {
    ClearSelection();
}

BoardRenderer::~BoardRenderer() {
    if (memory_ != nullptr) DeleteDC(memory_);
    if (bitmap_ != nullptr) DeleteObject(bitmap_);
}

void BoardRenderer::Attach(HWND window, const BoardPlacement& placement, HIMAGELIST pieces) {
    window_ = window;
    placement_ = placement;
    pieces_ = pieces;
    if (memory_ != nullptr) DeleteDC(memory_);
    if (bitmap_ != nullptr) DeleteObject(bitmap_);
    HDC dc = GetDC(window);
    bitmap_ = CreateCompatibleBitmap(dc, kBitmapSize, kBitmapSize);
    memory_ = CreateCompatibleDC(dc);
    ReleaseDC(window, dc);
    if (bitmap_ == nullptr) {
        MessageBoxW(window, L"Unable to create chessboard", L"Fatal error", MB_ICONSTOP | MB_OK);
    }
}

void BoardRenderer::SetLayout(int squareSize, int left, HIMAGELIST pieces) {
    placement_.squareSize = squareSize;
    placement_.left = left;
    pieces_ = pieces;
}

void BoardRenderer::DrawPieceAt(PieceCode code, int x, int y, int size, HIMAGELIST pieces, HDC dc,
                                COLORREF colour) {
    RECT rect{x, y, x + size, y + size};
    COLORREF previous = SetBkColor(dc, colour);
    ExtTextOutW(dc, x, y, ETO_OPAQUE, &rect, L"", 0, nullptr);
    SetBkColor(dc, previous);
    const int type = TypeOf(code);
    if (type < kPawn || type > kKing || pieces == nullptr) return;
    // Each piece type has its white image, then its black one.
    int image = 2 * (type - kPawn) + (ColourOf(code) == kBlack ? 1 : 0);
    ImageList_Draw(pieces, image, dc, x, y, ILD_TRANSPARENT);
}

void BoardRenderer::DrawSquare(const Position& position, int file, int rank, HDC dc,
                               COLORREF colour) {
    Point corner = SquareOrigin(placement_, file, rank);
    DrawPieceAt(position.GetSquare(file, rank), corner.x, corner.y, placement_.squareSize, pieces_,
                dc, colour);
}

void BoardRenderer::DrawBoard(HDC target, const Position& position, bool withFrame) {
    if (memory_ == nullptr) return;
    const DrawingResources& drawing = *App().drawing;
    HGDIOBJ previousBitmap = bitmap_ != nullptr ? SelectObject(memory_, bitmap_) : nullptr;
    int size = placement_.squareSize;
    if (withFrame) {
        HGDIOBJ brush = SelectObject(memory_, GetStockObject(HOLLOW_BRUSH));
        HGDIOBJ pen = SelectObject(memory_, drawing.framePen);
        Rectangle(memory_, placement_.left - 1, placement_.top - 1, placement_.left + 8 * size + 1,
                  placement_.top + 8 * size + 1);
        SelectObject(memory_, pen);
        SelectObject(memory_, brush);
    }
    for (int rank = 7; rank >= 0; --rank) {
        for (int file = 0; file < 8; ++file) {
            COLORREF colour = IsDarkSquare(file, rank) ? drawing.darkColour : drawing.lightColour;
            if (file == selectedFile_ && rank == selectedRank_) colour = drawing.highlightColour;
            DrawSquare(position, file, rank, memory_, colour);
        }
    }
    BitBlt(target, placement_.left - 1, placement_.top - 1, 8 * size + 2, 8 * size + 2, memory_,
           placement_.left - 1, placement_.top - 1, SRCCOPY);
    if (previousBitmap != nullptr) SelectObject(memory_, previousBitmap);
}

void BoardRenderer::RefreshSelected(bool highlighted, const Position& position) {
    if (!HasSelection() || window_ == nullptr) return;
    const DrawingResources& drawing = *App().drawing;
    COLORREF colour = highlighted                                  ? drawing.highlightColour
                      : IsDarkSquare(selectedFile_, selectedRank_) ? drawing.darkColour
                                                                   : drawing.lightColour;
    HDC dc = GetDC(window_);
    DrawSquare(position, selectedFile_, selectedRank_, dc, colour);
    ReleaseDC(window_, dc);
}

bool BoardRenderer::SquareFromPoint(int x, int y, int* file, int* rank) const {
    return velmora::SquareFromPoint(placement_, x, y, file, rank) != 0;
}

void BoardRenderer::DrawArrow(HDC dc, int from, int to) {
    const DrawingResources& drawing = *App().drawing;
    auto polygon = ArrowPolygon(placement_, from, to);
    POINT points[7];
    for (int i = 0; i < 7; ++i)
        points[i] = POINT{polygon[i].x, polygon[i].y};
    HGDIOBJ pen = SelectObject(dc, drawing.arrowPen);
    HGDIOBJ brush = SelectObject(dc, drawing.arrowBrush);
    Polygon(dc, points, 7);
    SelectObject(dc, pen);
    SelectObject(dc, brush);
}

}  // namespace velmora
