// velmora-pgn list, show, fens, check, append and resave over the PGN test files.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "PgnTestSupport.h"
#include "cli/Commands.h"
#include "game/Game.h"
#include "game/PgnParser.h"
#include "game/PgnWriter.h"

namespace velmora::cli {
namespace {

using platform::WideToUtf8;

struct Outcome {
    int code;
    std::string out;
    std::string err;
};

using Command = int (*)(const Arguments&, std::ostream&, std::ostream&);

Outcome Execute(Command command, const Arguments& args) {
    std::ostringstream out, err;
    int code = command(args, out, err);
    return {code, out.str(), err.str()};
}

// On a terminal, progress may come before the summary on err; only its end is compared.
const std::u16string kThree = test::DataPath("three-games.pgn");
// Game 2 of three-games.pgn as saving writes it: the seven tags in their order, absent ones
// with their defaults, the check mark for the mate.
const std::string kSecondGame =
    "[Event \"Blitz\"]\r\n[Site \"?\"]\r\n[Date \"????.??.??\"]\r\n[Round \"?\"]\r\n"
    "[White \"Dupont\"]\r\n[Black \"Ernst\"]\r\n[Result \"0-1\"]\r\n\r\n"
    "1. f3 e5 2. g4 Qh4+ 0-1\r\n\r\n";
const std::string kListThree =
    "1\t0\tAubert, Claire\tBrun, Marc\t1-0\t2003.05.17\tClub Match\t1\tLyon\tC20\t"
    "1. e4 e5 2. Qh5 Nc6 3. Bc4 Nf6\n"
    "2\t197\tDupont\tErnst\t0-1\t??\\??\tBlitz\t?\t?\t\t1. f3 e5 2. g4 Qh4# 0-1\n"
    "3\t294\tBrun, Marc\tAubert, Claire\t1/2-1/2\t2003.05.18\tClub Match\t2\tLyon\t\t"
    "{Short draw} 1. d4 d5 2. c4 c6\n";

TEST(PgnCommands, ListShowAndFens) {
    Outcome list = Execute(RunList, {kThree});
    EXPECT_EQ(list.code, kExitOk);
    EXPECT_EQ(list.out, kListThree);
    EXPECT_TRUE(list.err.ends_with("3 games\n")) << list.err;

    Outcome show = Execute(RunShow, {kThree, u"2"});
    EXPECT_EQ(show.code, kExitOk);
    EXPECT_EQ(show.out, kSecondGame);

    // Game 1, with its extra tag, is shown exactly as the writer writes the loaded game.
    Game game;
    game.SetFilePath(kThree);
    ASSERT_EQ(LoadGame(game, nullptr, 0, 3), kPgnOk);
    test::MemoryFile written;
    PgnWriter(written).WriteGame(game);
    show = Execute(RunShow, {kThree, u"1"});
    EXPECT_EQ(show.out, written.bytes);
    EXPECT_NE(show.out.find("[Result \"1-0\"]\r\n[ECO \"C20\"]\r\n\r\n1. e4 e5"),
              std::string::npos);

    Outcome fens = Execute(RunFens, {kThree, u"2"});
    EXPECT_EQ(fens.code, kExitOk);
    EXPECT_EQ(fens.out,
              "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1\n"
              "1. f3\trnbqkbnr/pppppppp/8/8/8/5P2/PPPPP1PP/RNBQKBNR b KQkq - 0 1\n"
              "1... e5\trnbqkbnr/pppp1ppp/8/4p3/8/5P2/PPPPP1PP/RNBQKBNR w KQkq e6 0 2\n"
              "2. g4\trnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq g3 0 2\n"
              "2... Qh4+\trnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 0 3\n");
}

TEST(PgnCommands, CheckListsFailuresAndCounts) {
    const std::u16string illegal = test::DataPath("illegal-black-move.pgn");
    const std::u16string badFen = test::DataPath("bad-fen.pgn");
    const std::u16string unknown = test::DataPath("unknown-token.pgn");
    Outcome check = Execute(RunCheck, {kThree, illegal, badFen, unknown});
    EXPECT_EQ(check.code, kExitFailed);
    EXPECT_EQ(check.out, WideToUtf8(illegal) + "\t1\t8\tIllegal move : 12... Nf6\n" +
                             WideToUtf8(badFen) + "\t1\t4\tInvalid initial position\n" +
                             WideToUtf8(unknown) +
                             "\t1\t6\tUnknown token : Pb5 a6 4. Ba4 Nf6 5.\n");
    EXPECT_TRUE(check.err.ends_with("6 games, 3 loaded, 3 failed\n")) << check.err;

    check = Execute(RunCheck, {kThree});
    EXPECT_EQ(check.code, kExitOk);
    EXPECT_EQ(check.out, "");
    EXPECT_TRUE(check.err.ends_with("3 games, 3 loaded, 0 failed\n")) << check.err;
}

TEST(PgnCommands, AppendAndResaveKeepTheOtherGamesBytes) {
    const std::string original = test::ReadBytes(kThree);
    test::TempFolder folder;
    const std::u16string copy = folder.Path("copy.pgn"), fresh = folder.Path("fresh.pgn");
    test::WriteBytes(copy, original);

    // Appending writes CR LF, then the game; the new entry begins after them.
    EXPECT_EQ(Execute(RunAppend, {kThree, u"2", copy}).code, kExitOk);
    EXPECT_EQ(test::ReadBytes(copy), original + "\r\n" + kSecondGame);
    Outcome list = Execute(RunList, {copy});
    EXPECT_EQ(list.out, kListThree + std::to_string(4) + "\t" +
                            std::to_string(original.size() + 2) +
                            "\tDupont\tErnst\t0-1\t????.??.??\tBlitz\t?\t?\t\t"
                            "1. f3 e5 2. g4 Qh4+ 0-1\n");
    EXPECT_TRUE(list.err.ends_with("4 games\n")) << list.err;
    EXPECT_EQ(Execute(RunAppend, {kThree, u"2", fresh}).code, kExitOk);
    EXPECT_EQ(test::ReadBytes(fresh), kSecondGame);

    // The middle game is replaced between its first tag line and the next game's.
    test::WriteBytes(copy, original);
    EXPECT_EQ(Execute(RunResave, {copy, u"2"}).code, kExitOk);
    EXPECT_EQ(test::ReadBytes(copy), original.substr(0, 197) + kSecondGame + original.substr(294));
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(copy + u".bak")));
}

