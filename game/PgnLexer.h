// PgnLexer: cuts a game's move section into tokens, comment texts included, line by line.
#pragma once

#include <string>
#include <string_view>

#include "game/PgnLineReader.h"

namespace velmora {

enum class TokenKind {
    CommentStart = 0,  // "{"
    LineComment = 2,   // ";"
    VariationStart = 3,
    VariationEnd = 4,
    MoveNumber = 5,  // text: the digits and the dots after them
    Move = 6,        // text: the SAN characters
    End = 7,         // end of the game's move section
    Unknown = 8,     // text: up to 20 characters from where the lexer stopped
    Whitespace = 9,
    Nag = 10,  // text: "$" and digits
};

class PgnLexer {
  public:
    // Room a token buffer needs: a whole line and its terminator.
    static constexpr int kTokenSize = PgnLineReader::kLineSize + 1;

    // Starts on firstLine, a line the caller has already read and converted; further lines
    // come from reader, which is not owned.
    PgnLexer(PgnLineReader& reader, const char16_t* firstLine);
    virtual ~PgnLexer() = default;

    // Returns the next token's kind and, for the kinds that have one, its text in tokenText
    // (kTokenSize characters).
    TokenKind NextToken(char16_t* tokenText);
    // Drops the rest of the current line.
    void SkipLine() { position_ = -1; }
    enum class CommentRead { Complete, FileEnded, TooLong };
    // Reads the text of a brace comment whose "{" was just consumed, up to its "}", lines joined
    // by one blank and leading blanks and tabs dropped; *text views it until the next call.
    // FileEnded when the file ends first (there is no comment then), TooLong when the text
    // outgrows the memory available.
    CommentRead ReadComment(std::u16string_view* text);

  private:
    // Reads and converts the next line; returns 0 at end of file.
    int NextLine();

    PgnLineReader& reader_;
    char16_t line_[PgnLineReader::kLineSize] = {};
    int position_ = 0;  // index of the next character in line_, -1 when a line must be read
    // The comment being read; its room is kept from one comment to the next.
    std::u16string comment_;
};

}  // namespace velmora
