// What child programs share on both systems: argument texts split into words, and output cut
// into lines whatever the pieces it arrives in.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Process.h"

namespace velmora::platform {
namespace {

TEST(Process, SplitsArgumentTexts) {
    struct Case {
        const char16_t* text;
        std::vector<std::u16string> words;
    };
    const Case kCases[] = {
        {u"", {}},
        {u"  a b\tc  ", {u"a", u"b", u"c"}},
        {u"\"C:\\Program Files\\e.script\" log.txt", {u"C:\\Program Files\\e.script", u"log.txt"}},
        {u"x\"y z\"w \"\"", {u"xy zw", u""}},
    };
    for (const Case& test : kCases)
        EXPECT_EQ(SplitArguments(test.text), test.words);
}

TEST(Process, CutsOutputIntoLinesAtAnyPieceSize) {
    const std::string output = "id name X\r\nuciok\n\nreadyok\r\ninfo depth 1";
    const std::vector<std::string> expected = {"id name X", "uciok", "", "readyok", "info depth 1"};
    for (std::size_t piece = 1; piece <= output.size(); ++piece) {
        std::vector<std::string> lines;
        OutputLines cutter([&](const std::string& line) { lines.push_back(line); });
        for (std::size_t at = 0; at < output.size(); at += piece)
            cutter.Add(output.data() + at, std::min(piece, output.size() - at));
        cutter.Finish();
        EXPECT_EQ(lines, expected) << "pieces of " << piece;
    }
}

}  // namespace
}  // namespace velmora::platform
