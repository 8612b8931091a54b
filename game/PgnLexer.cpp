// PgnLexer: tokens of a game's move section, and brace comments, read line by line.
#include "game/PgnLexer.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "platform/CodePage.h"

namespace velmora {
namespace {

constexpr int kUnknownLength = 20;
constexpr std::size_t kCommentLimit = std::numeric_limits<int>::max() / 2;

// Glyphs that stand for the NAG numbers 1 to 6, in that order.
constexpr const char16_t* kGlyphs[] = {u"!", u"?", u"!!", u"??", u"!?", u"?!"};

// The characters a move's text may hold after its first, as a table by character.
struct SanCharacterTable {
    bool allowed[128] = {};
    constexpr SanCharacterTable() {
        for (const char* c = "abcdefgh012345678RNBQKO-x+#="; *c; ++c)
            allowed[static_cast<unsigned char>(*c)] = true;
    }
};
constexpr SanCharacterTable kSanCharacters;

bool IsSanCharacter(char16_t c) {
    return c < 128 && kSanCharacters.allowed[c];
}

// Tells whether c begins a move; a "P" does not.
bool StartsMove(char16_t c) {
    return (c >= u'a' && c <= u'h') || c == u'B' || c == u'K' || c == u'N' || c == u'O' ||
           c == u'Q' || c == u'R';
}

bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

bool IsGlyphCharacter(char16_t c) {
    return c == u'!' || c == u'?';
}

}  // namespace

PgnLexer::PgnLexer(PgnLineReader& reader, const char16_t* firstLine) : reader_(reader) {
    int length = 0;
    while (firstLine && firstLine[length] != 0 && length < PgnLineReader::kLineSize - 1) {
        line_[length] = firstLine[length];
        ++length;
    }
    line_[length] = 0;
    position_ = 0;
}

// Reads the next line into line_, converted up to its first NUL byte; 0 at end of file.
int PgnLexer::NextLine() {
    char bytes[PgnLineReader::kLineSize];
    int length = 0;
    if (!reader_.ReadLine(bytes, &length)) return 0;
    std::size_t count = platform::AnsiToWide(std::string_view(bytes, std::strlen(bytes)), line_,
                                             PgnLineReader::kLineSize - 1);
    line_[count] = 0;
    return 1;
}

// Returns the next token. A result, a "[" line (the next game's tags) and an annotation glyph
// all end the move section; a glyph is copied into tokenText (as "$n" when it is one of the six
// standard ones) before End is returned.
TokenKind PgnLexer::NextToken(char16_t* tokenText) {
    if (position_ == -1) {
        if (!NextLine()) return TokenKind::End;
        if (line_[0] == u'[') return TokenKind::End;
        position_ = 0;
    }
    const char16_t* line = line_;
    int start = position_;
    char16_t c = line[start];

    // Copies line[start, end) into tokenText and moves past it.
    auto take = [&](int end, TokenKind kind) {
        std::memcpy(tokenText, line + start, (end - start) * sizeof(char16_t));
        tokenText[end - start] = 0;
        position_ = end;
        return kind;
    };
    auto scanMove = [&]() {
        int end = start + 1;
        while (IsSanCharacter(line[end]))
            ++end;
        return take(end, TokenKind::Move);
    };

    if (StartsMove(c)) return scanMove();
    switch (c) {
        case 0:
            position_ = -1;
            return TokenKind::Whitespace;
        case u' ':
        case u'\t':
            while (line[position_] == u' ' || line[position_] == u'\t')
                ++position_;
            return TokenKind::Whitespace;
        case u'{':
            ++position_;
            return TokenKind::CommentStart;
        case u';':
            ++position_;
            return TokenKind::LineComment;
        case u'(':
            ++position_;
            return TokenKind::VariationStart;
        case u')':
            ++position_;
            return TokenKind::VariationEnd;
        case u'*':
            return TokenKind::End;
        case u'.':
            while (line[position_] == u'.')
                ++position_;
            return TokenKind::Whitespace;
        case u'$': {
            int end = start + 1;
            while (IsDigit(line[end]))
                ++end;
            return take(end, TokenKind::Nag);
        }
        case u'0':
            if (line[start + 1] == u'-' && line[start + 2] == u'0') return scanMove();
            return TokenKind::End;
        case u'!':
        case u'?': {
            int length = IsGlyphCharacter(line[start + 1]) ? 2 : 1;
            std::memcpy(tokenText, line + start, length * sizeof(char16_t));
            tokenText[length] = 0;
            for (int index = 0; index < 6; ++index) {
                if (std::u16string_view(tokenText, length) == kGlyphs[index]) {
                    tokenText[0] = u'$';
                    tokenText[1] = static_cast<char16_t>(u'1' + index);
                    tokenText[2] = 0;
                    break;
                }
            }
            // The rule of "0" applied to the character after the glyph's first one.
            if (line[start + 1] == u'-' && line[start + 2] == u'0') return scanMove();
            return TokenKind::End;
        }
        default:
            break;
    }
    if (c == u'1' && (line[start + 1] == u'-' || line[start + 1] == u'/')) return TokenKind::End;
    if (c >= u'1' && c <= u'9') {
        int end = start + 1;
        while (IsDigit(line[end]))
            ++end;
        while (line[end] == u'.')
            ++end;
        return take(end, TokenKind::MoveNumber);
    }
    int length = 0;
    while (length < kUnknownLength && line[start + length] != 0) {
        tokenText[length] = line[start + length];
        ++length;
    }
    tokenText[length] = 0;
    return TokenKind::Unknown;
}

// Collects the comment text up to "}", joining lines with one blank. A text longer than an
// int can count is TooLong.
PgnLexer::CommentRead PgnLexer::ReadComment(std::u16string_view* text) {
    comment_.clear();
    auto append = [&](char16_t c) {
        if (comment_.size() >= kCommentLimit) return false;
        comment_.push_back(c);
        return true;
    };

    for (;;) {
        if (position_ == -1) {
            if (!NextLine()) return CommentRead::FileEnded;
            position_ = 0;
        }
        char16_t c = line_[position_];
        if (c == u'}') {
            std::size_t start = 0;
            while (start < comment_.size() && (comment_[start] == u' ' || comment_[start] == u'\t'))
                ++start;
            *text = std::u16string_view(comment_).substr(start);
            ++position_;
            return CommentRead::Complete;
        }
        if (c == 0) {
            position_ = -1;
            continue;
        }
        if (position_ == 0 && !append(u' ')) return CommentRead::TooLong;
        if (!append(c)) return CommentRead::TooLong;
        ++position_;
    }
}

}  // namespace velmora
