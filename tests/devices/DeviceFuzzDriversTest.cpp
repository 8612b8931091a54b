// The device fuzz drivers: their seed files replay with the outcomes the conversations should
// have, and hostile inputs (long lines, every byte, cut-off conversations) keep the properties
// the fuzzers check, under the address sanitizer.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "TestFiles.h"
#include "fuzz/DeviceFuzzDrivers.h"

namespace velmora {
namespace {

const std::filesystem::path kCorpus =
    std::filesystem::path(VELMORA_TEST_DATA_DIR) / ".." / ".." / "fuzz" / "corpus";

std::string Seed(const char* target, const char* file) {
    return test::ReadBytes((kCorpus / target / file).u16string());
}

// Every seed of both targets, by name.
std::vector<std::pair<std::string, std::string>> AllSeeds() {
    std::vector<std::pair<std::string, std::string>> seeds;
    for (const char* target : {"fuzz-ucb-line", "fuzz-star-diamond-line"}) {
        for (const auto& entry : std::filesystem::directory_iterator(kCorpus / target))
            seeds.emplace_back(entry.path().filename().string(),
                               test::ReadBytes(entry.path().u16string()));
    }
    return seeds;
}

TEST(DeviceFuzzDrivers, UcbSeedsReplayWithTheirOutcomes) {
    const struct {
        const char* file;
        int moves;
        std::vector<std::string> sent;  // all of it, or the first line of each dump
    } cases[] = {
        {"requests.txt",
         0,
         {"Xmit on\r\n", "Video Mode\r\n", "Autoclock Off\r\n", "Easy Mode Off\r\n",
          "Velmora 2.1\r\n", ".8RNBQKBNR\r\n"}},
        {"moves-and-take-back.txt", 5, {".8RNBQKBNR\r\n"}},
        {"promotion.txt", 9, {".8Q  QKBNR\r\n"}},
        {"garbage.txt", 0, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        const std::string bytes = Seed("fuzz-ucb-line", c.file);
        ASSERT_FALSE(bytes.empty());
        fuzz::UcbRun run = fuzz::RunUcbLines(bytes);
        EXPECT_TRUE(run.holds);
        EXPECT_EQ(run.moves, c.moves);
        for (std::string& sent : run.sent) {
            if (sent[0] == '.') sent.resize(12);
        }
        EXPECT_EQ(run.sent, c.sent);
    }
}

TEST(DeviceFuzzDrivers, StarDiamondSeedsReplayWithTheirOutcomes) {
    const struct {
        const char* file;
        int moves;  // -1: no game
        std::vector<std::u16string> boxes;
        int stopped;
    } cases[] = {
        {"full-import.txt", 3, {u"All moves received"}, 1},
        {"set-up-promotion.txt", 2, {u"All moves received"}, 1},
        {"no-moves.txt", 0, {u"No moves played"}, 1},
        {"bad-rank-then-silent.txt",
         -1,
         {u"Unable to understand Star Diamond Position",
          u"Star Diamond unavailable, please close this window, turn the Star Diamond off and "
          u"then on again and try again"},
         2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        const std::string bytes = Seed("fuzz-star-diamond-line", c.file);
        ASSERT_FALSE(bytes.empty());
        const fuzz::StarDiamondRun run = fuzz::RunStarDiamondLines(bytes);
        EXPECT_TRUE(run.holds);
        EXPECT_EQ(run.moves, c.moves);
        EXPECT_EQ(run.boxes, c.boxes);
        EXPECT_EQ(run.stopped, c.stopped);
        EXPECT_FALSE(run.importing);
    }
    const fuzz::StarDiamondRun full =
        fuzz::RunStarDiamondLines(Seed("fuzz-star-diamond-line", "full-import.txt"));
    EXPECT_EQ(full.sent, (std::vector<std::string>{"Origin\r\n", "H\r\n", "pos\r\n", "res\r\n",
                                                   "\r\n", "\r\n", "\r\n"}));
}

// Every seed cut after each of its bytes, and every seed through the other driver too: a
// conversation broken off anywhere keeps the properties.
TEST(DeviceFuzzDrivers, CutOffConversationsKeepTheProperties) {
    for (const auto& [name, bytes] : AllSeeds()) {
        for (std::size_t length = 0; length <= bytes.size(); ++length) {
            SCOPED_TRACE(name + " cut at " + std::to_string(length));
            const std::string_view cut(bytes.data(), length);
            ASSERT_TRUE(fuzz::RunUcbLines(cut).holds);
            ASSERT_TRUE(fuzz::RunStarDiamondLines(cut).holds);
        }
    }
}

TEST(DeviceFuzzDrivers, HostileLinesKeepTheProperties) {
    std::string everyByte, byteLines;
    for (int byte = 0; byte < 256; ++byte) {
        everyByte += static_cast<char>(byte);
        byteLines += {static_cast<char>(byte), '\n'};
    }
    const std::string header = ".  aa bb cc dd ee ff gg hh\n";
    const std::string start = "OK\n!\nSD\n!\n" + header;
    const std::vector<std::string> inputs = {
        everyByte,
        byteLines,
        std::string(100000, 'M'),
        "P" + std::string(100000, '\xff'),
        "Me2e4/" + std::string(5000, 'Q') + "\nP\nT\nT\n",
        start + "." + std::string(5000, '8') + "\n",
        start + ".8" + std::string(5000, ' ') + "WP\n" + header + "!\n",
        start + header + "!\nReplay " + std::string(5000, '9') + "\n!\nMove  1 e2-e4\n",
        start + header + "!\nReplay -2147483649\n",
        start + header + "!\nReplay 2\n!\nMove  1 " + everyByte.substr(1, 9) + "\n",
        start + header + "!\nReplay 2\n!\nM" + std::string(5000, 'e') + "\n~\n~\n!\n^\n~\n",
    };
    for (const std::string& input : inputs) {
        SCOPED_TRACE(input.substr(0, 40));
        EXPECT_TRUE(fuzz::RunUcbLines(input).holds);
        EXPECT_TRUE(fuzz::RunStarDiamondLines(input).holds);
    }
}

}  // namespace
}  // namespace velmora
