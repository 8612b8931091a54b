// Loading a game: tag lines, then the move section token by token into the move tree.
#include "game/PgnParser.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "core/Position.h"
#include "core/San.h"
#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/MoveTree.h"
#include "game/PgnLexer.h"
#include "game/PgnLineReader.h"
#include "game/UserMessages.h"
#include "platform/CodePage.h"
#include "platform/DebugOutput.h"
#include "platform/SystemError.h"

namespace velmora {

namespace {

// Variations nest at most this deep; a deeper opening is refused like a variation with no
// move to vary. Levels are kept in a byte, and the limit keeps hostile files from exhausting
// the stack.
constexpr int kMaxVariationDepth = 250;

std::u16string lastErrorArgument;
std::u16string formattedMessage;

bool StartsWithIgnoringCase(std::u16string_view text, std::u16string_view prefix) {
    if (text.size() < prefix.size()) return false;
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        char16_t a = text[i], b = prefix[i];
        if (a >= u'a' && a <= u'z') a -= u'a' - u'A';
        if (b >= u'a' && b <= u'z') b -= u'a' - u'A';
        if (a != b) return false;
    }
    return true;
}

// Reads an optional sign and the leading digits, as a standard string-to-integer conversion.
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

int ParseMovesAt(PgnLexer& lexer, Position* position, int atVariationStart, int skipVariations,
                 int depth);

// Shows that the file could not be opened: the path and the system's text for the error.
void ReportOpenFailure(const std::u16string& path, platform::ErrorCode error, MessageOwner owner) {
    std::u16string text = u"File '" + path + u"' : ";
    std::u16string system = platform::SystemErrorText(error);
    if (system.empty()) {
        char number[16];
        std::snprintf(number, sizeof number, "0x%08X", static_cast<unsigned>(error));
        system.assign(number, number + std::char_traits<char>::length(number));
    }
    text += system;
    if (text.size() > 511) text.resize(511);
    ShowMessage(text, u"Unable to load file", MessageIcon::None, owner);
}

struct TagState {
    bool whiteSeen = false;
    bool setUpPending = false;
};

// Applies one tag line (a view of a NUL-terminated buffer) to the game. Returns a PgnError: 0
// to go on, 4 or 5 to stop.
int ReadTagLine(Game& game, std::u16string_view line, TagState* state) {
    std::u16string value = QuotedValue(line.data());
    auto is = [&](std::u16string_view prefix) { return StartsWithIgnoringCase(line, prefix); };
    if (is(u"[White ")) {
        state->whiteSeen = true;
        game.SetWhite(value.c_str());
    } else if (is(u"[Black ")) {
        game.SetBlack(value.c_str());
    } else if (is(u"[Result ")) {
        game.result = value == u"1-0"       ? kWhiteWins
                      : value == u"1/2-1/2" ? kDraw
                      : value == u"0-1"     ? kBlackWins
                                            : kResultUnknown;
    } else if (is(u"[Event ")) {
        game.SetEvent(value.c_str());
    } else if (is(u"[Round ")) {
        game.SetRound(value.c_str());
    } else if (is(u"[Site ")) {
        game.SetSite(value.c_str());
    } else if (is(u"[Date ")) {
        game.SetDate(value.c_str());
    } else if (is(u"[WhiteEmail ")) {
        game.SetWhiteEmail(value.c_str());
    } else if (is(u"[BlackEmail ")) {
        game.SetBlackEmail(value.c_str());
    } else if (is(u"[LastMoveDate ")) {
        game.SetLastMoveDate(value.c_str());
    } else if (is(u"[LastMove ")) {
        game.lastMove = static_cast<std::uint16_t>(LeadingInteger(value));
    } else if (is(u"[Trait ")) {
        game.trait = StartsWithIgnoringCase(value, u"White") && value.size() == 5 ? 0 : 32;
    } else if (is(u"[SetUp \"1\"]")) {
        state->setUpPending = true;
    } else if (is(u"[FEN ")) {
        if (!state->setUpPending) return kPgnBadHeaders;
        state->setUpPending = false;
        if (!game.StartPosition().SetFromText(value.c_str())) return kPgnBadPosition;
    } else {
        // Any other tag: the name runs from "[" to the first blank, the value is quoted after.
        std::u16string_view rest = line.substr(1);
        std::size_t blank = rest.find(u' ');
        std::u16string name(rest.substr(0, blank));
        std::u16string tail(blank == std::u16string_view::npos ? u"" : rest.substr(blank));
        game.AppendTag(name.c_str(), QuotedValue(tail.c_str()).c_str());
    }
    return kPgnOk;
}

}  // namespace

