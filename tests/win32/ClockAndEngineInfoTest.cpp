// The clock window and the engine information panel, in a stand-in for the game window that
// paints the panel from its WM_PAINT as the game window does: which face shows the running
// side, what a stopped clock says, where the panel draws and that a hidden one draws nothing.
// Each is photographed in portrait and in landscape.
#include "gamewindow/ClockWindow.h"
#include "gamewindow/EngineInfoDisplay.h"
#include "models/BoardLayout.h"
#include "models/EngineInfoTexts.h"
#include "win32/GuiDriver.h"

namespace velmora::gui {
namespace {

EngineInfoDisplay* paintedDisplay = nullptr;

LRESULT CALLBACK GameWindowStandIn(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_PAINT) return DefWindowProcW(window, message, wParam, lParam);
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    if (paintedDisplay != nullptr) paintedDisplay->Draw(dc);
    EndPaint(window, &paint);
    return 0;
}

// Search information with known numbers; counts how often it was asked.
class FixedSearchInfo final : public SearchInfoSource {
  public:
    void GetSearchInfo(std::int32_t* depth, std::int32_t* speed, std::int32_t* nodes,
                       std::int32_t* milliseconds, char16_t* move, int moveSize, char16_t* line,
                       int lineSize) const override {
        ++calls;
        *depth = 12;
        *speed = 345;
        *nodes = 678901;
        *milliseconds = 3050;
        std::u16string(u"+0.31").copy(move, moveSize - 1);
        move[std::min<int>(5, moveSize - 1)] = 0;
        const std::u16string text =
            u"e4 e5 Nf3 Nc6 Bb5 a6 Ba4 Nf6 O-O Be7 Re1 b5 Bb3 d6 c3 O-O h3 Nb8 d4 Nbd7 c4 c6 "
            u"cxb5 axb5 Nc3 Bb7 Bg5 b4 Nb1 h6 Bh4 c5 dxe5 Nxe4";
        const int length = std::min<int>(static_cast<int>(text.size()), lineSize - 1);
        text.copy(line, length);
        line[length] = 0;
    }
    mutable int calls = 0;
};

// The pixels of a 240 x 320 bitmap.
class Canvas {
  public:
    explicit Canvas(COLORREF fill) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
        info.bmiHeader.biWidth = kWidth;
        info.bmiHeader.biHeight = -kHeight;  // top-down rows
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        dc = CreateCompatibleDC(nullptr);
        bitmap_ = CreateDIBSection(dc, &info, DIB_RGB_COLORS, reinterpret_cast<void**>(&bits_),
                                   nullptr, 0);
        previous_ = SelectObject(dc, bitmap_);
        HBRUSH brush = CreateSolidBrush(fill);
        const RECT all{0, 0, kWidth, kHeight};
        FillRect(dc, &all, brush);
        DeleteObject(brush);
        GdiFlush();
    }
    ~Canvas() {
        SelectObject(dc, previous_);
        DeleteObject(bitmap_);
        DeleteDC(dc);
    }
    std::vector<DWORD> Pixels() const {
        GdiFlush();
        return std::vector<DWORD>(bits_, bits_ + kWidth * kHeight);
    }
    static constexpr int kWidth = 240;
    static constexpr int kHeight = 320;
    HDC dc = nullptr;

  private:
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ previous_ = nullptr;
    DWORD* bits_ = nullptr;
};

