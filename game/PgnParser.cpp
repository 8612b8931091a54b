// Reading a game: the tag lines, then the move section token by token, told to a visitor.
#include "game/PgnParser.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "game/PgnLexer.h"
#include "game/PgnLineReader.h"
#include "platform/CodePage.h"
#include "platform/DebugOutput.h"

namespace velmora {

namespace {

// Variations nest at most this deep; a deeper opening is refused like a variation with no
// move to vary. Levels are kept in a byte, and the limit keeps hostile files from exhausting
// the stack.
constexpr int kMaxVariationDepth = 250;

PgnOutcome Failure(PgnError code, std::u16string argument = {}) {
    return PgnOutcome{code, std::move(argument)};
}

// Reads one level of the move section: the game's moves, or a variation's up to its ")".
PgnOutcome ParseLevel(PgnLexer& lexer, PgnVisitor& visitor, bool atVariationStart, int depth) {
    bool first = atVariationStart;
    std::u16string_view moveNumber;
    char16_t numberText[PgnLexer::kTokenSize];
    char16_t text[PgnLexer::kTokenSize];
    for (TokenKind kind = lexer.NextToken(text); kind != TokenKind::End;
         kind = lexer.NextToken(text)) {
        switch (kind) {
            case TokenKind::CommentStart: {
                std::u16string_view comment;
                PgnLexer::CommentRead read = lexer.ReadComment(&comment);
                if (read == PgnLexer::CommentRead::TooLong) return Failure(kPgnCommentTooLong);
                if (read == PgnLexer::CommentRead::Complete) visitor.OnComment(comment);
                break;
            }
            case TokenKind::LineComment:
                lexer.SkipLine();
                break;
            case TokenKind::VariationStart: {
                if (depth >= kMaxVariationDepth) return Failure(kPgnBadVariation);
                if (PgnError error = visitor.OnVariationStart()) return Failure(error);
                PgnOutcome inner = ParseLevel(lexer, visitor, true, depth + 1);
                if (!inner.Ok()) return inner;
                visitor.OnVariationEnd();
                break;
            }
            case TokenKind::VariationEnd:
                return {};
            case TokenKind::MoveNumber: {
                std::size_t length = std::char_traits<char16_t>::length(text);
                std::memcpy(numberText, text, (length + 1) * sizeof(char16_t));
                moveNumber = std::u16string_view(numberText, length);
                break;
            }
            case TokenKind::Move: {
                MoveVerdict verdict = visitor.OnMove(text, first);
                switch (verdict.error) {
                    case kPgnOk:
                        first = false;
                        break;
                    case kPgnIllegalMove: {
                        // "12. Nf3" or "12... Nf6", as the move stood in the file.
                        std::u16string argument(moveNumber);
                        if (verdict.sideToMove == kBlack) argument += u"..";
                        argument += u" ";
                        argument += text;
                        argument += u"\n";
                        platform::DebugTrace(u"Coup refus\u00E9\n");
                        return Failure(kPgnIllegalMove, std::move(argument));
                    }
                    case kPgnIllegalVariationMove:
                        platform::DebugTrace(u"Token refus\u00E9 (2)\n");
                        return Failure(kPgnIllegalVariationMove, text);
                    case kPgnBadVariation:
                        platform::DebugTrace(u"Pas normal d'\u00EAtre dans une variante\n");
                        return Failure(kPgnBadVariation);
                    default:
                        return Failure(verdict.error);
                }
                break;
            }
            case TokenKind::Unknown:
                platform::DebugTrace(u"Token Messages\n");
                return Failure(kPgnUnknownToken, std::u16string(text).substr(0, 20));
            case TokenKind::Nag:
                visitor.OnNag(LeadingInteger(std::u16string_view(text).substr(1)));
                break;
            default:
                break;
        }
    }
    return {};
}

}  // namespace

long LeadingInteger(std::u16string_view text) {
    std::size_t i = 0;
    while (i < text.size() && (text[i] == u' ' || text[i] == u'\t'))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) negative = text[i++] == u'-';
    long value = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
        value = value * 10 + (text[i] - u'0');
        if (value > 0x7FFFFFFF) value = 0x7FFFFFFF;
    }
    return negative ? -value : value;
}

std::u16string QuotedValue(std::u16string_view text) {
    std::size_t open = text.find(u'"');
    if (open == std::u16string_view::npos) return {};
    std::size_t close = text.find(u'"', open + 1);
    return std::u16string(text.substr(open + 1, close == std::u16string_view::npos
                                                    ? std::u16string_view::npos
                                                    : close - open - 1));
}

PgnOutcome ParseMoves(PgnLexer& lexer, PgnVisitor& visitor) {
    PgnOutcome outcome = ParseLevel(lexer, visitor, false, 0);
    if (outcome.Ok()) visitor.OnGameEnd();
    return outcome;
}

// Reads the tag lines up to the first line after a White tag that is no tag (or the file's
// end), then hands that line to the lexer. With no White tag before the file ends there is no
// game here.
PgnOutcome ReadGame(PgnLineReader& reader, std::int64_t offset, PgnVisitor& visitor) {
    if (offset == -1) return Failure(kPgnNothingToLoad);
    char bytes[PgnLineReader::kLineSize];
    int length = 0;
    if (!reader.Seek(static_cast<std::uint32_t>(offset)) || !reader.ReadLine(bytes, &length)) {
        return Failure(kPgnUnexpected);
    }
    for (;;) {
        if (bytes[0] == '[') {
            if (PgnError error = visitor.OnTagLine(std::string_view(bytes, std::strlen(bytes)))) {
                return Failure(error);
            }
        } else if (visitor.SawWhiteTag()) {
            break;  // the first line of the move section
        }
        if (!reader.ReadLine(bytes, &length)) {
            if (visitor.SawWhiteTag()) break;  // the lexer starts on the last tag line
            return Failure(kPgnUnexpected);
        }
    }
    if (PgnError error = visitor.OnMoveSectionStart()) return Failure(error);

    // The line is converted up to its first NUL byte, as every line the lexer reads.
    char16_t line[PgnLineReader::kLineSize];
    std::size_t count = platform::AnsiToWide(std::string_view(bytes, std::strlen(bytes)), line,
                                             PgnLineReader::kLineSize - 1);
    line[count] = 0;
    PgnLexer lexer(reader, line);
    return ParseMoves(lexer, visitor);
}

std::u16string MessageFor(const PgnOutcome& outcome) {
    switch (outcome.code) {
        case kPgnOk:
        case kPgnNothingToLoad:
            return u"No error";
        case kPgnCannotOpen:
            return u"Unable to open file";
        case kPgnBadPosition:
            return u"Invalid initial position";
        case kPgnBadHeaders:
            return u"Incorrect PGN headers";
        case kPgnUnknownToken:
            return u"Unknown token : " + outcome.argument;
        case kPgnBadVariation:
            return u"Error in alternate line";
        case kPgnIllegalMove:
            return u"Illegal move : " + outcome.argument;
        case kPgnIllegalVariationMove:
            return u"Illegal move starting line";
        case kPgnCommentTooLong:
            return u"Comment too long";
        default:
            return u"Unexpected error";
    }
}

void ShowLoadError(const PgnOutcome& outcome, const std::u16string& caption, MessageOwner owner) {
    ShowMessage(MessageFor(outcome), caption, MessageIcon::Error, owner);
}

}  // namespace velmora
