// What serial ports share on both systems: received bytes cut into lines, and the port numbers
// read from driver names.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/SerialPort.h"

namespace velmora::platform {
namespace {

void Collect(const char* line, void* context) {
    static_cast<std::vector<std::string>*>(context)->push_back(line);
}

std::vector<std::string> Cut(const std::string& bytes) {
    std::vector<std::string> lines;
    SerialLineCutter cutter(Collect, &lines);
    for (char byte : bytes)
        cutter.Add(static_cast<unsigned char>(byte));
    return lines;
}

TEST(SerialLineCutter, EndsLinesAtCrOrLfAndDropsOtherControlBytes) {
    struct Case {
        std::string bytes;
        std::vector<std::string> lines;
    };
    const Case kCases[] = {
        {"Me2-e4\r\n", {"Me2-e4"}},
        {"I\n\rP\r\rX\n\n", {"I", "P", "X"}},
        {"no end yet", {}},
        {std::string("M\0e2\t-e\x01"
                     "4\x1f\r",
                     11),
         {"Me2-e4"}},
        {"\t\x7f\x80\xe9 \r", {"\x7f\x80\xe9 "}},
        {"\x1b\x1b\n", {}},
    };
    for (const Case& test : kCases)
        EXPECT_EQ(Cut(test.bytes), test.lines) << testing::PrintToString(test.bytes);
}

TEST(SerialLineCutter, HandsOnFullLinesAtOnceWithoutLosingBytes) {
    for (const std::size_t length : {254, 255, 256, 510, 600}) {
        std::string text;
        for (std::size_t at = 0; at < length; ++at)
            text += static_cast<char>('!' + at % 90);
        std::vector<std::string> expected;
        for (std::size_t at = 0; at < length; at += SerialLineCutter::kMaxLine)
            expected.push_back(text.substr(at, SerialLineCutter::kMaxLine));
        // Full lines are handed on before any line end arrives; the rest waits for its end.
        const std::vector<std::string> full(expected.begin(),
                                            expected.begin() + length / SerialLineCutter::kMaxLine);
        EXPECT_EQ(Cut(text), full) << length;
        expected.push_back("next");
        EXPECT_EQ(Cut(text + "\r\nnext\r\n"), expected) << length;
    }
}

TEST(SerialPort, ReadsPortNumbersOfComDriverNames) {
    struct Case {
        const char16_t* name;
        bool accepted;
        int number;
    };
    const Case kCases[] = {
        {u"com5:", true, 5},  {u"COM12:", true, 12},
        {u"COM3x:", true, 3}, {u"COM99999999999:", true, 2147483647},
        {u"COMx:", false, 0}, {u"COM1", false, 0},
        {u"", false, 0},      {u"TCP1:", false, 0},
    };
    for (const Case& test : kCases) {
        int number = -1;
        EXPECT_EQ(ReadComPortNumber(test.name, &number), test.accepted)
            << testing::PrintToString(std::u16string(test.name));
        if (test.accepted) {
            EXPECT_EQ(number, test.number);
        }
    }
}

}  // namespace
}  // namespace velmora::platform
