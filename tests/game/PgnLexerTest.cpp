// The move-section lexer: tokens, glyphs and comments read across lines.
#include <gtest/gtest.h>

#include "PgnTestSupport.h"
#include "game/PgnLexer.h"

namespace velmora {
namespace {

// The tokens of bytes: "N:" move number, "M:" move, "U:" unknown, "_" whitespace, a Nag's text,
// "End" and a glyph's text, "{" and the comment's text then "}" (or why it was not read), ")",
// "(" or ";". The last token is asked again; " then " and the answer follow when it differs.
std::string Lex(const std::string& bytes) {
    auto describe = [](TokenKind kind, const char16_t* text) {
        const char* names[] = {"{", "", ";", "(", ")", "N:", "M:", "End", "U:", "_", ""};
        return names[int(kind)] + (kind == TokenKind::Whitespace ? "" : platform::WideToUtf8(text));
    };
    test::MemoryFile file(bytes + "\r\n");
    PgnLineReader reader(file);
    char first[PgnLineReader::kLineSize] = {};
    int length = 0;
    reader.ReadLine(first, &length);
    PgnLexer lexer(reader, platform::AnsiToWide(first).c_str());
    std::string result;
    for (int count = 0; count < 100; ++count) {
        char16_t text[PgnLexer::kTokenSize] = {}, again[PgnLexer::kTokenSize] = {};
        TokenKind kind = lexer.NextToken(text);
        result += (result.empty() ? "" : " ") + describe(kind, text);
        if (kind == TokenKind::LineComment) lexer.SkipLine();
        std::u16string_view comment;
        if (kind == TokenKind::CommentStart) {
            const PgnLexer::CommentRead read = lexer.ReadComment(&comment);
            result += read == PgnLexer::CommentRead::Complete
                          ? platform::WideToUtf8(std::u16string(comment)) + "}"
                      : read == PgnLexer::CommentRead::FileEnded ? "<file ended>"
                                                                 : "<too long>";
        }
        if (kind != TokenKind::End && kind != TokenKind::Unknown) continue;
        const std::string repeat = describe(lexer.NextToken(again), again);
        return result + (repeat == describe(kind, text) ? "" : " then " + repeat);
    }
    return result;
}

TEST(PgnLexer, SplitsMoveTextIntoTokens) {
    const char* ends[] = {"!", "?", "!!", "??", "!?", "?!", " 0-1", " 1-0", " 1/2-1/2", " *"};
    for (int n = 0; n < 10; ++n)  // Intended: a glyph ends the move section like a result.
        EXPECT_EQ(Lex(std::string("e4") + ends[n] + " e5"),
                  n < 6 ? "M:e4 End$" + std::to_string(n + 1) : "M:e4 _ End");
    std::string w254(254, 'w'), w253(253, 'w'), w200(200, 'w'), lines, joined;
    for (int n = 0; n < 6; ++n)
        lines += "\n" + w200, joined += " " + w200;
    const std::pair<std::string, std::string> cases[] = {
        {"1. e4 e5 2. Nf3 12...Nf6 *", "N:1. _ M:e4 _ M:e5 _ N:2. _ M:Nf3 _ N:12... M:Nf6 _ End"},
        {"O-O-O 0-0-0 0-0 O-O *", "M:O-O-O _ M:0-0-0 _ M:0-0 _ M:O-O _ End"},
        {"e4!!! e5", "M:e4 End$3"},
        // Intended: only "-0" right after a glyph's first character continues it, as a move.
        {"?-0 e4", "M:?-0 _ M:e4 _ End"},
        {"10.\r\nexd8=Q+ Nbxc3#\t\t e5 *", "N:10. _ M:exd8=Q+ _ M:Nbxc3# _ M:e5 _ End"},
        // Intended: dots standing apart from their number come out as whitespace.
        {"12 ... Nf6 *", "N:12 _ _ _ M:Nf6 _ End"},
        {"(e4 $14) $ (d4) e5 *", "( M:e4 _ $14 ) _ $ _ ( M:d4 ) _ M:e5 _ End"},
        {"e4 ; e5 Nf3\n d4 *", "M:e4 _ ; _ M:d4 _ End"},
        {"e4\r\n\r\n[Event \"x\"]\r\ne5", "M:e4 _ End then M:e5"},
        {"e4 -abcdefghijklmnopqrstuvwxyz", "M:e4 _ U:-abcdefghijklmnopqrs"},
        {"{ \ta\r\n  b\tc\r\n\r\n\n}\r\ne4", "{a   b\tc} _ M:e4 _ End"},
        {"{ \ta\r\n[Event] }e4", "{a [Event] } M:e4 _ End"},
        {"{ \ta\r\n" + w254 + "\r\n" + w253 + "\r\n}O-O",
         "{a " + w254 + " " + w253 + "} M:O-O _ End"},
        {"{ \ta" + lines + "}O-O", "{a" + joined + "} M:O-O _ End"},
        {"{ \ta\r\nb\r\nc", "{<file ended> End"},
    };
    for (const auto& [input, tokens] : cases)
        EXPECT_EQ(Lex(input), tokens) << input;
}

}  // namespace
}  // namespace velmora
