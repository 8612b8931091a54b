// PGN writing: tag lines, then move text with glyphs, comments and variations, wrapped at 80.
#include "game/PgnWriter.h"

#include <cstdio>
#include <string>

#include "game/Game.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/Position.h"
#include "platform/CodePage.h"

namespace velmora {

namespace {

constexpr int kLineLimit = 80;
// A piece is converted into a 512-byte buffer that also holds its terminator.
constexpr std::size_t kMaxPieceBytes = 511;
constexpr std::size_t kMaxCommentPiece = 512;
// The SAN writer shows glyphs up to this one as symbols ("!", "?", ... "?!").
constexpr int kLastSymbolGlyph = 6;

const char16_t* const kResultTags[] = {u"[Result \"1-0\"]\r\n", u"[Result \"1/2-1/2\"]\r\n",
                                       u"[Result \"0-1\"]\r\n", u"[Result \"*\"]\r\n"};
const char16_t* const kResultTokens[] = {u" 1-0", u" 1/2-1/2", u" 0-1", u" *"};

std::u16string Decimal(const char* format, int value) {
    char text[16];
    std::snprintf(text, sizeof text, format, value);
    return std::u16string(text, text + std::char_traits<char>::length(text));
}

bool IsBracket(char c) {
    return c == '(' || c == '{';
}

// Returns the first break point after index from (see FindBreak for skip), or -1.
int FirstBreakAfter(const char* bytes, int from, int count, int* skip) {
    for (int i = from + 1; i < count; ++i) {
        if (bytes[i] == ' ') {
            *skip = 1;
            return i;
        }
        if (IsBracket(bytes[i])) {
            *skip = 0;
            return i + 1;
        }
    }
    return -1;
}

}  // namespace

int FindBreak(const char* bytes, int from, int* skip) {
    for (int i = from; i >= 0; --i) {
        if (bytes[i] == ' ') {
            *skip = 1;
            return i;
        }
        if (IsBracket(bytes[i])) {
            *skip = 0;
            return i + 1;
        }
    }
    return -1;
}

// Writes the tag lines, the move text and the result. Extra tags go out as they are, with no
// escaping, and the summary's Start text is never written.
platform::ErrorCode PgnWriter::WriteGame(Game& game) {
    error_ = 0;
    column_ = 0;
    WriteTag(u"[Event \"", game.event.Or(u"?"));
    WriteTag(u"[Site \"", game.site.Or(u"?"));
    WriteTag(u"[Date \"", game.date.Or(u"????.??.??"));
    WriteTag(u"[Round \"", game.round.Or(u"?"));
    WriteTag(u"[White \"", game.white.Or(u"?"));
    WriteTag(u"[Black \"", game.black.Or(u"?"));
    const bool resultKnown = game.result >= kWhiteWins && game.result <= kResultUnknown;
    if (resultKnown) WritePiece(kResultTags[game.result], Wrap::Anywhere);
    if (game.SetUpFlag()) {
        WritePiece(u"[SetUp \"1\"]\r\n", Wrap::Anywhere);
        char16_t text[Position::kTextBufferSize];
        game.StartPosition().WriteText(text);
        WritePiece(u"[FEN \"" + std::u16string(text) + u"\"]\r\n", Wrap::Whole);
    }
    if (!game.whiteEmail.IsNull()) {
        WriteTag(u"[WhiteEmail \"", game.whiteEmail.View());
        WriteTag(u"[BlackEmail \"", game.blackEmail.Or(u"?"));
        WriteTag(u"[LastMoveDate \"", game.lastMoveDate.Or(u"?"));
        WriteTag(u"[LastMove \"", Decimal("%d", game.lastMove));
        WriteTag(u"[Trait \"", game.trait == 0 ? u"White" : u"Black");
    }
    for (ExtraTag* tag = game.FirstTag(); tag; tag = tag->next.get()) {
        WritePiece(u"[", Wrap::Anywhere);
        WritePiece(tag->name.View(), Wrap::Anywhere);
        WriteTag(u" \"", tag->value.View());
    }
    WritePiece(u"\r\n", Wrap::Anywhere);
    if (const char16_t* comment = game.StartPosition().Comment()) {
        WritePiece(u" {", Wrap::Anywhere);
        WriteComment(comment);
        WritePiece(u"}", Wrap::Anywhere);
    }
    WriteMoves(game.StartPosition().FirstContinuation(), true);
    if (resultKnown) WritePiece(kResultTokens[game.result], Wrap::Anywhere);
    column_ = 0;
    WritePiece(u"\r\n\r\n", Wrap::Anywhere);
    return error_;
}

void PgnWriter::WriteTag(std::u16string_view opening, std::u16string_view value) {
    WritePiece(opening, Wrap::Anywhere);
    WritePiece(value, Wrap::Anywhere);
    WritePiece(u"\"]\r\n", Wrap::Anywhere);
}

// Writes each move of the line with its number where a reader needs one: on the first move,
// after a comment or a variation, and on every White move (after a Black one). Glyphs 1 to 6
// go out as symbols ("!", "?!", ...), which our reader takes as the end of the game, and larger
// ones as " $n" so that they come back. The SAN writer gives either symbols and nothing for
// larger glyphs, or " $n" for all, so it writes the symbols and " $n" is added here.
void PgnWriter::WriteMoves(MoveNode* first, bool numberFirst) {
    bool numberNeeded = numberFirst;
    for (MoveNode* node = first; node; node = node->positionAfter->FirstContinuation()) {
        char16_t san[kSanBufferSize];
        WriteSan(node, san, {.withNumber = numberNeeded});
        std::u16string piece = node == first ? u"" : u" ";
        piece += san;
        if (node->nag > kLastSymbolGlyph) piece += Decimal(" $%d", node->nag);
        WritePiece(piece, Wrap::Anywhere);

        Position* after = node->positionAfter;
        if (after->Value().evaluation != 0)
            WritePiece(Decimal(" $%d", after->Value().evaluation), Wrap::Anywhere);
        const char16_t* comment = after->Comment();
        if (comment) {
            WritePiece(u" {", Wrap::Anywhere);
            WriteComment(comment);
            WritePiece(u"}", Wrap::Anywhere);
        }
        bool variations = false;
        for (MoveNode* variation = node->FirstVariation(); variation;
             variation = variation->NextVariation()) {
            WritePiece(u" (", Wrap::Anywhere);
            WriteMoves(variation, true);
            WritePiece(u")", Wrap::Anywhere);
            variations = true;
        }
        const bool black = ColourOf(node->positionBefore->GetSquare(node->from)) == kBlack;
        numberNeeded = comment || variations || black;
    }
}

// Writes the comment as one piece when it has at most 512 characters; a longer one is cut
// before the last blank at or before index 511 (the blank starts the next piece), or after 511
// characters when there is no such blank.
void PgnWriter::WriteComment(const char16_t* text) {
    std::u16string_view rest(text);
    while (rest.size() > kMaxCommentPiece) {
        std::size_t cut = kMaxPieceBytes;
        for (std::size_t i = kMaxPieceBytes; i > 0; --i) {
            if (rest[i] == u' ') {
                cut = i;
                break;
            }
        }
        WritePiece(rest.substr(0, cut), Wrap::Whole);
        rest.remove_prefix(cut);
    }
    WritePiece(rest, Wrap::Whole);
}

void PgnWriter::WriteWrapped(const char16_t* text, Wrap wrap) {
    if (text == nullptr) {
        column_ = 0;
        return;
    }
    WritePiece(text, wrap);
}

// Converts the piece to ANSI bytes, of which at most 511 are kept, and writes them wrapped.
void PgnWriter::WritePiece(std::u16string_view text, Wrap wrap) {
    std::string bytes = platform::WideToAnsi(text);
    if (bytes.size() > kMaxPieceBytes) bytes.resize(kMaxPieceBytes);
    WrapBytes(bytes.data(), static_cast<int>(bytes.size()), wrap);
}

// Writes the bytes on the current line when they fit before column 80. Otherwise a piece that
// must stay whole (Wrap::Whole) and is shorter than a line moves to a new line, and any
// other piece is broken at the last blank, "(" or "{" that keeps the line within 79 bytes (78
// for a whole-piece); the rest continues on the next line and may break anywhere.
void PgnWriter::WrapBytes(const char* bytes, int count, Wrap wrap) {
    if (column_ + count < kLineLimit) {
        WriteFitting(bytes, count);
        return;
    }
    if (wrap == Wrap::Whole && count < kLineLimit) {
        WriteBytes("\r\n", 2);
        column_ = 0;
        WriteFitting(bytes, count);
        return;
    }
    const int limit = kLineLimit - 1 - column_ - (wrap == Wrap::Anywhere ? 0 : 1);
    int skip = 0;
    int at = FindBreak(bytes, limit, &skip);
    if (at < 0 && column_ == 0 && FindBreak(bytes, count - 1, &skip) >= 0) {
        // A fresh line is no help when the piece opens with a whole line's worth of bytes
        // without a break point: break at the first point past the limit instead of starting
        // empty lines for ever.
        at = FirstBreakAfter(bytes, limit, count, &skip);
    }
    if (at >= 0) {
        WriteBytes(bytes, at);
        WriteBytes("\r\n", 2);
        column_ = 0;
        WrapBytes(bytes + at + skip, count - at - skip, Wrap::Anywhere);
        return;
    }
    WriteBytes("\r\n", 2);
    column_ = 0;
    if (FindBreak(bytes, count - 1, &skip) >= 0) {
        WrapBytes(bytes, count, Wrap::Anywhere);
    } else {
        WriteBytes(bytes, count);
        column_ += count;
    }
}

// Writes bytes known to fit. After a CR or LF the column counts the bytes behind it less one,
// so a piece ending in CR LF leaves it at 0.
void PgnWriter::WriteFitting(const char* bytes, int count) {
    WriteBytes(bytes, count);
    for (int i = 0; i < count; ++i) {
        if (bytes[i] == '\r' || bytes[i] == '\n') {
            column_ = count - i - 2;
            return;
        }
    }
    column_ += count;
}

// Writes the bytes unless an earlier write failed; keeps the first error.
void PgnWriter::WriteBytes(const char* bytes, int count) {
    if (count <= 0 || error_ != 0) return;
    error_ = file_->Write(bytes, static_cast<std::uint32_t>(count), nullptr);
}

}  // namespace velmora
