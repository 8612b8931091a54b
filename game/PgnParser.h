// Loading a game from a PGN file: the tag section, then the moves through the lexer.
#pragma once

#include <cstdint>
#include <string>

#include "game/UserMessages.h"
#include "platform/File.h"

namespace velmora {

class Game;
class PgnLexer;
class PgnLineReader;
class Position;

// Outcomes of loading a game; MessageFor gives each its fixed text.
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
};

// Loads the game whose first tag line starts at offset of the game's file into game, storing
// saveMode for saving. Returns a PgnError; on failure the game keeps what was read so far. A
// file that cannot be opened is reported to the user here ("Unable to load file").
int LoadGame(Game& game, MessageOwner ownerWindow, std::int64_t offset, int saveMode,
             platform::FileSystem& fileSystem = platform::SystemFileSystem());
// The same from a reader already open on the game's file, which is left wherever the game
// ends: loading many games of one file this way reads it once instead of once a game.
int LoadGame(Game& game, PgnLineReader& reader, std::int64_t offset, int saveMode);
// Reads moves from the lexer and plays them from position; with atVariationStart the first
// move is an alternative to the move that led to position; with skipVariations the moves of
// variations are read but not kept. Returns a PgnError.
int ParseMoves(PgnLexer& lexer, Position* position, int atVariationStart, int skipVariations);
// The message of a PgnError, with LastErrorArgument in place of "%s". The text lives in a
// buffer that the next call overwrites.
const char16_t* MessageFor(int code);
// The argument of the last failure of ParseMoves (move or token text).
const char16_t* LastErrorArgument();
// Shows MessageFor(code) with the caption and the error icon.
void ShowLoadError(int code, const std::u16string& caption, MessageOwner ownerWindow);
// The text between the first double quote of line and the next one (or the line's end).
std::u16string QuotedValue(const char16_t* line);

}  // namespace velmora
