// The device fuzz drivers' seeds cut off anywhere, and hostile lines, keep the fuzzers' properties.
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

std::vector<std::pair<std::string, std::string>> AllSeeds() {
    std::vector<std::pair<std::string, std::string>> seeds;
    for (const char* target : {"fuzz-ucb-line", "fuzz-star-diamond-line"}) {
        for (const auto& entry : std::filesystem::directory_iterator(kCorpus / target))
            seeds.emplace_back(entry.path().filename().string(),
                               test::ReadBytes(entry.path().u16string()));
    }
    return seeds;
}

// Every seed, through both drivers, cut after each of its bytes.
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
        "Me2e4/" + std::string(5000, 'Q') + "\nP\nT\nT\n",
        start + "." + std::string(5000, '8') + "\n",
        start + ".8" + std::string(5000, ' ') + "WP\n" + header + "!\n",
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
