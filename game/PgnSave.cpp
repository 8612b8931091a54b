// Saving a game: appended to a file, written over its file, or spliced among other games.
#include "game/PgnSave.h"

#include <memory>
#include <string>

#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/PgnWriter.h"
#include "game/UserMessages.h"
#include "platform/SystemError.h"

namespace velmora {

namespace {

constexpr std::uint32_t kBlockSize = 512;

// Returns the game's own path, or its owner's when it has none.
std::u16string PathOf(const Game& game) {
    if (game.FilePath().empty() && game.Owner()) return game.Owner()->Path();
    return game.FilePath();
}

// Shows why saving to path failed and returns kSaveFailed.
std::int32_t ReportFailure(const std::u16string& path, platform::ErrorCode error,
                           MessageOwner ownerWindow) {
    ShowMessage(platform::ErrorTextOrCode(error), u"Unable to save game in '" + path + u"'",
                MessageIcon::Error, ownerWindow);
    return kSaveFailed;
}

// Copies up to count bytes (all that is left for a negative count) in 512-byte blocks. A
// source that ends early is not an error.
platform::ErrorCode CopyBlocks(platform::File& from, platform::File& to, std::int64_t count) {
    char block[kBlockSize];
    while (count != 0) {
        const std::uint32_t wanted =
            count < 0 || count > kBlockSize ? kBlockSize : static_cast<std::uint32_t>(count);
        std::uint32_t got = 0;
        if (platform::ErrorCode error = from.Read(block, wanted, &got)) return error;
        if (got == 0) return 0;
        if (platform::ErrorCode error = to.Write(block, got, nullptr)) return error;
        if (count > 0) count -= got;
        if (got < wanted) return 0;
    }
    return 0;
}

// Writes the game over the file from its start; the old file's tail stays when it was longer.
std::int32_t SaveWhole(Game& game, const std::u16string& path, MessageOwner ownerWindow,
                       platform::FileSystem& fileSystem) {
    platform::ErrorCode error = 0;
    std::unique_ptr<platform::File> file =
        fileSystem.Open(path, platform::OpenMode::WriteAlways, &error);
    if (!file) return ReportFailure(path, error, ownerWindow);
    std::int64_t written = 0;
    if ((error = PgnWriter(*file).WriteGame(game)) != 0 ||
        (error = file->Seek(0, platform::SeekOrigin::Current, &written)) != 0) {
        return ReportFailure(path, error, ownerWindow);
    }
    file.reset();
    game.modified = 0;
    game.hasLocation = 1;
    game.savedText = FingerprintOf(path, 0, static_cast<std::uint32_t>(written), fileSystem);
    return 0;
}

// Rebuilds the file from its ".bak" copy: the bytes before the game's start offset, the game's
// new text, then the bytes from its old end offset on. The owner learns how far the games
// behind it moved. Any failure after the copy was made leaves the copy in place.
std::int32_t SaveSpliced(Game& game, const std::u16string& path, MessageOwner ownerWindow,
                         platform::FileSystem& fileSystem) {
    const std::u16string backupPath = path + u".bak";
    platform::ErrorCode error = fileSystem.Copy(path, backupPath);
    if (error) return ReportFailure(path, error, ownerWindow);
    std::unique_ptr<platform::File> backup =
        fileSystem.Open(backupPath, platform::OpenMode::ReadExclusive, &error);
    if (!backup) return ReportFailure(path, error, ownerWindow);
    std::unique_ptr<platform::File> file =
        fileSystem.Open(path, platform::OpenMode::WriteAlways, &error);
    if (!file) {
        backup.reset();
        return ReportFailure(path, error, ownerWindow);
    }
    std::int64_t newEnd = 0;
    if ((error = CopyBlocks(*backup, *file, game.offset)) != 0 ||
        (error = PgnWriter(*file).WriteGame(game)) != 0 ||
        (error = file->Seek(0, platform::SeekOrigin::Current, &newEnd)) != 0 ||
        (error = backup->Seek(game.endOffset, platform::SeekOrigin::Begin, nullptr)) != 0 ||
        (error = CopyBlocks(*backup, *file, -1)) != 0 || (error = file->SetEndOfFile()) != 0) {
        return ReportFailure(path, error, ownerWindow);
    }
    file.reset();
    backup.reset();
    // The file is complete at this point, so a backup that cannot be deleted is only left
    // behind: failing here would leave the game and its index with offsets that no longer hold.
    fileSystem.Delete(backupPath);
    if (GameIndex* owner = game.Owner()) {
        owner->TextMoved(game.FilePath(), game.offset, newEnd - game.endOffset);
    }
    game.endOffset = static_cast<std::uint32_t>(newEnd);
    game.hasLocation = 1;
    game.modified = 0;
    game.savedText = FingerprintOf(path, game.offset, game.endOffset, fileSystem);
    return 0;
}

// Asks the primary observer for a target and appends the game there. Returns 0 when saved,
// kSaveFailed when the save failed, 1 when the user cancelled the choice.
std::int32_t SaveToChosenTarget(Game& game, MessageOwner ownerWindow,
                                platform::FileSystem& fileSystem) {
    std::u16string path;
    GameView* observer = game.PrimaryObserver();
    if (observer == nullptr || !observer->ChooseSaveTarget(&path)) return 1;
    path = WithoutDoubleBackslash(path);
    auto index = std::make_unique<GameIndex>(path.c_str());
    const std::int32_t result = AppendTo(game, ownerWindow, *index, fileSystem);
    game.savedIndex = std::move(index);
    return result;
}

// Whether the game's text is still where it was loaded or last saved. A file that cannot be
// read is left to the save itself to report.
bool SavedTextIntact(const Game& game, platform::FileSystem& fileSystem) {
    const TextFingerprint& saved = game.savedText;
    if (!saved.known) return true;
    const std::u16string path = PathOf(game);
    if (!fileSystem.Exists(path)) return true;
    return FingerprintOf(path, saved.start, saved.end, fileSystem) == saved;
}

// Shows the message that the save did not happen and returns 0; a result of 0 returns 1.
int Outcome(std::int32_t result, MessageOwner ownerWindow) {
    if (result != 0) {
        ShowMessage(u"Unable to save game", u"An error occurred", MessageIcon::Error, ownerWindow);
        return 0;
    }
    return 1;
}

}  // namespace

std::u16string WithoutDoubleBackslash(std::u16string path) {
    if (path.starts_with(u"\\\\")) path.erase(0, 1);
    return path;
}

// Makes gameFile the game's owner and its path the game's, then writes the game behind the
// file's text, after one CR LF, or as a new file.
std::int32_t AppendTo(Game& game, MessageOwner ownerWindow, GameIndex& gameFile,
                      platform::FileSystem& fileSystem) {
    game.SetOwner(&gameFile);
    game.SetFilePath(gameFile.SharedPath());
    const std::u16string& path = gameFile.Path();
    if (fileSystem.Exists(path)) {
        platform::ErrorCode error = 0;
        std::unique_ptr<platform::File> file =
            fileSystem.Open(path, platform::OpenMode::ReadWriteExisting, &error);
        if (!file) return ReportFailure(path, error, ownerWindow);
        std::int64_t size = 0;
        if ((error = file->Seek(0, platform::SeekOrigin::End, &size)) != 0 ||
            (error = file->Write("\r\n", 2, nullptr)) != 0) {
            return ReportFailure(path, error, ownerWindow);
        }
        file.reset();
        game.offset = game.endOffset = static_cast<std::uint32_t>(size + 2);
        game.saveMode = 2;
    } else {
        // A new file holds only this game, so its text starts at offset 0.
        game.offset = game.endOffset = 0;
        game.saveMode = 0;
    }
    if (std::int32_t result = SaveInPlace(game, ownerWindow, fileSystem)) return result;
    gameFile.GameAdded(game);
    return 0;
}

std::int32_t SaveInPlace(Game& game, MessageOwner ownerWindow, platform::FileSystem& fileSystem) {
    const std::u16string path = PathOf(game);
    // Intended: below save mode 2 the file is overwritten from its start but not truncated.
    if (game.saveMode < 2) return SaveWhole(game, path, ownerWindow, fileSystem);
    return SaveSpliced(game, path, ownerWindow, fileSystem);
}

// Asks the primary observer for a target when the game has no location yet; a cancelled
// choice returns 0 without a message. A game whose text another program changed since it was
// loaded is never spliced blind: the user may save it elsewhere instead.
int Save(Game& game, MessageOwner ownerWindow, platform::FileSystem& fileSystem) {
    if (!game.hasLocation) {
        const std::int32_t result = SaveToChosenTarget(game, ownerWindow, fileSystem);
        return result == 1 ? 0 : Outcome(result, ownerWindow);
    }
    if (!SavedTextIntact(game, fileSystem)) {
        std::u16string text = u"'";
        text += PathOf(game);
        text +=
            u"' has been changed by another program since the game was loaded. Saving in "
            u"place could damage the games stored in it.\n\nDo you want to save the game in "
            u"another file?";
        const int answer =
            GetUserMessages().Show(text, u"The file has been changed", MessageIcon::Warning,
                                   MessageButtons::YesNo, ownerWindow);
        if (answer != kAnswerYes) return 0;
        return SaveAs(game, ownerWindow, fileSystem);
    }
    return Outcome(SaveInPlace(game, ownerWindow, fileSystem), ownerWindow);
}

int SaveAs(Game& game, MessageOwner ownerWindow, platform::FileSystem& fileSystem) {
    const std::int32_t result = SaveToChosenTarget(game, ownerWindow, fileSystem);
    return result == 1 ? 0 : Outcome(result, ownerWindow);
}

int PromptSave(Game& game, MessageOwner ownerWindow, platform::FileSystem& fileSystem) {
    if (!game.modified) return 1;
    const int answer =
        GetUserMessages().Show(u"Do you want to save the game ?", u"The game has been changed",
                               MessageIcon::Question, MessageButtons::YesNoCancel, ownerWindow);
    if (answer == kAnswerYes) return Save(game, ownerWindow, fileSystem);
    return answer == kAnswerNo ? 1 : 0;
}

}  // namespace velmora