class ClockAndEngineInfoTest : public GuiTest {
  protected:
    void SetUp() override {
        GuiTest::SetUp();
        if (frame == nullptr) return;
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = GameWindowStandIn;
        windowClass.hInstance = App().programInstance;
        windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
        windowClass.lpszClassName = L"VelmoraGameWindowStandIn";
        RegisterClassW(&windowClass);
        window = CreateWindowExW(0, windowClass.lpszClassName, L"", WS_CHILD | WS_VISIBLE, 0, 0,
                                 240, 320, frame, nullptr, App().programInstance, nullptr);
        ASSERT_NE(window, nullptr);
    }
    void TearDown() override {
        paintedDisplay = nullptr;
        pocketpc::SetOrientation(true);
        GuiTest::TearDown();
    }
    // Turns the frame and the stand-in, and lays the game window out as it would be.
    BoardLayout Turn(bool portrait, bool largeClocks, bool clockShown = true) {
        pocketpc::SetOrientation(portrait);
        BoardLayoutInput input;
        input.clientWidth = portrait ? 240 : 320;
        input.clientHeight = portrait ? 320 : 240;
        input.clockShown = clockShown;
        input.largeClocks = largeClocks;
        MoveWindow(window, 0, 0, input.clientWidth, input.clientHeight, TRUE);
        return ComputeBoardLayout(input);
    }
    static RECT ToRect(const Rect& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }
    // The colour at the middle of a rectangle's right end, where no text reaches.
    static COLORREF Background(HWND window, const RECT& rect) {
        UpdateWindow(window);
        HDC dc = GetDC(window);
        const COLORREF colour = GetPixel(dc, rect.right - 4, (rect.top + rect.bottom) / 2);
        ReleaseDC(window, dc);
        return colour;
    }

    HWND window = nullptr;
};

constexpr COLORREF kBlackFace = RGB(0, 0, 0);
constexpr COLORREF kWhiteFace = RGB(255, 255, 255);

// Normal mode: the running side's line is white on black. Large mode: faces side by side when
// the clock is wide, stacked when it is narrow, the running one black. A stopped clock reads
// "--" and marks no side.
TEST_F(ClockAndEngineInfoTest, ClockShowsTheRunningSideInEveryModeAndOrientation) {
    std::uint32_t now = 5000;
    ChessClock clock([&] { return now; });
    clock.SetTimeControl({0, 40, 7200, 0, 3600, 0, 0});
    ClockWindow view(clock);
    ASSERT_TRUE(view.Create(window, ToRect(Turn(true, false).clock)));
    view.Show(true);
    clock.Tick(kClockWhite, 1);
    now += 65000;
    clock.Tick(kClockWhite, 1);
    EXPECT_EQ(clock.SideText(kClockWhite), u"01:05/118:55");
    const auto face = [&](int side) {
        RECT rect{};
        GetClientRect(view.Window(), &rect);
        const int middle = rect.bottom / 2;
        if (!clock.Large()) {
            (side == kClockWhite ? rect.bottom : rect.top) = middle;
        } else if (rect.right > 200) {  // side by side, above the move text
            (side == kClockWhite ? rect.right : rect.left) = rect.right / 2;
            rect.bottom = middle;
        } else {  // White's face above Black's
            rect.bottom -= 15;
            (side == kClockWhite ? rect.bottom : rect.top) = rect.bottom / 2;
        }
        return Background(view.Window(), rect);
    };
    for (bool portrait : {true, false}) {
        SCOPED_TRACE(portrait ? "portrait" : "landscape");
        const std::wstring orientation = portrait ? L"-portrait" : L"-landscape";
        clock.SetLarge(false);
        view.Move(ToRect(Turn(portrait, false).clock));
        view.Refresh();
        EXPECT_EQ(face(kClockWhite), kBlackFace);
        EXPECT_EQ(face(kClockBlack), kWhiteFace);
        EXPECT_TRUE(test::SaveWindowShot(frame, (L"clock-normal" + orientation).c_str()));

        clock.SetLarge(true);
        clock.SetMoveText(u"12... Nf6");
        view.Move(ToRect(Turn(portrait, true).clock));
        view.Refresh();
        EXPECT_EQ(face(kClockWhite), kBlackFace);
        EXPECT_EQ(face(kClockBlack), kWhiteFace);
        clock.Tick(kClockBlack, 1);
        EXPECT_EQ(face(kClockWhite), kWhiteFace);
        EXPECT_EQ(face(kClockBlack), kBlackFace);
        EXPECT_TRUE(test::SaveWindowShot(frame, (L"clock-large" + orientation).c_str()));
        clock.Tick(kClockWhite, 2);
    }
    clock.Reset();
    EXPECT_EQ(WindowText(view.Window()), L"--");
    EXPECT_EQ(face(kClockWhite), kWhiteFace);
    EXPECT_EQ(face(kClockBlack), kWhiteFace);
}

