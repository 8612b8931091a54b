// The line reader's fast paths: lines cut from the chunk masks, and tag lines reached by
// passing over the other lines, are those NextLine cuts one by one, at every read-ahead size.
#include <gtest/gtest.h>

#include <random>

#include "fuzz/FuzzDrivers.h"

namespace velmora {
namespace {

using Lines = std::vector<fuzz::LinesRun::Line>;

void ExpectFastPathsAgree(const std::string& input) {
    for (std::uint32_t block : {1u, 7u, 64u, 255u, 256u, 4096u, PgnLineReader::kDefaultBlockSize}) {
        const fuzz::LinesRun run = fuzz::RunLines(input, block);
        EXPECT_EQ(run.visited, run.cut) << "block " << block;
        EXPECT_EQ(run.skippedTo, run.tagLines) << "block " << block;
    }
}

TEST(PgnLineReader, TagLinesAreFoundWhereverALineBegins) {
    const std::string x255(255, 'x'), x254(254, 'x');
    const std::pair<std::string, Lines> cases[] = {
        {"1. e4\r\n[Event \"a\"]\r\n", {{7, "[Event \"a\"]"}}},
        // A line of 255 bytes without a blank is cut there: the next line begins with '['.
        {x255 + "[Event \"b\"]\n", {{255, "[Event \"b\"]"}}},
        // Cut at the last blank instead: that line begins with the blank.
        {"1. e4 " + x255 + "[Event \"c\"]\n", {}},
        // A CR/LF run crossing the 255th byte: an empty line, then the tag line.
        {x254 + "\r\n\r\n[Event \"d\"]\n", {{258, "[Event \"d\"]"}}},
        {std::string("a\r") + "[Event \"e\"]\r" + "[", {{2, "[Event \"e\"]"}, {14, "["}}},
        {"{[%clk 0:01:02]} [x] 1. e4\n", {}},  // brackets inside a line
        // The last line has no break: it is cut at its last blank.
        {std::string(300, '\n') + "[Event \"f\"]", {{300, "[Event"}}},
    };
    for (const auto& [input, tagLines] : cases) {
        SCOPED_TRACE(testing::PrintToString(input));
        EXPECT_EQ(fuzz::RunLines(input, PgnLineReader::kDefaultBlockSize).tagLines, tagLines);
        ExpectFastPathsAgree(input);
    }
}

// Random files made of pieces that reach every boundary: long lines with and without blanks,
// long runs of line breaks, lone CRs, NUL bytes, brackets inside and at the start of lines,
// tag lines, a last line without a break.
TEST(PgnLineReader, FastPathsAgreeOnRandomFiles) {
    const std::string pieces[] = {"[Event \"x\"]\r\n",
                                  "[White \"y\"]\n",
                                  "1. e4 e5 ",
                                  "Nf3",
                                  "\r\n",
                                  "\r",
                                  "\n",
                                  std::string(130, '\n'),
                                  std::string(300, 'x'),
                                  std::string(60, 'y') + " " + std::string(200, 'z'),
                                  "{[%clk 0:01:02]} ",
                                  "[",
                                  std::string("a\0[b", 4),
                                  " "};
    std::mt19937 random(2024);
    for (int file = 0; file < 60; ++file) {
        std::string input;
        const std::size_t size = 200 + random() % 3000;
        while (input.size() < size)
            input += pieces[random() % std::size(pieces)];
        SCOPED_TRACE(file);
        ExpectFastPathsAgree(input);
    }
}

}  // namespace
}  // namespace velmora
