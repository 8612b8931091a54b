// The engine information panel's time text, the one whose digits are easy to misread.
#include "models/EngineInfoTexts.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

// Intended: the milliseconds are printed with "%02d", so 3050 ms reads 3.50 and 3500 ms reads
// 3.500; they are not hundredths.
TEST(EngineInfoTexts, TimeShowsTheMillisecondsWithTwoPlaces) {
    const std::pair<std::int32_t, const char16_t*> cases[] = {{59, u"Time :   0.59  "},
                                                              {3050, u"Time :   3.50  "},
                                                              {3500, u"Time :   3.500  "},
                                                              {98765432, u"Time :98765.432  "}};
    for (const auto& [milliseconds, shown] : cases)
        EXPECT_EQ(EngineTimeText(milliseconds), shown) << milliseconds;
}

}  // namespace
}  // namespace velmora
