// The clock window: paints both sides of a ChessClock, in one line each or, in large mode, as
// two faces with the move and total times beside their labels. Everything is painted into a
// bitmap first, so the faces do not flicker at each second.
#include "gamewindow/ClockWindow.h"

#include <algorithm>
#include <string>

#include "ui/Application.h"

namespace velmora {
namespace {

constexpr const wchar_t* kFaceName = L"Tahoma";
constexpr COLORREF kFrameColour = RGB(0, 0, 0);
// Large faces side by side need this much width each; narrower windows stack them.
constexpr int kMinimumFaceWidth = 100;
constexpr int kLabelFontHeight = 10;
constexpr int kLargestTimeFont = 24;
constexpr int kSmallestTimeFont = 8;
// Inside a large face: the text's distance from the left edge, the column of the colour mark
// at the right, and the least room between a label and its time.
constexpr int kTextInset = 4;
constexpr int kMarkColumn = 13;
constexpr int kLabelGap = 6;

HFONT MakeFont(int height, int weight) {
    return CreateFontW(-height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                       OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                       DEFAULT_PITCH | FF_SWISS, kFaceName);
}

int Height(const RECT& rect) {
    return rect.bottom - rect.top;
}
int Width(const RECT& rect) {
    return rect.right - rect.left;
}

// Returns the height of the move text's strip under the large faces.
int MoveStripHeight() {
    return kLabelFontHeight + 5;
}

// The large faces: White first. The move text's strip lies below both.
struct LargeGeometry {
    RECT faces[2];
    RECT moveStrip;
};

// Splits the client area into the faces, side by side when both fit, else stacked.
LargeGeometry LayOutLarge(const RECT& client) {
    LargeGeometry geometry;
    RECT area = client;
    area.bottom = std::max(area.top, area.bottom - MoveStripHeight());
    geometry.moveStrip = {client.left, area.bottom, client.right, client.bottom};
    const bool sideBySide = Width(area) / 2 >= kMinimumFaceWidth && Width(area) > Height(area);
    geometry.faces[0] = geometry.faces[1] = area;
    if (sideBySide) {
        const int middle = area.left + Width(area) / 2;
        geometry.faces[0].right = middle;
        geometry.faces[1].left = middle;
    } else {
        const int middle = area.top + Height(area) / 2;
        geometry.faces[0].bottom = middle;
        geometry.faces[1].top = middle;
    }
    return geometry;
}

// Returns side's line in normal mode: White above Black.
RECT NormalLine(const RECT& client, int side) {
    RECT line = client;
    const int middle = client.top + Height(client) / 2;
    (side == kClockBlack ? line.top : line.bottom) = middle;
    return line;
}

void Fill(HDC dc, const RECT& rect, COLORREF colour) {
    SetBkColor(dc, colour);
    ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &rect, L"", 0, nullptr);
}

void Frame(HDC dc, const RECT& rect, COLORREF colour) {
    HBRUSH brush = CreateSolidBrush(colour);
    FrameRect(dc, &rect, brush);
    DeleteObject(brush);
}

// Marks which colour a face belongs to: a small square of that colour, framed in the colour
// of the face's text so that it shows on either background.
void PaintColourMark(HDC dc, int side, int x, int y, int size, COLORREF text) {
    const RECT mark{x, y, x + size, y + size};
    Fill(dc, mark, side == kClockWhite ? RGB(255, 255, 255) : RGB(0, 0, 0));
    Frame(dc, mark, text);
}

void DrawText16(HDC dc, const std::u16string& text, RECT rect, UINT format) {
    DrawTextW(dc, reinterpret_cast<const wchar_t*>(text.c_str()), static_cast<int>(text.size()),
              &rect, format | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
}

}  // namespace

bool RegisterClockClass(HINSTANCE instance) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = ClockWindow::WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kClockClass;
    return RegisterClassW(&windowClass) != 0;
}

void UnregisterClockClass(HINSTANCE instance) {
    UnregisterClassW(kClockClass, instance);
}

ClockWindow::ClockWindow(ChessClock& clock) : clock_(clock) {
    clock_.SetDisplay(this);
}

