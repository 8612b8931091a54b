// velmora-pgn play: output lines, error messages and exit codes.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "cli/Commands.h"

namespace velmora::cli {
namespace {

struct PlayResult {
    int code;
    std::string out;
    std::string err;
};

PlayResult Play(std::initializer_list<const char16_t*> words) {
    Arguments args;
    for (const char16_t* word : words)
        args.emplace_back(word);
    std::ostringstream out, err;
    int code = RunPlay(args, out, err);
    return {code, out.str(), err.str()};
}

TEST(PlayCommand, RuyLopezEndsWithCastlingLine) {
    PlayResult run = Play({u"e4", u"e5", u"Nf3", u"Nc6", u"Bb5", u"a6", u"Ba4", u"Nf6", u"O-O"});
    EXPECT_EQ(run.code, kExitOk);
    EXPECT_EQ(run.err, "");
    // The start position's line, then one line per move; side, castling, en passant and
    // numbers all show in the position texts.
    EXPECT_EQ(
        run.out.rfind("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1\n"
                      "1. e4\trnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1\n"
                      "1... e5\trnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2\n",
                      0),
        0u);
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 10);
    EXPECT_NE(run.out.find("\n5. O-O\tr1bqkb1r/1ppp1ppp/p1n2n2/4p3/B3P3/5N2/PPPP1PPP/RNBQ1RK1 b "
                           "kq - 0 5\n"),
              std::string::npos);
    EXPECT_EQ(run.out.find('\r'), std::string::npos);
}

TEST(PlayCommand, FromPositionTextNumbersMovesFromIt) {
    // A back-rank mate: mate is marked "+" like any check, and the move takes number 30.
    PlayResult run = Play({u"--from", u"6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 30", u"Ra8+"});
    EXPECT_EQ(run.code, kExitOk);
    EXPECT_EQ(run.out,
              "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 30\n"
              "30. Ra8+\tR5k1/5ppp/8/8/8/8/5PPP/6K1 b - - 0 30\n");
}

TEST(PlayCommand, Failures) {
    struct Case {
        std::initializer_list<const char16_t*> words;
        int code;
        const char* outStart;
        const char* err;
    };
    const Case cases[] = {
        {{u"e4", u"e4"}, kExitFailed, "rnbqkbnr", "Illegal move : e4\n"},
        {{u"e4", u"Nf5"}, kExitFailed, "rnbqkbnr", "Illegal move : Nf5\n"},
        {{u"--from", u"8/8/8/8/8/8/8/8 w KX - 0 1"}, kExitFailed, "", "Invalid initial position\n"},
        {{u"--frm", u"e4"}, kExitUsage, "", "Usage: velmora-pgn play"},
        {{u"--from"}, kExitUsage, "", "Usage: velmora-pgn play"},
        {{u"--help"}, kExitOk, "Usage: velmora-pgn play", ""},
    };
    for (const Case& c : cases) {
        PlayResult run = Play(c.words);
        SCOPED_TRACE(run.err);
        EXPECT_EQ(run.code, c.code);
        EXPECT_EQ(run.out.rfind(c.outStart, 0), 0u) << run.out;
        EXPECT_EQ(run.err.rfind(c.err, 0), 0u);
    }
}

TEST(PlayCommand, NonAsciiArgumentIsEchoedAsUtf8) {
    PlayResult run = Play({u"e4", u"e5½"});
    EXPECT_EQ(run.code, kExitOk);  // the reader ignores what follows the move
    PlayResult bad = Play({u"Ké2"});
    EXPECT_EQ(bad.code, kExitFailed);
    EXPECT_EQ(bad.err,
              "Illegal move : K\xC3\xA9"
              "2\n");
}

}  // namespace
}  // namespace velmora::cli
