// velmora-pgn play, list, show, fens, check, append, resave and search: arguments, output,
// messages, exit codes.
#include <gtest/gtest.h>

#include <sstream>
#include <tuple>
#include <vector>

#include "PgnTestSupport.h"
#include "cli/Commands.h"

namespace velmora::cli {
namespace {

using platform::WideToUtf8;
using Command = int (*)(const Arguments&, std::ostream&, std::ostream&);

struct Outcome {
    int code;
    std::string out, err;
};

Outcome Execute(Command command, const Arguments& args) {
    std::ostringstream out, err;
    int code = command(args, out, err);
    return {code, out.str(), err.str()};
}

const std::u16string kThree = test::DataPath("three-games.pgn");
// Game 2 of three-games.pgn as saving writes it.
const std::string kSecondGame =
    "[Event \"Blitz\"]\r\n[Site \"?\"]\r\n[Date \"????.??.??\"]\r\n[Round \"?\"]\r\n"
    "[White \"Dupont\"]\r\n[Black \"Ernst\"]\r\n[Result \"0-1\"]\r\n\r\n"
    "1. f3 e5 2. g4 Qh4+ 0-1\r\n\r\n";

TEST(PlayCommand, StartLineThenOneLinePerMove) {
    const std::string twoMoves =
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1\n"
        "1. e4\trnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1\n"
        "1... e5\trnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2\n";
    Outcome run = Execute(RunPlay, {u"e4", u"e5"});
    EXPECT_EQ(run.code, kExitOk);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, twoMoves);
    // Moves are numbered from the position given.
    run = Execute(RunPlay, {u"--from", u"6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 30", u"Ra8+"});
    EXPECT_EQ(run.code, kExitOk);
    EXPECT_EQ(run.out,
              "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 30\n"
              "30. Ra8+\tR5k1/5ppp/8/8/8/8/5PPP/6K1 b - - 0 30\n");
    // A move that cannot be played ends the run after the moves before it.
    run = Execute(RunPlay, {u"e4", u"e4"});
    EXPECT_EQ(run.code, kExitFailed);
    EXPECT_EQ(run.out, twoMoves.substr(0, twoMoves.find("1... e5")));
    EXPECT_EQ(run.err, "Illegal move : e4\n");
}

TEST(PgnCommands, ListShowAndFens) {
    Outcome list = Execute(RunList, {kThree});
    EXPECT_EQ(list.code, kExitOk);
    EXPECT_EQ(list.out,
              "1\t0\tAubert, Claire\tBrun, Marc\t1-0\t2003.05.17\tClub Match\t1\tLyon\tC20\t"
              "1. e4 e5 2. Qh5 Nc6 3. Bc4 Nf6\n"
              "2\t197\tDupont\tErnst\t0-1\t??\\??\tBlitz\t?\t?\t\t1. f3 e5 2. g4 Qh4# 0-1\n"
              "3\t294\tBrun, Marc\tAubert, Claire\t1/2-1/2\t2003.05.18\tClub Match\t2\tLyon\t\t"
              "{Short draw} 1. d4 d5 2. c4 c6\n");
    // On a terminal, progress may come before the summary on err; only its end is compared.
    EXPECT_TRUE(list.err.ends_with("3 games\n")) << list.err;
    Outcome show = Execute(RunShow, {kThree, u"2"});
    EXPECT_EQ(show.code, kExitOk);
    EXPECT_EQ(show.out, kSecondGame);
    Outcome fens = Execute(RunFens, {kThree, u"2"});
    EXPECT_EQ(fens.code, kExitOk);
    EXPECT_TRUE(fens.out.ends_with(
        "\n2... Qh4+\trnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 0 3\n"))
        << fens.out;
}

TEST(PgnCommands, CheckAppendAndResave) {
    const std::u16string illegal = test::DataPath("illegal-black-move.pgn");
    Outcome check = Execute(RunCheck, {kThree, illegal});
    EXPECT_EQ(check.code, kExitFailed);
    EXPECT_EQ(check.out, WideToUtf8(illegal) + "\t1\t8\tIllegal move : 12... Nf6\n");
    EXPECT_TRUE(check.err.ends_with("4 games, 3 loaded, 1 failed\n")) << check.err;
    check = Execute(RunCheck, {kThree});
    EXPECT_EQ(check.code, kExitOk);
    EXPECT_TRUE(check.err.ends_with("3 games, 3 loaded, 0 failed\n")) << check.err;
    const std::string original = test::ReadBytes(kThree);
    test::TempFolder folder;
    const std::u16string file = folder.Path("games.pgn");
    EXPECT_EQ(Execute(RunAppend, {kThree, u"2", file}).code, kExitOk);
    EXPECT_EQ(test::ReadBytes(file), kSecondGame);
    test::WriteBytes(file, original);
    EXPECT_EQ(Execute(RunResave, {file, u"2"}).code, kExitOk);
    EXPECT_EQ(test::ReadBytes(file), original.substr(0, 197) + kSecondGame + original.substr(294));
}

// The search itself is tested on the game library; here, a file that cannot be read is reported
// and the others are still searched.
TEST(PgnCommands, SearchGoesOnPastAnUnreadableFile) {
    const std::u16string b = test::DataPath("search-b.pgn");
    Outcome run = Execute(RunSearch,
                          {u"--white", u"@zed", u"--ignore-colors", test::DataPath("none.pgn"), b});
    EXPECT_EQ(run.code, kExitFailed);
    EXPECT_EQ(run.out, WideToUtf8(b) +
                           "\t1\t0\tZed\tAbc\t1/2-1/2\t??\\??\tSearch\t?\t?\tC20\t"
                           "1. e4 e5 2. Nf3 Nc6 3. Bb5 1/2\n");
    EXPECT_NE(run.err.find("Unable to open file: "), std::string::npos) << run.err;
    EXPECT_TRUE(run.err.ends_with("2 games searched in 1 files, 1 found\n")) << run.err;
}

// Wrong arguments print on err the usage that --help prints on out, and nothing on out.
TEST(PgnCommands, WrongArgumentsPrintTheUsage) {
    const std::u16string f = u"f.pgn";
    const std::pair<Command, std::vector<Arguments>> cases[] = {
        {RunShow, {{kThree, u"x"}, {kThree, u"0"}}},
        {RunAppend, {{kThree, u"1"}}},
        {RunResave, {{kThree, u"-1"}}},
        {RunSearch, {{u"--white", u"x"}, {u"--material", u"P8K1/", f}}}};
    for (const auto& [command, wrong] : cases) {
        const Outcome help = Execute(command, {u"--help"});
        EXPECT_EQ(help.code, kExitOk);
        EXPECT_TRUE(help.out.starts_with("Usage: velmora-pgn ")) << help.out;
        for (const Arguments& args : wrong) {
            SCOPED_TRACE(WideToUtf8(args.empty() ? u"" : args[0] + u" " + args.back()));
            const Outcome run = Execute(command, args);
            EXPECT_EQ(run.code, kExitUsage);
            EXPECT_NE(run.err.find(help.out), std::string::npos) << run.err;
            EXPECT_EQ(run.out, "");
        }
    }
}

// Failures: the exit code, and what err says.
TEST(PgnCommands, Failures) {
    const std::u16string missing = test::DataPath("no-such-file.pgn");
    const std::tuple<Command, Arguments, int, std::string> cases[] = {
        {RunPlay, {u"K\u00E92"}, kExitFailed, "Illegal move : K\303\2512\n"},  // in UTF-8
        {RunPlay, {u"--", u"-e4"}, kExitFailed, "Illegal move : -e4\n"},       // a move after "--"
        {RunPlay, {u"--from", u"8/8/8/8/8/8/8/8 w KX - 0 1"}, kExitFailed, "Invalid initial "},
        {RunList, {missing}, kExitFailed, "Unable to open file: "},
        {RunShow, {kThree, u"4"}, kExitFailed, "There is no game 4 in "},
        {RunSearch,
         {u"--result", u"1-0", test::DataPath("search-a.pgn")},
         kExitUsage,
         "Game search: At least one criteria (other than result) must be filled\n"},
    };
    for (const auto& [command, args, code, err] : cases) {
        const Outcome run = Execute(command, args);
        EXPECT_EQ(run.code, code) << run.err;
        EXPECT_TRUE(run.err.starts_with(err)) << run.err;
    }
}

}  // namespace
}  // namespace velmora::cli
