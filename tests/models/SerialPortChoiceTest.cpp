// A port typed in the port chooser: the forms a person writes, and texts that name no port.
#include <gtest/gtest.h>

#include "models/SerialPortChoice.h"

namespace velmora {
namespace {

TEST(SerialPortChoice, ReadsTypedPorts) {
    const std::pair<const char16_t*, int> cases[] = {
        {u" 12 ", 12},  {u"com7:", 7},  {u"COM3: (serial.dll)", 3},
        {u"", -1},      {u"256", -1},   {u"LPT1:", -1},
        {u"COM 5", -1}, {u"COM1:5", -1}};
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(PortNumberFromText(cases[i].first), cases[i].second) << "case " << i;
    EXPECT_EQ(PortOpenName(21), u"COM21:");
}

}  // namespace
}  // namespace velmora
