// The engine information panel: three rows of numbers split at the middle, then the engine's
// line wrapped at blanks over the rest. Each text is drawn opaque in its cell, so the previous
// values vanish without the panel being wiped first.
#include "gamewindow/EngineInfoDisplay.h"

#include <string>

#include "models/EngineInfoTexts.h"
#include "ui/Application.h"
#include "ui/DrawingResources.h"

namespace velmora {
namespace {

RECT ToRect(const Rect& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

void DrawCell(HDC dc, const Rect& cell, const std::u16string& text) {
    const RECT clip = ToRect(cell);
    ExtTextOutW(dc, cell.left, cell.top, ETO_OPAQUE | ETO_CLIPPED, &clip,
                reinterpret_cast<const wchar_t*>(text.c_str()), static_cast<UINT>(text.size()),
                nullptr);
}

}  // namespace

void EngineInfoDisplay::Attach(HWND window, const RECT& rect) {
    window_ = window;
    SetRectangle(rect);
}

void EngineInfoDisplay::SetRectangle(const RECT& rect) {
    rect_ = {rect.left, rect.top, rect.right, rect.bottom};
    ChooseFont();
}

void EngineInfoDisplay::ChooseFont() {
    HFONT notation = App().drawing != nullptr ? App().drawing->notationFont : nullptr;
    font_ = EngineInfoUsesSystemFont(rect_.Width()) || notation == nullptr
                ? static_cast<HFONT>(GetStockObject(SYSTEM_FONT))
                : notation;
    HDC dc = GetDC(window_);
    HGDIOBJ previous = SelectObject(dc, font_);
    SIZE size{};
    GetTextExtentExPointW(dc, L"Ij", 1, 0, nullptr, nullptr, &size);
    SelectObject(dc, previous);
    ReleaseDC(window_, dc);
    lineHeight_ = size.cy + 2;
}

void EngineInfoDisplay::Show(bool visible) {
    visible_ = visible;
    DrawOnWindow();
}

void EngineInfoDisplay::Update() {
    if (source_ != nullptr) {
        source_->GetSearchInfo(&depth_, &speed_, &nodes_, &time_, move_, kMoveSize, line_,
                               kLineSize);
    }
    DrawOnWindow();
}

void EngineInfoDisplay::DrawOnWindow() const {
    if (!visible_ || window_ == nullptr) return;
    HDC dc = GetDC(window_);
    Draw(dc);
    ReleaseDC(window_, dc);
}

void EngineInfoDisplay::Draw(HDC dc) const {
    if (!visible_) return;
    HGDIOBJ previousFont = SelectObject(dc, font_);
    const COLORREF previousText = SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    const COLORREF previousBack = SetBkColor(dc, GetSysColor(COLOR_WINDOW));
    const EngineInfoCells cells = LayOutEngineInfo(rect_, lineHeight_);
    DrawCell(dc, cells.eval, EngineEvalText(move_));
    DrawCell(dc, cells.depth, EngineDepthText(depth_));
    DrawCell(dc, cells.speed, EngineSpeedText(speed_));
    DrawCell(dc, cells.time, EngineTimeText(time_));
    DrawCell(dc, cells.nodes, EngineNodesText(nodes_));
    if (!cells.line.IsEmpty()) {
        DrawCell(dc, cells.line, u"");
        const std::u16string line = EngineLineText(line_);
        RECT area = ToRect(cells.line);
        DrawTextW(dc, reinterpret_cast<const wchar_t*>(line.c_str()), static_cast<int>(line.size()),
                  &area, DT_WORDBREAK | DT_NOPREFIX);
    }
    SetBkColor(dc, previousBack);
    SetTextColor(dc, previousText);
    SelectObject(dc, previousFont);
}

}  // namespace velmora
