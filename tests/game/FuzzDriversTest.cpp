// The fuzz drivers: files in memory load and scan as real files do, and the fuzzers' findings
// replay with their outcomes.
#include <gtest/gtest.h>

#include <filesystem>

#include "PgnTestSupport.h"
#include "fuzz/FuzzDrivers.h"

namespace velmora {
namespace {

// Every PGN file of tests/data, loaded and scanned from memory as the PGN fuzzers do, gives the
// games, offsets and load results the real file system gives; and checking each game without
// building it gives the code and message that loading it gives.
TEST(FuzzDrivers, MemoryFilesLoadAndScanAsRealFiles) {
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_TEST_DATA_DIR)) {
        if (entry.path().extension() != ".pgn") continue;
        ++files;
        SCOPED_TRACE(entry.path().filename().string());
        const std::u16string path = entry.path().u16string();
        const std::string bytes = test::ReadBytes(path);
        GameIndex index(path.c_str());
        ASSERT_EQ(index.Load(), 1);
        std::vector<int> codes;
        std::vector<std::uint32_t> ends;  // of the games that load, 0 for the others
        std::vector<std::uint32_t> offsets = test::Offsets(index);
        offsets.push_back(0);
        for (std::uint32_t offset : offsets) {
            Game game(&index);
            codes.push_back(LoadGame(game, nullptr, offset, index.Count()).code);
            ends.push_back(codes.back() == kPgnOk ? game.endOffset : 0);
        }

        const fuzz::LoadRun run = fuzz::RunLoadGames(bytes);
        EXPECT_EQ(run.offsets, test::Offsets(index));
        EXPECT_EQ(run.codes, codes);
        EXPECT_EQ(run.sharedCodes, codes);
        EXPECT_EQ(run.ends, ends);
        EXPECT_EQ(run.sharedEnds, ends);
        EXPECT_EQ(run.checkMessages, run.messages);
        const fuzz::ScanRun scan = fuzz::RunScan(bytes, PgnLineReader::kDefaultBlockSize);
        EXPECT_EQ(scan.count, index.Count());
    }
    EXPECT_GT(files, 20);
}

// Inputs the fuzzers found, and their neighbours, under tests/data/fuzz/, replayed through the
// same driver with the outcome the full legality and check tests give. The first byte picks the
// start (7 and 0: the initial position, no glyph). Intended: a pawn move whose from square is
// empty is played, as a move of nothing, when it leaves the white king safe.
TEST(FuzzDrivers, FindingsReplayWithTheirOutcomes) {
    const struct {
        const char* file;
        const char16_t* written;
        int unreadable;
    } cases[] = {
        // d3 is empty: "dd4" would take the pawn on d4 that shields the king on d2 from the
        // queen on d8, so it is illegal (the shortcut through the last move let it pass).
        {"san-empty-square-takes-file-blocker.san",
         u"f3 1... Nc6 d4 2... Nxd4 f5 3... d5 b4 4. d4 Kd2 5... d4", 1},
        // The same on a diagonal: "axb4" from the empty a3 would unmask the queen on a5.
        {"san-empty-square-takes-diagonal-blocker.san",
         u"d4 1... c6 Kd2 2... b5 e3 3... b4 e4 4... Qa5 c3", 1},
        // d4 is empty: "d5" moves nothing and checks nothing, so it has no check mark.
        {"san-empty-square-move-gives-no-check.san", u"e4 1... e5 d5 2... d6", 0},
    };
    for (const auto& c : cases) {
        const std::string bytes = test::ReadBytes(test::DataPath(std::string("fuzz/") + c.file));
        ASSERT_FALSE(bytes.empty()) << c.file;
        const fuzz::SanRun run = fuzz::RunSan(bytes);
        EXPECT_EQ(run.written, c.written) << c.file;
        EXPECT_EQ(run.unreadable, c.unreadable) << c.file;
        EXPECT_TRUE(run.pathsAgree) << c.file;
    }
}

}  // namespace
}  // namespace velmora
