// The engine information panel's texts and cells.
#include "models/EngineInfoTexts.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(EngineInfoTexts, TimeShowsTheMillisecondsWithTwoPlaces) {
    // Intended: the milliseconds are printed with "%02d", so 3050 ms reads 3.50 and 3500 ms
    // reads 3.500; they are not hundredths.
    const struct {
        std::int32_t milliseconds;
        const char16_t* shown;
    } cases[] = {
        {59, u"Time :   0.59  "},
        {3050, u"Time :   3.50  "},
        {3500, u"Time :   3.500  "},
        {98765432, u"Time :98765.432  "},
    };
    for (const auto& c : cases)
        EXPECT_EQ(EngineTimeText(c.milliseconds), c.shown) << c.milliseconds;
}

TEST(EngineInfoTexts, NumbersAndTextsArePaddedAsShown) {
    EXPECT_EQ(EngineDepthText(1234), u"Depth :1234  ");
    EXPECT_EQ(EngineSpeedText(85), u"KN/s : 85   ");
    EXPECT_EQ(EngineNodesText(1234567), u"Total nodes : 1234567   ");
    EXPECT_EQ(EngineEvalText(u"+0.25"), u"Eval : +0.25");
    EXPECT_EQ(EngineEvalText(nullptr), u"Eval : ");
    EXPECT_EQ(EngineLineText(u"e4 e5 Nf3"), u"e4 e5 Nf3   ");
    EXPECT_EQ(EngineLineText(nullptr), u"   ");
}

TEST(EngineInfoTexts, SystemFontFromTwoHundredAndOnePixels) {
    EXPECT_FALSE(EngineInfoUsesSystemFont(200));
    EXPECT_TRUE(EngineInfoUsesSystemFont(201));
}

TEST(EngineInfoTexts, CellsSplitAtTheMiddleAndStopAtThePanelsBottom) {
    const EngineInfoCells cells = LayOutEngineInfo({2, 100, 237, 200}, 15);
    EXPECT_EQ(cells.eval, (Rect{2, 100, 119, 115}));
    EXPECT_EQ(cells.depth, (Rect{119, 100, 237, 115}));
    EXPECT_EQ(cells.time, (Rect{2, 115, 119, 130}));
    EXPECT_EQ(cells.speed, (Rect{119, 115, 237, 130}));
    EXPECT_EQ(cells.nodes, (Rect{2, 130, 119, 145}));
    EXPECT_EQ(cells.line, (Rect{2, 145, 237, 200}));

    const EngineInfoCells low = LayOutEngineInfo({0, 0, 160, 40}, 15);
    EXPECT_EQ(low.nodes, (Rect{0, 30, 80, 40}));
    EXPECT_TRUE(low.line.IsEmpty());
}

}  // namespace
}  // namespace velmora