TEST(PgnCommands, UsageErrorsAndMissingFiles) {
    const struct {
        Command command;
        Arguments args;
    } usage[] = {
        {RunList, {}},
        {RunList, {kThree, kThree}},
        {RunShow, {kThree}},
        {RunShow, {kThree, u"x"}},
        {RunShow, {kThree, u"0"}},
        {RunFens, {kThree, u"2", u"3"}},
        {RunCheck, {}},
        {RunAppend, {kThree, u"1"}},
        {RunResave, {kThree, u"-1"}},
    };
    for (const auto& c : usage) {
        Outcome run = Execute(c.command, c.args);
        EXPECT_EQ(run.code, kExitUsage) << run.err;
        EXPECT_EQ(run.err.rfind("Usage: velmora-pgn ", 0), 0u) << run.err;
        EXPECT_EQ(run.out, "");
    }
    Outcome help = Execute(RunShow, {u"--help"});
    EXPECT_EQ(help.code, kExitOk);
    EXPECT_EQ(help.out, kShowUsage);

    const std::u16string missing = test::DataPath("no-such-file.pgn");
    for (Outcome run : {Execute(RunList, {missing}), Execute(RunShow, {missing, u"1"}),
                        Execute(RunCheck, {missing})}) {
        EXPECT_EQ(run.code, kExitFailed);
        EXPECT_NE(run.err.find("Unable to open file"), std::string::npos) << run.err;
    }
    Outcome beyond = Execute(RunShow, {kThree, u"4"});
    EXPECT_EQ(beyond.code, kExitFailed);
    EXPECT_NE(beyond.err.find("no game 4"), std::string::npos) << beyond.err;
}

}  // namespace
}  // namespace velmora::cli
