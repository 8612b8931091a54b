// velmora-pgn play: output lines, error messages and exit codes.
#include <gtest/gtest.h>

#include <sstream>

#include "cli/Commands.h"

namespace velmora::cli {
namespace {

struct PlayResult {
    int code;
    std::string out, err;
};

PlayResult Play(const Arguments& args) {
    std::ostringstream out, err;
    int code = RunPlay(args, out, err);
    return {code, out.str(), err.str()};
}

TEST(PlayCommand, StartLineThenOneLinePerMove) {
    PlayResult run = Play({u"e4", u"e5"});
    EXPECT_EQ(run.code, kExitOk);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out,
              "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1\n"
              "1. e4\trnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1\n"
              "1... e5\trnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2\n");
    // Moves are numbered from the position given.
    run = Play({u"--from", u"6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 30", u"Ra8+"});
    EXPECT_EQ(run.code, kExitOk);
    EXPECT_EQ(run.out,
              "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 30\n"
              "30. Ra8+\tR5k1/5ppp/8/8/8/8/5PPP/6K1 b - - 0 30\n");
}

TEST(PlayCommand, Failures) {
    // Arguments, exit code, start of out, start of err.
    const std::tuple<Arguments, int, const char*, const char*> cases[] = {
        {{u"e4", u"e4"}, kExitFailed, "rnbqkbnr", "Illegal move : e4\n"},
        {{u"e4", u"Nf5"}, kExitFailed, "rnbqkbnr", "Illegal move : Nf5\n"},
        {{u"K\u00E92"}, kExitFailed, "rnbqkbnr", "Illegal move : K\303\2512\n"},  // echoed in UTF-8
        {{u"--", u"-e4"}, kExitFailed, "rnbqkbnr", "Illegal move : -e4\n"},  // a move after "--"
        {{u"--from", u"8/8/8/8/8/8/8/8 w KX - 0 1"}, kExitFailed, "", "Invalid initial position\n"},
        {{u"--frm", u"e4"}, kExitUsage, "", "Usage: velmora-pgn play"},
        {{u"--from"}, kExitUsage, "", "Usage: velmora-pgn play"},
        {{u"--help"}, kExitOk, "Usage: velmora-pgn play", ""}};
    for (const auto& [args, code, outStart, errStart] : cases) {
        PlayResult run = Play(args);
        EXPECT_EQ(run.code, code) << run.err;
        EXPECT_EQ(run.out.rfind(outStart, 0), 0u) << run.out;
        EXPECT_EQ(run.err.rfind(errStart, 0), 0u) << run.err;
    }
}

}  // namespace
}  // namespace velmora::cli