std::u16string QuotedValue(const char16_t* line) {
    std::u16string_view text(line);
    std::size_t open = text.find(u'"');
    if (open == std::u16string_view::npos) return {};
    std::size_t close = text.find(u'"', open + 1);
    return std::u16string(text.substr(open + 1, close == std::u16string_view::npos
                                                    ? std::u16string_view::npos
                                                    : close - open - 1));
}

int LoadGame(Game& game, MessageOwner ownerWindow, std::int64_t offset, int saveMode,
             platform::FileSystem& fileSystem) {
    if (game.FilePath().empty() && game.Owner() != nullptr) {
        game.SetFilePath(game.Owner()->SharedPath());
    }
    platform::ErrorCode error = 0;
    std::unique_ptr<platform::File> file =
        fileSystem.Open(game.FilePath(), platform::OpenMode::ReadShared, &error);
    if (!file) {
        ReportOpenFailure(game.FilePath(), error, ownerWindow);
        return kPgnCannotOpen;
    }
    if (offset == -1) return kPgnNothingToLoad;
    PgnLineReader reader(*file);
    return LoadGame(game, reader, offset, saveMode);
}

int LoadGame(Game& game, PgnLineReader& reader, std::int64_t offset, int saveMode) {
    if (offset == -1) return kPgnNothingToLoad;
    game.saveMode = saveMode;
    game.offset = static_cast<std::uint32_t>(offset);
    char bytes[PgnLineReader::kLineSize];
    int length = 0;
    if (!reader.Seek(static_cast<std::uint32_t>(offset)) || !reader.ReadLine(bytes, &length)) {
        return kPgnUnexpected;
    }

    TagState tags;
    // Each line is converted into one buffer on the stack, up to its first NUL byte.
    char16_t line[PgnLineReader::kLineSize];
    auto convert = [&]() {
        std::size_t count = platform::AnsiToWide(std::string_view(bytes, std::strlen(bytes)), line,
                                                 PgnLineReader::kLineSize - 1);
        line[count] = 0;
        return std::u16string_view(line, count);
    };
    std::u16string_view text = convert();
    for (;;) {
        if (!text.empty() && text[0] == u'[') {
            int code = ReadTagLine(game, text, &tags);
            if (code != kPgnOk) return code;
        } else if (tags.whiteSeen) {
            break;  // the first line of the move section
        }
        if (!reader.ReadLine(bytes, &length)) {
            if (tags.whiteSeen) break;  // the lexer starts on the last tag line
            return kPgnUnexpected;
        }
        text = convert();
    }
    if (tags.setUpPending) return kPgnBadHeaders;

    PgnLexer lexer(reader, line);
    int code = ParseMoves(lexer, &game.StartPosition(), 0, 0);
    if (code != kPgnOk) return code;
    game.endOffset = reader.Position();
    game.hasLocation = 1;
    game.loaded = 1;
    game.modifiedByNew = 0;
    game.modified = 0;
    return kPgnOk;
}

int ParseMoves(PgnLexer& lexer, Position* position, int atVariationStart, int skipVariations) {
    return ParseMovesAt(lexer, position, atVariationStart, skipVariations, 0);
}

