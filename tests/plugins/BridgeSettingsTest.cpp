// The bridge's ini file: sections, keys in any case, comments, options in order, the timeout.
// A program's path relative to the ini's folder is made absolute when the built bridge runs
// velmora-engine beside it (native/EngineLibrariesTest).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "plugins/ucibridge/BridgeSettings.h"

namespace velmora::plugin {
namespace {

TEST(BridgeSettings, ReadsTheIniText) {
    BridgeSettings settings;
    ASSERT_TRUE(
        ReadBridgeSettings("; the engine\r\n"
                           "[ENGINE]\r\n"
                           "  program =  C:\\Engines\\Stockfish\\stockfish.exe \r\n"
                           "Arguments=--threads 1\r\n"
                           "# HandshakeTimeout=1\r\n"
                           "handshaketimeout=2500\r\n"
                           "[Options]\r\n"
                           "Move Overhead = 100\r\n"
                           "Hash=16\r\n"
                           "SyzygyPath=\r\n"
                           "no equals sign\r\n"
                           "[Other]\r\n"
                           "Program=ignored.exe\r\n"
                           "[Engine]\r\n"
                           "Arguments=--threads 2",
                           &settings));
    EXPECT_EQ(settings.program, u"C:\\Engines\\Stockfish\\stockfish.exe");
    EXPECT_EQ(settings.arguments, u"--threads 2");  // the last one counts
    EXPECT_EQ(settings.handshakeTimeoutMs, 2500);
    EXPECT_EQ(settings.options, (std::vector<engine::UciOption>{
                                    {"Move Overhead", "100"}, {"Hash", "16"}, {"SyzygyPath", ""}}));

    struct Case {
        const char* text;
        bool readable;
    };
    const Case kCases[] = {
        {"Program=engine\nHandshakeTimeout=soon", true},  // no section needed
        {"Program=\nArguments=x", false},
        {"[Options]\nProgram=engine", false},
        {"", false},
    };
    for (const Case& test : kCases) {
        BridgeSettings read;
        EXPECT_EQ(ReadBridgeSettings(test.text, &read), test.readable) << test.text;
        EXPECT_EQ(read.handshakeTimeoutMs, kDefaultHandshakeTimeoutMs) << test.text;
    }
}

}  // namespace
}  // namespace velmora::plugin
