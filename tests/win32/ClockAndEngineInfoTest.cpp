// The clock window and the engine information panel: which face shows the running side, what a
// stopped clock says, where the panel draws and that a hidden one draws nothing. The clock is
// photographed in portrait and in landscape.
#include <set>

#include "gamewindow/ClockWindow.h"
#include "gamewindow/EngineInfoDisplay.h"
#include "models/BoardLayout.h"
#include "models/EngineInfoTexts.h"
#include "win32/GuiDriver.h"

namespace velmora::gui {
namespace {

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
        const auto put = [](const std::u16string& text, char16_t* out, int size) {
            out[text.copy(out, size - 1)] = 0;
        };
        put(u"+0.31", move, moveSize);
        put(u"e4 e5 Nf3 Nc6 Bb5 a6 Ba4 Nf6 O-O Be7", line, lineSize);
    }
    mutable int calls = 0;
};

// The pixels of a 240 x 320 bitmap, filled with one colour to begin with.
class Canvas {
  public:
    explicit Canvas(COLORREF fill) {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), kWidth, -kHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        dc = CreateCompatibleDC(nullptr);
        bitmap_ = CreateDIBSection(dc, &info, DIB_RGB_COLORS, reinterpret_cast<void**>(&bits_),
                                   nullptr, 0);
        SelectObject(dc, bitmap_);
        HBRUSH brush = CreateSolidBrush(fill);
        const RECT all{0, 0, kWidth, kHeight};
        FillRect(dc, &all, brush);
        DeleteObject(brush);
    }
    ~Canvas() {
        DeleteDC(dc);
        DeleteObject(bitmap_);
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
    DWORD* bits_ = nullptr;
};

class ClockAndEngineInfoTest : public GuiTest {
  protected:
    void TearDown() override {
        pocketpc::SetOrientation(true);
        GuiTest::TearDown();
    }
    // Turns the frame and lays the game window out as it would be.
    BoardLayout Turn(bool portrait, bool largeClocks) {
        pocketpc::SetOrientation(portrait);
        BoardLayoutInput input;
        input.clientWidth = portrait ? 240 : 320;
        input.clientHeight = portrait ? 320 : 240;
        input.clockShown = true;
        input.largeClocks = largeClocks;
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
    ASSERT_TRUE(view.Create(frame, ToRect(Turn(true, false).clock)));
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

// Each number's cell is drawn and nothing outside the panel, nothing while hidden. Update
// fetches the numbers whether it is shown or not. A panel 200 pixels wide or less writes in the
// notation font, a wider one in the system font.
TEST_F(ClockAndEngineInfoTest, EngineInfoDrawsEachNumberInItsCellOnlyWhenShown) {
    FixedSearchInfo source;
    EngineInfoDisplay display(&source);
    display.Attach(frame, {2, 160, 202, 300});
    EXPECT_EQ(display.Font(), App().drawing->notationFont);
    const RECT panel{2, 160, 238, 300};
    display.SetRectangle(panel);
    EXPECT_EQ(display.Font(), GetStockObject(SYSTEM_FONT));

    constexpr COLORREF kUntouched = RGB(10, 200, 30);
    Canvas blank(kUntouched), hidden(kUntouched), drawn(kUntouched);
    display.Update();
    EXPECT_EQ(source.calls, 1);
    display.Draw(hidden.dc);
    EXPECT_EQ(hidden.Pixels(), blank.Pixels());
    display.Show(true);
    display.Update();
    EXPECT_EQ(source.calls, 2);
    display.Draw(drawn.dc);

    const EngineInfoCells cells =
        LayOutEngineInfo({panel.left, panel.top, panel.right, panel.bottom}, display.LineHeight());
    const std::vector<DWORD> got = drawn.Pixels();
    const DWORD untouched = blank.Pixels()[0];
    // A cell holds its text: background and letters, two colours at least.
    const auto coloursIn = [&](const Rect& cell) {
        std::set<DWORD> colours;
        for (int y = cell.top; y < cell.bottom; ++y)
            for (int x = cell.left; x < cell.right; ++x)
                colours.insert(got[static_cast<std::size_t>(y) * Canvas::kWidth + x]);
        return colours.size();
    };
    for (const Rect& cell : {cells.eval, cells.depth, cells.time, cells.speed, cells.nodes})
        EXPECT_GE(coloursIn(cell), 2u) << "no text in the cell at " << cell.left << "," << cell.top;
    int outside = 0;
    for (int y = 0; y < Canvas::kHeight; ++y)
        for (int x = 0; x < Canvas::kWidth; ++x)
            outside += !PtInRect(&panel, {x, y}) && got[y * Canvas::kWidth + x] != untouched;
    EXPECT_EQ(outside, 0) << "pixels drawn outside the panel";
}

}  // namespace
}  // namespace velmora::gui
