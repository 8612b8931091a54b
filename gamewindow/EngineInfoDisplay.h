// EngineInfoDisplay: the game window's panel that shows the engine's latest search information
// (evaluation, depth, speed, time, nodes and line) in place of the comment pane.
#pragma once

#include <windows.h>

#include <cstdint>

#include "engine/host/SearchInfo.h"
#include "models/BoardGeometry.h"

namespace velmora {

// Draws into its window's client area at its rectangle; it has no window of its own. The game
// window calls Draw from its painting and Update when the engine's information changed.
class EngineInfoDisplay {
  public:
    static constexpr int kMoveSize = 16;
    static constexpr int kLineSize = 128;

    // Takes the numbers from source (the engine host; null: none to fetch). Not owned.
    explicit EngineInfoDisplay(const SearchInfoSource* source = nullptr) : source_(source) {}
    void SetSource(const SearchInfoSource* source) { source_ = source; }

    // Draws into window's client area at rect; chooses the font for rect's width.
    void Attach(HWND window, const RECT& rect);
    void SetRectangle(const RECT& rect);
    // Shows the panel, drawing it at once, or hides it: nothing is drawn while hidden.
    void Show(bool visible);
    // Fetches the engine's latest information, then draws it when shown.
    void Update();
    // Draws the panel on dc (the window's, in client coordinates) when shown.
    void Draw(HDC dc) const;
    // Forgets the move text (the current position changed).
    void ClearMove() { move_[0] = 0; }

    bool Visible() const { return visible_; }
    HFONT Font() const { return font_; }
    int LineHeight() const { return lineHeight_; }

  private:
    // Picks the font for the rectangle's width and measures its line height.
    void ChooseFont();
    void DrawOnWindow() const;

    const SearchInfoSource* source_;
    bool visible_ = false;
    HWND window_ = nullptr;
    HFONT font_ = nullptr;
    Rect rect_;
    int lineHeight_ = 0;
    std::int32_t depth_ = 0;
    std::int32_t speed_ = 0;
    std::int32_t nodes_ = 0;
    std::int32_t time_ = 0;
    char16_t move_[kMoveSize] = {};
    char16_t line_[kLineSize] = {};
};

}  // namespace velmora
