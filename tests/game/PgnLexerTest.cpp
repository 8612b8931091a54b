// The PGN line reader (255-byte lines, offsets, read-ahead) and the move-section lexer.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/Position.h"
#include "game/PgnLexer.h"
#include "game/PgnLineReader.h"
#include "platform/CodePage.h"

namespace velmora {
namespace {

// A temporary file holding bytes, open for reading through the platform layer.
class TempFile {
  public:
    explicit TempFile(const std::string& bytes) {
        static std::mt19937 random{std::random_device{}()};
        path_ = std::filesystem::temp_directory_path() /
                ("velmora-lexer-" + std::to_string(random()) + ".pgn");
        std::ofstream(path_, std::ios::binary) << bytes;
        platform::ErrorCode error = 1;
        file_ = platform::SystemFileSystem().Open(path_.u16string(), platform::OpenMode::ReadShared,
                                                  &error);
        if (!file_) throw std::runtime_error("cannot open the temporary file");
    }
    ~TempFile() {
        file_.reset();
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    platform::File& File() { return *file_; }

  private:
    std::filesystem::path path_;
    std::unique_ptr<platform::File> file_;
};

struct Line {
    std::string text;    // the bytes up to the stored terminator
    std::uint32_t next;  // Position() after the line
    bool operator==(const Line&) const = default;
};

std::optional<Line> ReadOne(PgnLineReader& reader) {
    char buffer[PgnLineReader::kLineSize];
    int length = -1;
    if (!reader.ReadLine(buffer, &length)) return std::nullopt;
    return Line{std::string(buffer, length), reader.Position()};
}

std::vector<Line> ReadAll(PgnLineReader& reader) {
    std::vector<Line> lines;
    while (lines.size() < 10000) {
        std::optional<Line> line = ReadOne(reader);
        if (!line) break;
        lines.push_back(*line);
    }
    return lines;
}

std::vector<Line> ReadAll(const std::string& bytes, std::uint32_t blockSize) {
    TempFile file(bytes);
    PgnLineReader reader(file.File(), blockSize);
    return ReadAll(reader);
}

template <typename Text>
Text Repeat(const Text& text, int count) {
    Text result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

TEST(PgnLineReader, CutsLinesAndReportsWhereTheNextOneBegins) {
    const std::string x254(254, 'x'), x300(300, 'x');
    const std::string blanks = std::string(200, 'a') + ' ' + std::string(40, 'b') + ' ' +
                               std::string(58, 'c');  // 300 bytes, last blank within 255 at 241
    const struct {
        std::string input;
        std::vector<Line> lines;
    } cases[] = {
        {"", {}},
        {"ab\r\ncd\n", {{"ab", 4}, {"cd", 7}}},
        {"ab\rcd\re", {{"ab", 3}, {"cd", 6}, {"e", 7}}},
        {"ab\n\n\r\n\r\ncd", {{"ab", 8}, {"cd", 10}}},  // blank lines swallowed
        {"ab\r\n\r", {{"ab", 5}}},                      // ends inside the run
        {blanks, {{blanks.substr(0, 241), 241}, {blanks.substr(241), 300}}},
        {x300, {{x300.substr(0, 255), 255}, {x300.substr(255), 300}}},
        // Cut at the last blank even at the end of the file; a blank in the first byte is no cut.
        {"e4 e5", {{"e4", 2}, {" e5", 5}}},
        {std::string(" ") + x254, {{std::string(" ") + x254, 255}}},
        // A run crossing the 255th byte: its rest comes out as one empty line (intended).
        {x254 + "\r\n\r\nyz", {{x254, 255}, {"", 258}, {"yz", 260}}},
        {std::string("a\0b\nc", 5), {{std::string("a\0b", 3), 4}, {"c", 5}}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::PrintToString(test.input));
        EXPECT_EQ(ReadAll(test.input, PgnLineReader::kDefaultBlockSize), test.lines);
    }
}

// Inputs where every kind of boundary (CR LF, lone CR, blank runs, long lines) falls at many
// places relative to the read-ahead blocks.
std::vector<std::string> MixedInputs() {
    const std::string x300(300, 'x'), words = Repeat<std::string>("Nc6 ", 80);
    const std::string pieces[] = {"1. e4 e5 ", "Nf3", "\r\n", "\r",  "\n", "\r\n\r\n\n\r",
                                  x300,        words, "{c} ", "a b", " ",  "[Event \"x\"]\r\n"};
    std::vector<std::string> inputs;
    std::mt19937 random(12345);
    for (int n = 0; n < 6; ++n) {
        std::string input;
        while (input.size() < 4000)
            input += pieces[random() % std::size(pieces)];
        inputs.push_back(input + (n % 2 ? "*" : "*\r\n\n\r"));  // with and without a line end
    }
    return inputs;
}

TEST(PgnLineReader, ReadAheadBlockSizeChangesNothing) {
    for (const std::string& input : MixedInputs()) {
        const std::vector<Line> expected = ReadAll(input, 255);
        ASSERT_GT(expected.size(), 20u);
        EXPECT_EQ(expected.back().next, input.size());
        for (std::uint32_t blockSize : {1u, 7u, 256u, 4096u, PgnLineReader::kDefaultBlockSize}) {
            SCOPED_TRACE(blockSize);
            TempFile file(input);
            PgnLineReader reader(file.File(), blockSize);
            EXPECT_EQ(ReadAll(reader), expected);
            // Backwards to each kept offset, inside the read-ahead and before it.
            for (std::size_t i = expected.size() - 1; i > 0; --i) {
                ASSERT_EQ(reader.Seek(expected[i - 1].next), 1);
                EXPECT_EQ(ReadOne(reader), expected[i]);
            }
        }
    }
}

TEST(PgnLineReader, StartsWhereTheFileStands) {
    TempFile file("[A]\r\n[B]\r\n");
    ASSERT_EQ(file.File().Seek(5, platform::SeekOrigin::Begin, nullptr), 0u);
    PgnLineReader reader(file.File());
    EXPECT_EQ(reader.Position(), 5u);
    EXPECT_EQ(ReadAll(reader), std::vector<Line>({{"[B]", 10}}));
}

// Names a token: "N:" move number, "M:" move, "U:" unknown, "_" whitespace, the Nag's text, the
// bracket or ";" itself, "End" followed by the glyph's text when a glyph ended the game.
std::string Describe(TokenKind kind, const char16_t* text) {
    const char* names[] = {"{", "", ";", "(", ")", "N:", "M:", "End", "U:", "_", ""};
    return names[int(kind)] + (kind == TokenKind::Whitespace ? "" : platform::WideToUtf8(text));
}

// Runs the lexer over bytes and a line end the way the move parser does.
std::string Lex(const std::string& bytes) {
    TempFile file(bytes + "\r\n");
    PgnLineReader reader(file.File());
    char first[PgnLineReader::kLineSize] = {};
    int length = 0;
    reader.ReadLine(first, &length);
    PgnLexer lexer(reader, platform::AnsiToWide(first).c_str());
    std::string result;
    for (int count = 0; count < 100; ++count) {
        char16_t text[PgnLexer::kTokenSize] = {};
        TokenKind kind = lexer.NextToken(text);
        if (!result.empty()) result += ' ';
        result += Describe(kind, text);
        if (kind == TokenKind::LineComment) lexer.SkipLine();
        if (kind == TokenKind::End || kind == TokenKind::Unknown) break;
    }
    return result;
}

TEST(PgnLexer, SplitsMoveTextIntoTokens) {
    const struct {
        const char* input;
        const char* tokens;
    } cases[] = {
        {"1. e4 e5 2. Nf3 *", "N:1. _ M:e4 _ M:e5 _ N:2. _ M:Nf3 _ End"},
        {"O-O-O 0-0-0 0-0 O-O *", "M:O-O-O _ M:0-0-0 _ M:0-0 _ M:O-O _ End"},
        {"e5 0-1 e4", "M:e5 _ End"},
        {"e5 1/2-1/2 e4", "M:e5 _ End"},
        {"e5 1-0 e4", "M:e5 _ End"},
        // A glyph ends the move section like a result; the moves after it are lost (intended).
        {"e4!? e5", "M:e4 End$5"},
        {"e4 ?? e5", "M:e4 _ End$4"},
        {"e4! e5", "M:e4 End$1"},
        {"e4? e5", "M:e4 End$2"},
        {"e4!!! e5", "M:e4 End$3"},
        {"e4?!", "M:e4 End$6"},
        // Only "-0" right after a glyph's first character continues it, as a move (intended).
        {"?-0 e4", "M:?-0 _ M:e4 _ End"},
        {"$14 $ e4", "$14 _ $ _ M:e4 _ End"},
        {"12...Nf6 *", "N:12... M:Nf6 _ End"},
        {"10.\r\nexd8=Q+ Nbxc3#\t\t e5 *", "N:10. _ M:exd8=Q+ _ M:Nbxc3# _ M:e5 _ End"},
        // Dots standing apart from their number come out as whitespace (intended).
        {"12 ... Nf6 *", "N:12 _ _ _ M:Nf6 _ End"},
        {"(e4) (d4) e5 *", "( M:e4 ) _ ( M:d4 ) _ M:e5 _ End"},
        {"e4 ; e5 Nf3\n d4 *", "M:e4 _ ; _ M:d4 _ End"},
        {"e4\r\n\r\n[Event \"x\"]\r\ne5", "M:e4 _ End"},
        {"e4 e5", "M:e4 _ M:e5 _ End"},  // the end of the file ends the game
        {"Pe4 e5", "U:Pe4 e5"},          // "P" starts no move
        {"e4 -abcdefghijklmnopqrstuvwxyz", "M:e4 _ U:-abcdefghijklmnopqrs"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.input);
        EXPECT_EQ(Lex(test.input), test.tokens);
    }
}

// A glyph's End and an Unknown leave the lexer where it was: asking again gives the same token.
TEST(PgnLexer, GlyphsAndUnknownTokensConsumeNothing) {
    TempFile file("");
    PgnLineReader reader(file.File());
    for (const char16_t* line : {u"?! e4", u"\"x"}) {
        PgnLexer lexer(reader, line);
        char16_t first[PgnLexer::kTokenSize] = {}, second[PgnLexer::kTokenSize] = {};
        TokenKind kind = lexer.NextToken(first);
        EXPECT_EQ(lexer.NextToken(second), kind);
        EXPECT_EQ(std::u16string(second), first);
    }
}

TEST(PgnLexer, ATagLineEndsTheGameAndTheNextGameStartsAfterIt) {
    TempFile file("e4\r\n[Event \"x\"]\r\n[Site \"y\"]\r\n");
    PgnLineReader reader(file.File());
    PgnLexer lexer(reader, u"1.");
    char16_t text[PgnLexer::kTokenSize];
    for (TokenKind kind : {TokenKind::MoveNumber, TokenKind::Whitespace, TokenKind::Move,
                           TokenKind::Whitespace, TokenKind::End})
        EXPECT_EQ(lexer.NextToken(text), kind);
    EXPECT_EQ(reader.Position(), 17u);
    // The tag line is done with: asking again reads the line after it.
    EXPECT_EQ(lexer.NextToken(text), TokenKind::End);
    EXPECT_EQ(reader.Position(), 29u);
}

TEST(PgnLexer, ReadsCommentsAcrossLines) {
    const std::string w254(254, 'w'), w253(253, 'w'), w200(200, 'w');
    const std::u16string u254(254, u'w'), u253(253, u'w'), u200(200, u'w');
    const struct {
        std::string rest;  // the file after the first line, which ends in "{ \ta"
        std::u16string comment;
        const char* after;  // the token after the comment and whitespace
    } cases[] = {
        {"b} e4", u"a b", "M:e4"},
        {"  b\tc\r\n\r\n\n}\r\ne4", u"a   b\tc", "M:e4"},
        {"[Event] }e4\r\n", u"a [Event] ", "M:e4"},  // a tag line inside a comment is text
        // 512 characters collected: the buffer grows before the terminator is stored.
        {w254 + "\r\n" + w253 + "\r\n}O-O", std::u16string(u"a ") + u254 + u" " + u253, "M:O-O"},
        {Repeat(w200 + "\n", 6) + "}O-O",
         std::u16string(u"a") + Repeat(std::u16string(u" ") + u200, 6), "M:O-O"},
        {"b\r\nc", u"old", "End"},  // cut off by the end of the file: nothing attached
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.rest);
        TempFile file(test.rest);
        PgnLineReader reader(file.File());
        PgnLexer lexer(reader, u" \t{ \ta");
        char16_t text[PgnLexer::kTokenSize] = {};
        ASSERT_EQ(lexer.NextToken(text), TokenKind::Whitespace);
        ASSERT_EQ(lexer.NextToken(text), TokenKind::CommentStart);
        Position position;
        position.SetComment(u"old");
        ASSERT_EQ(lexer.ReadComment(&position), 1);
        ASSERT_NE(position.Comment(), nullptr);
        EXPECT_EQ(std::u16string(position.Comment()), test.comment);
        TokenKind kind = TokenKind::Whitespace;
        for (int i = 0; i < 5 && kind == TokenKind::Whitespace; ++i)
            kind = lexer.NextToken(text);
        EXPECT_EQ(Describe(kind, text), test.after);
    }
}

}  // namespace
}  // namespace velmora
