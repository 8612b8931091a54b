// The PGN writer: exact text of tags and move text, numbering, glyphs and 80-column wrapping.
#include "game/PgnWriter.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "PgnTestSupport.h"
#include "core/Position.h"
#include "core/San.h"
#include "game/Game.h"
#include "game/MoveTree.h"

namespace velmora {
namespace {

std::string Written(Game& game) {
    test::MemoryFile file;
    EXPECT_EQ(PgnWriter(file).WriteGame(game), 0u);
    return file.bytes;
}

// The text after the tag section's blank line.
std::string MoveText(Game& game) {
    std::string all = Written(game);
    return all.substr(all.find("\r\n\r\n") + 4);
}

// Plays the blank-separated SAN moves from position and returns the position after the last.
Position* Line(Position* position, const char* moves) {
    std::istringstream in(moves);
    for (std::string san; position && in >> san;)
        position = ReadSan(position, san.c_str());
    EXPECT_NE(position, nullptr) << moves;
    return position;
}

std::string Words(int count) {  // "abcdefghi abcdefghi ...", ten bytes a word with its blank
    std::string text;
    for (int i = 0; i < count; ++i)
        text += i ? " abcdefghi" : "abcdefghi";
    return text;
}

const char* const kShuffle = "Nf3 Nf6 Ng1 Ng8 Nf3 Nf6 Ng1 Ng8 Nf3 Nf6 Ng1 Ng8 Nf3 Nf6 Ng1 Ng8";

TEST(PgnWriter, NewGameWritesTheSevenTagsAndAnEmptyMoveSection) {
    Game game;
    EXPECT_EQ(Written(game),
              "[Event \"?\"]\r\n[Site \"?\"]\r\n[Date \"????.??.??\"]\r\n[Round \"?\"]\r\n"
              "[White \"White\"]\r\n[Black \"Black\"]\r\n[Result \"*\"]\r\n\r\n *\r\n\r\n");
}

TEST(PgnWriter, OptionalTagsSetUpCorrespondenceAndExtraTags) {
    Game game;
    game.SetWhite(nullptr);  // no value: "?"
    game.SetBlack(u"");      // empty: nothing
    game.SetResultCode(-1);  // no Result line, no result token
    ASSERT_EQ(game.StartPosition().SetFromText(u"4k3/8/8/8/8/8/8/4K3 b - - 0 40"), 1);
    game.SetWhiteEmail(u"w@x.org");
    game.lastMove = 12;
    game.trait = 32;
    game.SetTag(u"ECO", u"C20");
    game.SetTag(u"Annotator", u"a \"quoted\" name");  // written as it is
    EXPECT_EQ(Written(game),
              "[Event \"?\"]\r\n[Site \"?\"]\r\n[Date \"????.??.??\"]\r\n[Round \"?\"]\r\n"
              "[White \"?\"]\r\n[Black \"\"]\r\n[SetUp \"1\"]\r\n"
              "[FEN \"4k3/8/8/8/8/8/8/4K3 b - - 0 40\"]\r\n"
              "[WhiteEmail \"w@x.org\"]\r\n[BlackEmail \"?\"]\r\n[LastMoveDate \"?\"]\r\n"
              "[LastMove \"12\"]\r\n[Trait \"Black\"]\r\n[ECO \"C20\"]\r\n"
              "[Annotator \"a \"quoted\" name\"]\r\n\r\n\r\n\r\n");
}

TEST(PgnWriter, NumbersFollowCommentsVariationsAndBlackMoves) {
    Game game;
    Position* start = &game.StartPosition();
    start->SetComment(u"start");
    Position* nf3 = Line(start, "e4 e5 Nf3");
    nf3->SetComment(u"good");
    Line(nf3, "Nc6 Bb5");
    Line(nf3, "d6 d4");
    Line(start, "d4");
    game.SetResultCode(kWhiteWins);
    EXPECT_EQ(MoveText(game),
              " {start}1. e4 (1. d4) 1... e5 2. Nf3 {good} 2... Nc6 (2... d6 3. d4) 3. Bb5 "
              "1-0\r\n\r\n");
}

// Symbols 1..6 end a game for our reader, so only they go out as symbols; larger glyphs and
// position assessments are written " $n" so that they come back.
TEST(PgnWriter, GlyphsOneToSixAsSymbolsTheRestAndAssessmentsAsDollars) {
    Game game;
    Position* position = &game.StartPosition();
    const char* moves[] = {"e4", "e5", "Nf3", "Nc6", "Bb5", "a6", "Ba4", "Nf6"};
    for (int i = 0; i < 8; ++i) {
        position = Line(position, moves[i]);
        position->ArrivalNode()->nag = static_cast<std::uint8_t>(i < 7 ? i + 1 : 10);
    }
    position->evaluation = 14;
    EXPECT_EQ(MoveText(game),
              "1. e4! e5? 2. Nf3!! Nc6?? 3. Bb5!? a6?! 4. Ba4 $7 Nf6 $10 $14 *\r\n\r\n");
}

TEST(PgnWriter, MoveTextWrapsAtBlanksAndVariationsThatDoNotFit) {
    Game game;
    Position* nf3 = Line(&game.StartPosition(), kShuffle);
    // The break goes at the last blank that fits, even when it parts a number from its move.
    EXPECT_EQ(MoveText(game),
              "1. Nf3 Nf6 2. Ng1 Ng8 3. Nf3 Nf6 4. Ng1 Ng8 5. Nf3 Nf6 6. Ng1 Ng8 7. Nf3 Nf6 8.\r\n"
              "Ng1 Ng8 *\r\n\r\n");
    Line(nf3->PreviousPosition()->PreviousPosition()->PreviousPosition(), "Nc6");
    EXPECT_EQ(MoveText(game),
              "1. Nf3 Nf6 2. Ng1 Ng8 3. Nf3 Nf6 4. Ng1 Ng8 5. Nf3 Nf6 6. Ng1 Ng8 7. Nf3 Nf6 (\r\n"
              "7... Nc6) 8. Ng1 Ng8 *\r\n\r\n");
}

TEST(PgnWriter, LongCommentsAreCutBeforeIndex511AndWrapped) {
    test::MemoryFile file;
    PgnWriter writer(file);
    // 56 words: the first piece ends before the blank at 509; the second (" " and five words)
    // is kept whole and so moves to a new line, blank first.
    const std::string comment = Words(56);
    writer.WriteComment(std::u16string(comment.begin(), comment.end()).c_str());
    std::string lines = Words(7) + "\r\n";
    for (int i = 0; i < 5; ++i)
        lines += Words(8) + "\r\n";
    EXPECT_EQ(file.bytes, lines + Words(4) + "\r\n " + Words(5));

    // Without blanks: 511 characters, then the rest; words with no break stay whole.
    file.bytes.clear();
    writer.WriteWrapped(nullptr, 1);
    writer.WriteComment(std::u16string(600, u'x').c_str());
    EXPECT_EQ(file.bytes, "\r\n" + std::string(511, 'x') + "\r\n" + std::string(89, 'x'));
}

TEST(PgnWriter, WrappedPiecesBreakAtBlanksAndAfterBrackets) {
    const std::string longPiece = std::string(40, 'x') + " " + std::string(38, 'y') + " zzz";
    const struct {
        int column;  // filled with 'f' before the piece
        std::string piece;
        int breakAnywhere;
        std::string expected;
        int columnAfter;
    } cases[] = {
        {70, "abc", 1, "abc", 73},
        {70, " abcdefghi", 1, "\r\nabcdefghi", 9},  // 80 bytes do not fit; the blank goes
        {70, "abc def ghij", 1, "abc def\r\nghij", 4},
        {70, "abc def ghij", 0, "\r\nabc def ghij", 12},  // kept whole on a new line
        {78, " (", 1, " (\r\n", 0},
        {70, " {abcdefghijk", 1, " {\r\nabcdefghijk", 11},
        {70, "abcdefghijklmn", 1, "\r\nabcdefghijklmn", 14},  // no break point
        {10, "ab\r\ncd", 1, "ab\r\ncd", 2},
        {10, "\"]\r\n", 1, "\"]\r\n", 0},
        // From 80 bytes on, a piece meant to stay whole breaks one column earlier.
        {0, longPiece, 1, longPiece.substr(0, 79) + "\r\nzzz", 3},
        {0, longPiece, 0, std::string(40, 'x') + "\r\n" + longPiece.substr(41), 42},
        // A word longer than a line stays whole and breaks at the first blank after it.
        {0, std::string(100, 'w') + " tail", 1, std::string(100, 'w') + "\r\ntail", 4},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.piece);
        test::MemoryFile file;
        PgnWriter writer(file);
        writer.WriteWrapped(std::u16string(c.column, u'f').c_str(), 1);
        writer.WriteWrapped(std::u16string(c.piece.begin(), c.piece.end()).c_str(),
                            c.breakAnywhere);
        EXPECT_EQ(file.bytes.substr(c.column), c.expected);
        EXPECT_EQ(writer.Column(), c.columnAfter);
    }
}

TEST(PgnWriter, FindBreakScansBackFromTheGivenIndex) {
    const struct {
        const char* bytes;
        int from, expected, skip;
    } cases[] = {{"ab cd", 4, 2, 1},   {"ab(cd", 4, 3, 0},  {"ab{cd", 4, 3, 0}, {"a b(c", 4, 4, 0},
                 {"ab cd", 1, -1, -1}, {"abcd", 3, -1, -1}, {" x", 0, 0, 1}};
    for (const auto& c : cases) {
        int skip = -1;
        EXPECT_EQ(FindBreak(c.bytes, c.from, &skip), c.expected) << c.bytes << " " << c.from;
        EXPECT_EQ(skip, c.skip) << c.bytes;
    }
}

}  // namespace
}  // namespace velmora
