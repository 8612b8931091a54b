// The PGN writer: exact text of tags and move text, numbering, glyphs and 80-column wrapping.
#include "game/PgnWriter.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "PgnTestSupport.h"
#include "game/Game.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/Position.h"

namespace velmora {
namespace {

std::string Written(Game& game, bool moveTextOnly = false) {
    test::MemoryFile file;
    EXPECT_EQ(PgnWriter(file).WriteGame(game), 0u);
    return moveTextOnly ? file.bytes.substr(file.bytes.find("\r\n\r\n") + 4) : file.bytes;
}

// Plays one SAN move from position, gives it the glyph and returns the position after it.
Position* Play(Position* position, const char* san, int glyph = 0) {
    Position* after = position ? ReadSan(position, san) : nullptr;
    EXPECT_NE(after, nullptr) << san;
    if (after) after->ArrivalNode()->nag = static_cast<std::uint8_t>(glyph);
    return after;
}

TEST(PgnWriter, TagsOfANewGameAndOptionalSetUpCorrespondenceAndExtraTags) {
    Game game;               // a new game as written: see the saving tests
    game.SetWhite(nullptr);  // no value: "?"
    game.SetBlack(u"");      // empty: nothing
    game.SetResultCode(-1);  // no Result line, no result token
    ASSERT_TRUE(game.StartPosition().SetFromText(u"4k3/8/8/8/8/8/8/4K3 b - - 0 40"));
    game.SetWhiteEmail(u"w@x.org");
    game.lastMove = 12;
    game.trait = 32;
    game.SetTag(u"Annotator", u"a \"quoted\" name");  // written as it is
    EXPECT_EQ(Written(game),
              "[Event \"?\"]\r\n[Site \"?\"]\r\n[Date \"????.??.??\"]\r\n[Round \"?\"]\r\n"
              "[White \"?\"]\r\n[Black \"\"]\r\n[SetUp \"1\"]\r\n"
              "[FEN \"4k3/8/8/8/8/8/8/4K3 b - - 0 40\"]\r\n[WhiteEmail \"w@x.org\"]\r\n"
              "[BlackEmail \"?\"]\r\n[LastMoveDate \"?\"]\r\n[LastMove \"12\"]\r\n"
              "[Trait \"Black\"]\r\n[Annotator \"a \"quoted\" name\"]\r\n\r\n\r\n\r\n");
}

TEST(PgnWriter, MoveTextNumbersGlyphsCommentsVariationsAndWrapsAtTheLastBlankThatFits) {
    Game game;
    Position* start = &game.StartPosition();
    start->SetComment(u"start");
    Position* nf3 = Play(Play(Play(start, "e4", 1), "e5", 2), "Nf3", 3);
    Play(start, "d4", 7);
    nf3->SetComment(u"good");
    nf3->Value().evaluation = 14;
    Play(Play(nf3, "Nc6", 4), "Bb5", 10);
    Play(Play(nf3, "d6", 5), "d4", 6);
    game.SetResultCode(kWhiteWins);
    EXPECT_EQ(Written(game, true),
              " {start}1. e4! (1. d4 $7) 1... e5? 2. Nf3!! $14 {good} 2... Nc6?? (2... d6!? 3.\r\n"
              "d4?!) 3. Bb5 $10 1-0\r\n\r\n");
    // Comments are cut before the blank at 509 (the rest kept whole) or, blankless, after 511.
    std::string text;
    for (int i = 0; i < 56; ++i)
        text += "abcdefghi ";
    auto words = [&](int count) { return text.substr(0, 10 * count - 1); };
    std::string lines = words(7) + "\r\n";
    for (int i = 0; i < 5; ++i)
        lines += words(8) + "\r\n";
    test::MemoryFile file;
    PgnWriter writer(file);
    writer.WriteComment(platform::Utf8ToWide(words(56)).c_str());
    writer.WriteComment(std::u16string(600, u'x').c_str());
    EXPECT_EQ(file.bytes, lines + words(4) + "\r\n " + words(5) + "\r\n" + std::string(511, 'x') +
                              "\r\n" + std::string(89, 'x'));
}

TEST(PgnWriter, WrappedPiecesBreakAtBlanksAndAfterBrackets) {
    // Blanks at 40, 79 and 80: a line holds 79 bytes, 78 for a piece meant to stay whole.
    const std::string longPiece = std::string(40, 'x') + " " + std::string(38, 'y') + "  zzz";
    // column (filled with 'f' before the piece), piece, wrap mode, bytes, column after
    constexpr auto kAnywhere = PgnWriter::Wrap::Anywhere, kWhole = PgnWriter::Wrap::Whole;
    const std::tuple<int, std::string, PgnWriter::Wrap, std::string, int> cases[] = {
        {70, " abcdefghi", kAnywhere, "\r\nabcdefghi", 9},  // 80 bytes do not fit; the blank goes
        {70, "abc def ghij", kWhole, "\r\nabc def ghij", 12},  // kept whole on a new line
        {78, " (", kAnywhere, " (\r\n", 0},
        {70, " {abcdefghijk", kAnywhere, " {\r\nabcdefghijk", 11},
        {10, "ab\r\ncd", kAnywhere, "ab\r\ncd", 2},
        {0, longPiece, kAnywhere, longPiece.substr(0, 79) + "\r\n zzz", 4},
        {0, longPiece, kWhole, std::string(40, 'x') + "\r\n" + longPiece.substr(41), 43},
        {0, std::string(100, 'w') + " tail", kAnywhere, std::string(100, 'w') + "\r\ntail", 4},
    };
    for (const auto& [column, piece, wrap, expected, columnAfter] : cases) {
        SCOPED_TRACE(piece);
        test::MemoryFile file;
        PgnWriter writer(file);
        writer.WriteWrapped(std::u16string(column, u'f').c_str(), kAnywhere);
        writer.WriteWrapped(platform::Utf8ToWide(piece).c_str(), wrap);
        EXPECT_EQ(file.bytes.substr(column), expected);
        EXPECT_EQ(writer.Column(), columnAfter);
    }
}

}  // namespace
}  // namespace velmora
