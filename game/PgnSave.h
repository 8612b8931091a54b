// Saving a game: as a whole file, appended to a file, or spliced in place of its old text.
#pragma once

#include <cstdint>
#include <string>

#include "game/UserMessages.h"
#include "platform/File.h"

namespace velmora {

class Game;
class GameIndex;

constexpr std::int32_t kSaveFailed = static_cast<std::int32_t>(0x80004005);  // E_FAIL

// Drops the first of two leading backslashes, which the file pickers can return for a path.
std::u16string WithoutDoubleBackslash(std::u16string path);

// Appends the game to the index's file (created when missing) and tells the index. Returns 0
// or kSaveFailed after reporting the failure to the user.
std::int32_t AppendTo(Game& game, MessageOwner ownerWindow, GameIndex& gameFile,
                      platform::FileSystem& fileSystem = platform::SystemFileSystem());
// Writes the game over its old place: from the file's start for a save mode below 2 (the file
// is not truncated), else spliced between its start and end offsets through a ".bak" copy.
// Returns 0 or kSaveFailed after reporting the failure to the user.
std::int32_t SaveInPlace(Game& game, MessageOwner ownerWindow,
                         platform::FileSystem& fileSystem = platform::SystemFileSystem());
// Saves in place, or asks the primary observer for a target when the game has none yet and
// appends it there. Before saving in place it checks that the game's text in the file is still
// what was loaded or last saved; if not, it offers to save elsewhere and never overwrites.
// Returns 1 when saved; reports "Unable to save game" and returns 0 if a save failed, and
// returns 0 quietly when the user cancelled.
int Save(Game& game, MessageOwner ownerWindow,
         platform::FileSystem& fileSystem = platform::SystemFileSystem());
// Asks the primary observer for a new target and appends the game there, which becomes its
// file. Returns as Save does.
int SaveAs(Game& game, MessageOwner ownerWindow,
           platform::FileSystem& fileSystem = platform::SystemFileSystem());
// Asks whether to save a modified game. Returns 1 to go on (saved or not), 0 to cancel.
int PromptSave(Game& game, MessageOwner ownerWindow,
               platform::FileSystem& fileSystem = platform::SystemFileSystem());

}  // namespace velmora
