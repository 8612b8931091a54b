// Reading a game of a PGN file: the tag section and the move section, told to a visitor.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/ChessTypes.h"
#include "game/UserMessages.h"
#include "platform/File.h"

namespace velmora {

class Game;
class PgnLexer;
class PgnLineReader;

// Outcomes of reading a game; MessageFor gives each its fixed text.
enum PgnError : int {
    kPgnOk = 0,
    kPgnNothingToLoad = 1,         // offset -1
    kPgnUnexpected = 2,            // no game found at the offset
    kPgnCannotOpen = 3,            // the file could not be opened
    kPgnBadPosition = 4,           // the FEN tag could not be read
    kPgnBadHeaders = 5,            // FEN without SetUp, or SetUp without FEN
    kPgnUnknownToken = 6,          // "Unknown token : %s"
    kPgnBadVariation = 7,          // a variation where there is no move to vary
    kPgnIllegalMove = 8,           // "Illegal move : %s"
    kPgnIllegalVariationMove = 9,  // the first move of a variation
    kPgnCommentTooLong = 10,
    kPgnStopped = 11,  // a visitor had what it wanted and ended the reading early
};

// A PgnError and the text its message shows (the move or token at fault).
struct PgnOutcome {
    PgnError code = kPgnOk;
    std::u16string argument;

    bool Ok() const { return code == kPgnOk; }
};

// The message of an outcome, with its argument in place of "%s".
std::u16string MessageFor(const PgnOutcome& outcome);
// Shows MessageFor(outcome) with the caption and the error icon.
void ShowLoadError(const PgnOutcome& outcome, const std::u16string& caption, MessageOwner owner);
// Reads an optional sign and the leading digits, as a standard string-to-integer conversion
// does (blanks before them skipped), stopping at 0x7FFFFFFF.
long LeadingInteger(std::u16string_view text);
// The text between the first double quote of line and the next one (or the line's end).
std::u16string QuotedValue(std::u16string_view line);

// What a move told to a visitor came to: kPgnOk, or the error and the side that was to move.
struct MoveVerdict {
    PgnError error = kPgnOk;
    Colour sideToMove = kWhite;
};

// Told the parts of one game in file order by ReadGame. Errors stop the reading.
class PgnVisitor {
  public:
    virtual ~PgnVisitor() = default;
    // A line of the tag section that starts with "[", as read from the file. Returns kPgnOk to
    // go on.
    virtual PgnError OnTagLine(std::string_view line) = 0;
    // Whether a White tag was seen: the tag section ends at the first line after it that is no
    // tag; lines before it are passed over.
    virtual bool SawWhiteTag() const = 0;
    // The tag section is over and the moves begin.
    virtual PgnError OnMoveSectionStart() = 0;
    // A move's text. firstOfVariation: the move replaces the one that led to the current
    // position, as the first move of a variation.
    virtual MoveVerdict OnMove(const char16_t* san, bool firstOfVariation) = 0;
    // A brace comment, for the position reached.
    virtual void OnComment(std::u16string_view text) {}
    // A "$n" glyph: n of 10 or less for the move, above for the position.
    virtual void OnNag(long value) {}
    // A variation opens from the current position; returns kPgnOk to read it.
    virtual PgnError OnVariationStart() { return kPgnOk; }
    // The variation closes: the position before it is current again.
    virtual void OnVariationEnd() {}
    // The move section ended without error (a result, the next game, a glyph or the file's
    // end).
    virtual void OnGameEnd() {}
};

// Reads the game whose first line starts at offset: the tag lines, then the move section
// through a lexer, telling visitor each part. The reader is left just past the last line read.
PgnOutcome ReadGame(PgnLineReader& reader, std::int64_t offset, PgnVisitor& visitor);
// Reads moves from the lexer up to the end of the move section, telling visitor.
PgnOutcome ParseMoves(PgnLexer& lexer, PgnVisitor& visitor);

// Loads the game whose first tag line starts at offset of the game's file into game, storing
// saveMode for saving. On failure the game keeps what was read so far. A file that cannot be
// opened is reported to the user here ("Unable to load file").
PgnOutcome LoadGame(Game& game, MessageOwner owner, std::int64_t offset, int saveMode,
                    platform::FileSystem& fileSystem = platform::SystemFileSystem());
// The same from a reader already open on the game's file, which is left wherever the game
// ends: loading many games of one file this way reads it once instead of once a game.
PgnOutcome LoadGame(Game& game, PgnLineReader& reader, std::int64_t offset, int saveMode);

}  // namespace velmora
