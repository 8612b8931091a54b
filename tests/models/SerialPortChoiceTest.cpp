// A port typed in the port chooser: the forms a person writes, and texts that name no port.
#include <gtest/gtest.h>

#include "models/SerialPortChoice.h"

namespace velmora {
namespace {

TEST(SerialPortChoice, ReadsTypedPorts) {
    const struct {
        const char16_t* text;
        int number;
    } cases[] = {
        {u" 12 ", 12},        {u"com7:", 7},      {u"COM3: (serial.dll)", 3},
        {u"255", 255},        {u"COM4 (usb)", 4}, {u"", -1},
        {u"COM:", -1},        {u"COM0:", -1},     {u"256", -1},
        {u"99999999999", -1}, {u"LPT1:", -1},     {u"5x", -1},
        {u"COM 5", -1},       {u"-5", -1},        {u"COM1:5", -1},
        {u"COM2: 7", -1},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(PortNumberFromText(cases[i].text), cases[i].number);
    }
}

TEST(SerialPortChoice, OpenNameHasTheColon) {
    EXPECT_EQ(PortOpenName(21), u"COM21:");
}

}  // namespace
}  // namespace velmora