ClockWindow::~ClockWindow() {
    clock_.SetDisplay(nullptr);
    if (window_ != nullptr && IsWindow(window_)) DestroyWindow(window_);
    DeleteFonts();
}

bool ClockWindow::Create(HWND parent, const RECT& rect) {
    if (window_ != nullptr) return false;
    HINSTANCE instance =
        App().programInstance != nullptr ? App().programInstance : GetModuleHandleW(nullptr);
    WNDCLASSW known{};
    if (!GetClassInfoW(instance, kClockClass, &known)) RegisterClockClass(instance);
    CreateWindowExW(0, kClockClass, L"", WS_CHILD, rect.left, rect.top, Width(rect), Height(rect),
                    parent, nullptr, instance, this);
    return window_ != nullptr;
}

void ClockWindow::Move(const RECT& rect) {
    if (window_ != nullptr)
        MoveWindow(window_, rect.left, rect.top, Width(rect), Height(rect), TRUE);
}

void ClockWindow::Show(bool show) {
    if (window_ != nullptr) ShowWindow(window_, show ? SW_SHOW : SW_HIDE);
}

void ClockWindow::Refresh() {
    if (window_ != nullptr) InvalidateRect(window_, nullptr, FALSE);
}

void ClockWindow::RedrawSide(int side) {
    if (window_ == nullptr) return;
    const RECT rect = SideRect(side);
    InvalidateRect(window_, &rect, FALSE);
}

void ClockWindow::SetText(const char16_t* text) {
    if (window_ == nullptr) return;
    SetWindowTextW(window_, reinterpret_cast<const wchar_t*>(text != nullptr ? text : u""));
    // A stopped clock marks no side as running any more.
    Refresh();
}

RECT ClockWindow::SideRect(int side) const {
    RECT client{};
    GetClientRect(window_, &client);
    if (clock_.Large()) return LayOutLarge(client).faces[side == kClockBlack ? 1 : 0];
    return NormalLine(client, side);
}

LRESULT CALLBACK ClockWindow::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<ClockWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_CREATE) {
        self = static_cast<ClockWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        self->window_ = window;
    }
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    return self->HandleMessage(message, wParam, lParam);
}

LRESULT ClockWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
        case WM_SIZE:
            MakeFonts();
            InvalidateRect(window_, nullptr, FALSE);
            return 0;
        case WM_ERASEBKGND:
            return 1;  // the painting covers every pixel
        case WM_PAINT: {
            PAINTSTRUCT paint;
            HDC dc = BeginPaint(window_, &paint);
            RECT client{};
            GetClientRect(window_, &client);
            // Painted off screen, then copied in one piece.
            HDC memory = CreateCompatibleDC(dc);
            HBITMAP bitmap =
                CreateCompatibleBitmap(dc, std::max(1, Width(client)), std::max(1, Height(client)));
            HGDIOBJ previous = SelectObject(memory, bitmap);
            Paint(memory, client);
            BitBlt(dc, 0, 0, Width(client), Height(client), memory, 0, 0, SRCCOPY);
            SelectObject(memory, previous);
            DeleteObject(bitmap);
            DeleteDC(memory);
            EndPaint(window_, &paint);
            return 0;
        }
        case WM_DESTROY:
            SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
            window_ = nullptr;
            return 0;
        default:
            return DefWindowProcW(window_, message, wParam, lParam);
    }
}

void ClockWindow::DeleteFonts() {
    for (HFONT* font : {&lineFont_, &labelFont_, &timeFont_}) {
        if (*font != nullptr) DeleteObject(*font);
        *font = nullptr;
    }
}