namespace {

int ParseMovesAt(PgnLexer& lexer, Position* position, int atVariationStart, int skipVariations,
                 int depth) {
    Position* current = position;
    bool first = atVariationStart != 0;
    std::u16string moveNumber;
    char16_t text[PgnLexer::kTokenSize];
    for (TokenKind kind = lexer.NextToken(text); kind != TokenKind::End;
         kind = lexer.NextToken(text)) {
        switch (kind) {
            case TokenKind::CommentStart:
                if (!lexer.ReadComment(current)) return kPgnCommentTooLong;
                break;
            case TokenKind::LineComment:
                lexer.SkipLine();
                break;
            case TokenKind::VariationStart: {
                if (depth >= kMaxVariationDepth) return kPgnBadVariation;
                int code = ParseMovesAt(lexer, current, 1, skipVariations, depth + 1);
                if (code != kPgnOk) return code;
                break;
            }
            case TokenKind::VariationEnd:
                return kPgnOk;
            case TokenKind::MoveNumber:
                moveNumber = text;
                break;
            case TokenKind::Move:
                if (!first) {
                    Position* next = ReadSan(current, text);
                    if (next == nullptr) {
                        lastErrorArgument = moveNumber;
                        if (current->sideToMove == kBlack) lastErrorArgument += u"..";
                        lastErrorArgument += u" ";
                        lastErrorArgument += text;
                        lastErrorArgument += u"\n";
                        platform::DebugTrace(u"Coup refus\u00E9\n");
                        return kPgnIllegalMove;
                    }
                    current = next;
                } else if (!skipVariations) {
                    // The first move of a variation replaces the move that led here: it is
                    // played from the position before it, beside that move.
                    MoveNode* varied = current->ArrivalNode();
                    if (varied == nullptr) {
                        platform::DebugTrace(u"Pas normal d'\u00EAtre dans une variante\n");
                        return kPgnBadVariation;
                    }
                    Position* next = ReadSan(varied->positionBefore, text);
                    if (next == nullptr) {
                        lastErrorArgument = text;
                        platform::DebugTrace(u"Token refus\u00E9 (2)\n");
                        return kPgnIllegalVariationMove;
                    }
                    current = next;
                    first = false;
                }
                break;
            case TokenKind::Unknown:
                lastErrorArgument.assign(text, std::u16string_view(text).substr(0, 20).size());
                platform::DebugTrace(u"Token Messages\n");
                return kPgnUnknownToken;
            case TokenKind::Nag: {
                long n = LeadingInteger(std::u16string_view(text).substr(1));
                if (n <= 10) {
                    if (MoveNode* node = current->ArrivalNode()) {
                        node->nag = static_cast<std::uint8_t>(n);
                    }
                } else {
                    current->evaluation = static_cast<std::uint8_t>(n);
                }
                break;
            }
            default:
                break;
        }
    }
    return kPgnOk;
}

}  // namespace

const char16_t* LastErrorArgument() {
    return lastErrorArgument.c_str();
}

const char16_t* MessageFor(int code) {
    switch (code) {
        case kPgnOk:
        case kPgnNothingToLoad:
            formattedMessage = u"No error";
            break;
        case kPgnCannotOpen:
            formattedMessage = u"Unable to open file";
            break;
        case kPgnBadPosition:
            formattedMessage = u"Invalid initial position";
            break;
        case kPgnBadHeaders:
            formattedMessage = u"Incorrect PGN headers";
            break;
        case kPgnUnknownToken:
            formattedMessage = u"Unknown token : " + lastErrorArgument;
            break;
        case kPgnBadVariation:
            formattedMessage = u"Error in alternate line";
            break;
        case kPgnIllegalMove:
            formattedMessage = u"Illegal move : " + lastErrorArgument;
            break;
        case kPgnIllegalVariationMove:
            formattedMessage = u"Illegal move starting line";
            break;
        case kPgnCommentTooLong:
            formattedMessage = u"Comment too long";
            break;
        default:
            formattedMessage = u"Unexpected error";
            break;
    }
    return formattedMessage.c_str();
}

void ShowLoadError(int code, const std::u16string& caption, MessageOwner ownerWindow) {
    ShowMessage(MessageFor(code), caption, MessageIcon::Error, ownerWindow);
}

}  // namespace velmora
