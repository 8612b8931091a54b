// The PGN line reader: 255-byte lines, offsets, seeking back, and its fast paths (lines cut from
// the chunk masks, tag lines reached by passing over the others), at every read-ahead size.
#include <gtest/gtest.h>

#include <optional>

#include "PgnTestSupport.h"
#include "fuzz/FuzzDrivers.h"

namespace velmora {
namespace {

using Line = std::pair<std::string, std::uint32_t>;  // the text, then Position() after it

std::optional<Line> ReadOne(PgnLineReader& reader) {
    char buffer[PgnLineReader::kLineSize];
    int length = -1;
    if (!reader.ReadLine(buffer, &length)) return std::nullopt;
    return Line{std::string(buffer, length), reader.Position()};
}

// Reads bytes with block size 255 from the start, then every other size from where the file
// stands after the first line, each reader then seeking back to every offset and 0: all agree.
// The fast paths cut the lines NextLine cuts, at every size.
std::vector<Line> ReadEverySize(const std::string& bytes) {
    SCOPED_TRACE(testing::PrintToString(bytes));
    test::MemoryFile file(bytes);
    std::vector<Line> all;
    for (std::uint32_t size : {255u, 1u, 7u, 64u, 256u, 4096u, PgnLineReader::kDefaultBlockSize}) {
        SCOPED_TRACE(size);
        const std::uint32_t start = size == 255 || all.empty() ? 0 : all[0].second;
        file.position = start;
        PgnLineReader reader(file, size);
        std::vector<Line> lines;
        for (std::optional<Line> line; lines.size() < 10000 && (line = ReadOne(reader));)
            lines.push_back(*line);
        if (size == 255) all = lines;
        EXPECT_EQ(lines, std::vector<Line>(all.begin() + (start != 0), all.end()));
        for (std::size_t i = all.size(); i > 0; --i) {
            EXPECT_EQ(reader.Seek(i > 1 ? all[i - 2].second : 0), 1);
            EXPECT_EQ(ReadOne(reader), all[i - 1]);
        }
        const fuzz::LinesRun run = fuzz::RunLines(bytes, size);
        EXPECT_EQ(run.visited, run.cut);
        EXPECT_EQ(run.skippedTo, run.tagLines);
    }
    return all;
}

TEST(PgnLineReader, CutsLinesAndOffsetsTheSameWithEveryBlockSize) {
    std::string x254(254, 'x'), x300(300, 'x'), blanks(300, 'b');
    blanks[200] = blanks[241] = ' ';  // the last blank within 255 bytes at 241
    const std::pair<std::string, std::vector<Line>> cases[] = {
        {"", {}},
        {"ab\r\ncd\n", {{"ab", 4}, {"cd", 7}}},
        {"ab\rcd\re", {{"ab", 3}, {"cd", 6}, {"e", 7}}},
        {"ab\n\n\r\n\r\ncd", {{"ab", 8}, {"cd", 10}}},
        {blanks, {{blanks.substr(0, 241), 241}, {blanks.substr(241), 300}}},
        {x300, {{x300.substr(0, 255), 255}, {x300.substr(255), 300}}},
        {"e4 e5", {{"e4", 2}, {" e5", 5}}},
        // Intended: a CR/LF run crossing the 255th byte leaves its rest as one empty line.
        {x254 + "\r\n\r\nyz", {{x254, 255}, {"", 258}, {"yz", 260}}},
        {std::string("a\0b\nc", 5), {{std::string("a\0b", 3), 4}, {"c", 5}}},
    };
    for (const auto& [input, lines] : cases)
        EXPECT_EQ(ReadEverySize(input), lines);
}

TEST(PgnLineReader, TagLinesAreFoundWhereverALineBegins) {
    const std::string x255(255, 'x'), x254(254, 'x');
    const std::pair<std::string, std::vector<fuzz::LinesRun::Line>> cases[] = {
        {"1. e4\r\n[Event \"a\"]\r\n", {{7, "[Event \"a\"]"}}},
        // A line of 255 bytes without a blank is cut there: the next line begins with '['.
        {x255 + "[Event \"b\"]\n", {{255, "[Event \"b\"]"}}},
        // Cut at the last blank instead: that line begins with the blank.
        {"1. e4 " + x255 + "[Event \"c\"]\n", {}},
        // A CR/LF run crossing the 255th byte: an empty line, then the tag line.
        {x254 + "\r\n\r\n[Event \"d\"]\n", {{258, "[Event \"d\"]"}}},
        {"{[%clk 0:01:02]} [x] 1. e4\n", {}},  // brackets inside a line
        // The last line has no break: it is cut at its last blank.
        {std::string(300, '\n') + "[Event \"f\"]", {{300, "[Event"}}},
    };
    for (const auto& [input, tagLines] : cases) {
        EXPECT_EQ(fuzz::RunLines(input, PgnLineReader::kDefaultBlockSize).tagLines, tagLines);
        ReadEverySize(input);
    }
}

}  // namespace
}  // namespace velmora