// The numbers land in their cells, drawn as the texts would be there, and the panel draws
// nothing else: not outside its rectangle, not right of the nodes, nothing while hidden. Update
// fetches the numbers whether it is shown or not. A panel 200 pixels wide or less writes in the
// notation font, a wider one in the system font.
TEST_F(ClockAndEngineInfoTest, EngineInfoDrawsEachNumberInItsCellOnlyWhenShown) {
    FixedSearchInfo source;
    EngineInfoDisplay display(&source);
    display.Attach(window, {2, 160, 202, 300});
    EXPECT_EQ(display.Font(), App().drawing->notationFont);
    const RECT panel{2, 160, 238, 300};
    display.SetRectangle(panel);
    EXPECT_EQ(display.Font(), GetStockObject(SYSTEM_FONT));

    constexpr COLORREF kUntouched = RGB(10, 200, 30);
    Canvas blank(kUntouched), hidden(kUntouched), drawn(kUntouched), expected(kUntouched);
    display.Update();
    EXPECT_EQ(source.calls, 1);
    display.Draw(hidden.dc);
    EXPECT_EQ(hidden.Pixels(), blank.Pixels());
    display.Show(true);
    display.Update();
    EXPECT_EQ(source.calls, 2);
    display.Draw(drawn.dc);

    HGDIOBJ previous = SelectObject(expected.dc, display.Font());
    SetTextColor(expected.dc, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(expected.dc, GetSysColor(COLOR_WINDOW));
    const EngineInfoCells cells =
        LayOutEngineInfo({panel.left, panel.top, panel.right, panel.bottom}, display.LineHeight());
    const std::pair<Rect, const wchar_t*> texts[] = {
        {cells.eval, L"Eval : +0.31"},
        {cells.depth, L"Depth : 12  "},
        {cells.time, L"Time :   3.50  "},
        {cells.speed, L"KN/s :345   "},
        {cells.nodes, L"Total nodes : 678901   "},
    };
    for (const auto& [cell, text] : texts) {
        const RECT clip = ToRect(cell);
        ExtTextOutW(expected.dc, cell.left, cell.top, ETO_OPAQUE | ETO_CLIPPED, &clip, text,
                    static_cast<UINT>(wcslen(text)), nullptr);
    }
    SelectObject(expected.dc, previous);
    const std::vector<DWORD> got = drawn.Pixels();
    const std::vector<DWORD> want = expected.Pixels();
    const DWORD untouched = blank.Pixels()[0];
    int wrong = 0, outside = 0, blankLine = 0;
    for (int y = 0; y < Canvas::kHeight; ++y) {
        for (int x = 0; x < Canvas::kWidth; ++x) {
            const std::size_t at = static_cast<std::size_t>(y) * Canvas::kWidth + x;
            if (y < cells.nodes.bottom) {
                wrong += got[at] != want[at] ? 1 : 0;  // the rows, as the texts draw them
            } else if (!PtInRect(&panel, {x, y})) {
                outside += got[at] != untouched ? 1 : 0;
            } else {
                blankLine += got[at] == untouched ? 1 : 0;  // the line's cell is painted over
            }
        }
    }
    EXPECT_EQ(wrong, 0) << "pixels of the rows unlike the texts in their cells";
    EXPECT_EQ(outside, 0) << "pixels drawn outside the panel";
    EXPECT_EQ(blankLine, 0) << "pixels of the line's cell left as they were";

    // The window paints the panel from its WM_PAINT: photographed both ways with a long line,
    // in the comment pane's place while analysing (no clock).
    paintedDisplay = &display;
    for (bool portrait : {true, false}) {
        RECT rect = ToRect(Turn(portrait, false, false).comment);
        display.SetRectangle(rect);
        Repaint(window);
        EXPECT_TRUE(test::SaveWindowShot(
            frame, portrait ? L"engine-info-portrait" : L"engine-info-landscape"));
    }
}

}  // namespace
}  // namespace velmora::gui