// Sizes the fonts to the window: a normal line fills half the height; a large time fills half
// a face's height, as long as it fits beside its label.
void ClockWindow::MakeFonts() {
    DeleteFonts();
    fontsLarge_ = clock_.Large();
    RECT client{};
    GetClientRect(window_, &client);
    const int lineHeight = std::clamp(Height(client) / 2 - 4, 8, 20);
    lineFont_ = MakeFont(lineHeight, FW_BOLD);
    labelFont_ = MakeFont(kLabelFontHeight, FW_NORMAL);

    const RECT face = LayOutLarge(client).faces[0];
    HDC dc = GetDC(window_);
    HGDIOBJ previous = SelectObject(dc, labelFont_);
    SIZE label{};
    GetTextExtentPoint32W(dc, L"Total :", 7, &label);
    const int room = Width(face) - kTextInset - kMarkColumn - label.cx - kLabelGap;
    for (int height = std::clamp(Height(face) / 2 - 3, kSmallestTimeFont, kLargestTimeFont);;
         --height) {
        timeFont_ = MakeFont(height, FW_BOLD);
        SelectObject(dc, timeFont_);
        SIZE time{};
        GetTextExtentPoint32W(dc, L"000:00", 6, &time);
        if (time.cx <= room || height == kSmallestTimeFont) break;
        SelectObject(dc, labelFont_);
        DeleteObject(timeFont_);
    }
    SelectObject(dc, previous);
    ReleaseDC(window_, dc);
}

void ClockWindow::Paint(HDC dc, const RECT& client) {
    if (fontsLarge_ != clock_.Large() || lineFont_ == nullptr) MakeFonts();
    SetBkMode(dc, TRANSPARENT);
    Fill(dc, client, RGB(255, 255, 255));
    if (clock_.Large()) {
        PaintLarge(dc, client);
    } else {
        PaintNormal(dc, client);
    }
}

void ClockWindow::PaintNormal(HDC dc, const RECT& client) {
    HGDIOBJ previous = SelectObject(dc, lineFont_);
    for (int side : {kClockWhite, kClockBlack}) {
        const RECT line = NormalLine(client, side);
        const ClockColours colours = clock_.Colours(side);
        Fill(dc, line, colours.background);
        const int mark = std::max(4, Height(line) - 8);
        PaintColourMark(dc, side, line.left + 4, line.top + (Height(line) - mark) / 2, mark,
                        colours.text);
        SetTextColor(dc, colours.text);
        RECT text = line;
        text.left += mark + 10;
        DrawText16(dc, clock_.SideText(side), text, DT_LEFT);
    }
    Frame(dc, client, kFrameColour);
    SelectObject(dc, previous);
}

void ClockWindow::PaintLarge(HDC dc, const RECT& client) {
    const LargeGeometry geometry = LayOutLarge(client);
    PaintLargeSide(dc, kClockWhite, geometry.faces[0]);
    PaintLargeSide(dc, kClockBlack, geometry.faces[1]);
    HGDIOBJ previous = SelectObject(dc, labelFont_);
    SetTextColor(dc, RGB(0, 0, 0));
    DrawText16(dc, clock_.MoveText(), geometry.moveStrip, DT_CENTER);
    Frame(dc, client, kFrameColour);
    SelectObject(dc, previous);
}

void ClockWindow::PaintLargeSide(HDC dc, int side, const RECT& cell) {
    const ClockColours colours = clock_.Colours(side);
    Fill(dc, cell, colours.background);
    Frame(dc, cell, kFrameColour);
    PaintColourMark(dc, side, cell.right - 10, cell.top + 3, 7, colours.text);
    SetTextColor(dc, colours.text);
    const int middle = cell.top + Height(cell) / 2;
    const RECT rows[2] = {{cell.left + kTextInset, cell.top, cell.right - kMarkColumn, middle},
                          {cell.left + kTextInset, middle, cell.right - kMarkColumn, cell.bottom}};
    const std::u16string labels[2] = {ChessClock::kMoveLabel, ChessClock::kTotalLabel};
    const std::u16string times[2] = {clock_.MoveTimeText(side), clock_.TotalText(side)};
    for (int row = 0; row < 2; ++row) {
        HGDIOBJ previous = SelectObject(dc, labelFont_);
        DrawText16(dc, labels[row], rows[row], DT_LEFT);
        SelectObject(dc, timeFont_);
        DrawText16(dc, times[row], rows[row], DT_RIGHT);
        SelectObject(dc, previous);
    }
}

}  // namespace velmora
