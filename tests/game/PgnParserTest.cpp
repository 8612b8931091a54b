// Loading PGN games: error codes, messages, the trees built, offsets, and written games reread.
#include <gtest/gtest.h>

#include "PgnTestSupport.h"
#include "game/Game.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/PgnParser.h"
#include "game/PgnWriter.h"

namespace velmora {
namespace {

using platform::WideToUtf8;

// Each move as coordinates/level, its NAG, then the evaluation and comment of the position after
// it; a move's variations follow it in brackets.
std::string Line(const MoveNode* first) {
    std::string text;
    for (const MoveNode* node = first; node; node = node->positionAfter->FirstContinuation()) {
        char16_t move[8];
        text += (node == first ? "" : " ") +
                WideToUtf8({move, std::size_t(WriteCoordinates(node, move))}) + '/' +
                std::to_string(node->level);
        if (node->nag) text += " $" + std::to_string(node->nag);
        const Position* after = node->positionAfter;
        if (after->Value().evaluation) text += " #" + std::to_string(after->Value().evaluation);
        if (after->Comment()) text += " {" + WideToUtf8(after->Comment()) + '}';
        if (node->IsVariation()) continue;  // a list's variations hang on its first node
        for (const MoveNode* other = node->nextAlternative; other; other = other->nextAlternative)
            text += " (" + Line(other) + ')';
    }
    return text;
}

// The text of a set-up start position, the start position's comment, then the moves.
std::string Tree(const Game& game) {
    const Position& start = game.StartPosition();
    char16_t fen[Position::kTextBufferSize];
    const std::size_t length = game.SetUpFlag() ? start.WriteText(fen) : 0;
    std::string text = length ? WideToUtf8({fen, length}) + " " : "";
    if (start.Comment()) text += "{" + WideToUtf8(start.Comment()) + "} ";
    return text + Line(start.FirstContinuation());
}

// Loads game number (from 1; 0 and -1 are offsets) of a data file, or of file when it is a game.
PgnOutcome Load(const std::string& file, int number, Game& game) {
    static test::TempFolder folder;
    std::u16string path = test::DataPath(file);
    if (file[0] == '[') test::WriteBytes(path = folder.Path("inline.pgn"), file);
    GameIndex index(path.c_str());
    index.Load();
    const std::vector<std::uint32_t> offsets = test::Offsets(index);
    game.SetFilePath(path);
    return LoadGame(game, nullptr, number > 0 ? std::int64_t{offsets.at(number - 1)} : number,
                    int(offsets.size()));
}

std::string repeat(const std::string& text, int n) {
    return n > 1 ? text + repeat(text, n - 1) : text;
}

TEST(PgnParser, LoadsEachFileAsTheRulesSayAndReadsBackWhatItWrites) {
    const std::string text = test::ReadBytes(test::DataPath("long-line-without-blanks.pgn"));
    const std::string study =
        "[White \"Composer\"]\n[SetUp \"1\"]\n[FEN \"4k3/1P6/8/8/8/8/6p1/4K2R w K - 0 40\"]\n\n"
        "{Study} 1. b8=Q+ $18 {Queen first, the\nrook line is slower and needs a second promotion} "
        "(1. Rg1 Kd7 (1... Ke7 $14 {Or this}\n2. b8=N) 2. b8=R) 1... Kd7 $16 (1... Kf7 2. Rf1+) 2. "
        "Qb5+ Kd6 3. Kf2 gxh1=N+\n{Underpromotion} (3... g1=Q+ 4. Kxg1) *\n";
    const struct {
        std::string file;
        int game, code;
        std::string tree;          // the moves kept, also after a failure
        std::string message = "";  // empty: not checked
        std::string reread = "";   // the tree read back, when it differs
    } cases[] = {
        // The lexer starts on the last tag line, whose "[" is no token.
        {"tags-only-no-moves.pgn", 0, 6, "", "Unknown token : [Site \"Nowhere in pa"},
        {"three-games.pgn", -1, 1, "", "No error"},
        {"fen-before-setup.pgn", 1, 5, "", "Incorrect PGN headers"},
        {"setup-without-fen.pgn", 1, 5, ""},
        {"bad-fen.pgn", 1, 4, "", "Invalid initial position"},
        {"no-white-tag.pgn", 0, 2, "", "Unexpected error"},
        {"variation-at-start.pgn", 1, 7, "", "Error in alternate line"},
        {"[White \"a\"]\n1. e4 " + std::string(250, '(') + " *", 0, 0, "e2e4/0"},
        {"[White \"a\"]\n1. e4 " + std::string(251, '(') + " *", 0, 7, "e2e4/0"},
        {"illegal-black-move.pgn", 1, 8,
         "g1f3/0 f7f6/0" + repeat(" f3g1/0 g8h6/0 g1f3/0 h6g8/0", 5) + " f3g1/0",
         "Illegal move : 12... Nf6\n"},
        {"variation-illegal-first-move.pgn", 1, 9, "e2e4/0 e7e5/0", "Illegal move starting line"},
        {"unknown-token.pgn", 1, 6, "e2e4/0 e7e5/0 g1f3/0 b8c6/0",
         "Unknown token : Pb5 a6 4. Ba4 Nf6 5."},
        {"two-comments-one-move.pgn", 1, 0, "e2e4/0 {second} e7e5/0"},
        // $10 is still a move's glyph, $11 already an evaluation; $300 is kept in 8 bits.
        // Intended: a glyph is written as a symbol, which ends the moves when read back.
        {"nags-glyph-and-assessment.pgn", 1, 0, "e2e4/0 $3 #14 e7e5/0 #44 g1f3/0 $10 b8c6/0 #11",
         "", "e2e4/0"},
        {"unmatched-close-paren.pgn", 1, 0, "e2e4/0 e7e5/0", "No error"},
        {"lower-case-white-tag.pgn", 0, 0, "e2e4/0 e7e5/0"},
        {"comment-starts-movetext.pgn", 1, 0, "{Opening remark} e2e4/0 e7e5/0"},
        {"setup-start-text.pgn", 1, 0, "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1 e2e4/0 e8d7/0"},
        {"long-line-with-blanks.pgn", 1, 0, repeat(" g1f3/0 g8f6/0 f3g1/0 f6g8/0", 20).substr(1)},
        // A comment line cut after 255 bytes is joined to its rest with a blank.
        {"long-line-without-blanks.pgn", 1, 0,
         "e2e4/0 " + text.substr(text.find('{'), 302).insert(251, " ") + " e7e5/0"},
        // Intended: a glyph in move text ends the moves like a result, and is not kept.
        {"glyph-ends-move-text.pgn", 1, 0, "e2e4/0"},
        {"nested-variations.pgn", 1, 0,
         "e2e4/0 (d2d4/1 d7d5/1 (g8f6/2 c2c4/2) c2c4/1) e7e5/0 g1f3/0"},
        {study, 0, 0,
         "4k3/1P6/8/8/8/8/6p1/4K2R w K - 0 40 {Study} b7b8q/0 #18 {Queen first, the rook line is "
         "slower and needs a second promotion} "
         "(h1g1/1 e8d7/1 (e8e7/2 #14 {Or this} b7b8n/2) b7b8r/1) e8d7/0 #16 (e8f7/1 h1f1/1) "
         "b8b5/0 d7d6/0 e1f2/0 g2h1n/0 {Underpromotion} (g2g1q/1 f2g1/1)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file.substr(0, 40) + " game " + std::to_string(c.game));
        Game game, reread;
        const PgnOutcome outcome = Load(c.file, c.game, game);
        EXPECT_EQ(outcome.code, c.code);
        EXPECT_EQ(c.message.empty() ? "" : WideToUtf8(MessageFor(outcome)), c.message);
        EXPECT_EQ(Tree(game), c.tree);
        if (!outcome.Ok()) continue;
        test::MemoryFile written;
        ASSERT_EQ(PgnWriter(written).WriteGame(game), 0u);
        ASSERT_EQ(Load(written.bytes, 0, reread).code, kPgnOk) << written.bytes;
        EXPECT_EQ(Tree(reread), c.reread.empty() ? c.tree : c.reread);
        EXPECT_EQ(test::Text(reread.white), test::Text(game.white));
        EXPECT_EQ(reread.result, game.result);
    }
}

TEST(PgnParser, TagsFlagsOffsetsAndMessages) {
    const std::string three = test::ReadBytes(test::DataPath("three-games.pgn"));
    const std::string next = test::ReadBytes(test::DataPath("no-result-token-then-next-game.pgn"));
    Game first, last, unfinished;
    ASSERT_TRUE(Load("three-games.pgn", 1, first).Ok());
    ASSERT_TRUE(Load("three-games.pgn", 3, last).Ok());
    ASSERT_TRUE(Load("no-result-token-then-next-game.pgn", 1, unfinished).Ok());
    EXPECT_EQ(first.endOffset, three.find("[White \"Dupont\"]"));  // past the blank line
    EXPECT_EQ(last.offset, three.rfind("[Event"));
    EXPECT_EQ(last.endOffset, three.size());
    // Without a result token the moves end at the next game's first tag line, read by then.
    EXPECT_EQ(unfinished.endOffset, next.find("[White \"Gamma\"]"));
    EXPECT_EQ((std::vector<int>{first.saveMode, first.hasLocation, first.loaded, first.modified,
                                first.modifiedByNew, first.result, last.result}),
              (std::vector<int>{3, 1, 1, 0, 0, kWhiteWins, kDraw}));
    ASSERT_NE(first.FirstTag(), nullptr);  // ECO is an extra tag for the loader
    EXPECT_EQ(test::Text(first.white) + u"|" + test::Text(first.date) + u"|" +
                  test::Text(first.FirstTag()->name) + test::Text(first.FirstTag()->value),
              u"Aubert, Claire|2003.05.17|ECOC20");
    test::RecordedMessages shown;
    const std::u16string missing = test::DataPath("no-such-file.pgn");
    EXPECT_EQ(LoadGame(first, nullptr, three.size(), 0).code, kPgnUnexpected);
    first.SetFilePath(missing);
    EXPECT_EQ(LoadGame(first, nullptr, 0, 0).code, kPgnCannotOpen);
    ASSERT_EQ(shown.shown.size(), 1u);
    EXPECT_EQ(shown.shown[0].first, u"Unable to load file");
    EXPECT_EQ(shown.shown[0].second.rfind(u"File '" + missing + u"' : ", 0), 0u);
    EXPECT_GT(shown.shown[0].second.size(), missing.size() + 10);  // and the system's text
    // No escape character: a backslash is kept and the value ends at the next quote.
    EXPECT_EQ(QuotedValue(u"[Event \"a\\\"b\"]"), u"a\\");
    EXPECT_EQ(QuotedValue(u"[Site \"open end"), u"open end");
}

}  // namespace
}  // namespace velmora
