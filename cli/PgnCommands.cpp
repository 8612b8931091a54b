// velmora-pgn list, show, fens, check, append and resave: the PGN core from a shell.
#include <charconv>
#include <cstdlib>
#include <memory>
#include <string>

#include "cli/CommandSupport.h"
#include "cli/Commands.h"
#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/PgnCheck.h"
#include "game/PgnLineReader.h"
#include "game/PgnParser.h"
#include "game/PgnSave.h"
#include "game/PgnWriter.h"
#include "game/Position.h"
#include "game/UserMessages.h"

namespace velmora::cli {

const char kListUsage[] =
    "Usage: velmora-pgn list FILE\n"
    "Prints one line per game: number, byte offset, White, Black, result, Date, Event, Round,\n"
    "Site, ECO and start text, separated by tabs; then the number of games on standard error.\n";
const char kShowUsage[] =
    "Usage: velmora-pgn show FILE N\n"
    "Loads game N (counted from 1) and writes it as PGN, as saving would write it.\n";
const char kFensUsage[] =
    "Usage: velmora-pgn fens FILE N\n"
    "Loads game N and prints its start position's text, then each main-line move with its\n"
    "number, a tab and the position text after it.\n";
const char kCheckUsage[] =
    "Usage: velmora-pgn check FILE...\n"
    "Loads every game of every file and prints file, number, error code and message for each\n"
    "game that fails. Exits with 1 when any game failed.\n";
const char kAppendUsage[] =
    "Usage: velmora-pgn append SRC N DEST\n"
    "Loads game N of SRC and appends it to DEST (created when missing).\n";
const char kResaveUsage[] =
    "Usage: velmora-pgn resave FILE N\n"
    "Loads game N and saves it back in its place in FILE (through FILE.bak).\n";

namespace {

// Writes through to an output stream, so the PGN writer can print a game.
class StreamFile final : public platform::File {
  public:
    explicit StreamFile(std::ostream& out) : out_(out) {}
    platform::ErrorCode Read(void*, std::uint32_t, std::uint32_t* read) override {
        if (read) *read = 0;
        return 1;
    }
    platform::ErrorCode Write(const void* bytes, std::uint32_t size,
                              std::uint32_t* written) override {
        out_.write(static_cast<const char*>(bytes), size);
        if (written) *written = out_ ? size : 0;
        return out_ ? 0 : 1;
    }
    platform::ErrorCode Seek(std::int64_t, platform::SeekOrigin, std::int64_t*) override {
        return 1;
    }
    platform::ErrorCode Size(std::int64_t*) override { return 1; }
    platform::ErrorCode SetEndOfFile() override { return 1; }

  private:
    std::ostream& out_;
};

// Reads a game number: a whole number from 1 up. Returns 0 for anything else.
int ParseGameNumber(const std::u16string& text) {
    if (text.empty() || text.size() > 9) return 0;
    int number = 0;
    for (char16_t c : text) {
        if (c < u'0' || c > u'9') return 0;
        number = number * 10 + (c - u'0');
    }
    return number;
}

// Scans a file into its index, with progress. Returns false (the reason already shown) when
// the file cannot be opened.
bool LoadIndex(GameIndex& index, std::ostream& err) {
    Progress progress(err, index.Path());
    std::int64_t games = 0;
    index.SetScanProgress([&](std::uint32_t) { progress.Update("games", ++games); });
    int loaded = index.Load();
    index.SetScanProgress(nullptr);
    return loaded != 0;
}

// Loads game number of the index's file into game, as the game list does (the save mode is
// the number of games). Returns the exit code: 0, or 1 after telling why on err.
int LoadNumbered(const GameIndex& index, int number, Game& game, std::ostream& err) {
    GameRow entry = index.At(number - 1);
    if (!entry) {
        err << "There is no game " << number << " in ";
        Print(err, index.Path());
        err << " (" << index.Count() << " games)\n";
        return kExitFailed;
    }
    PgnOutcome outcome = LoadGame(game, nullptr, entry.Offset(), index.Count());
    if (!outcome.Ok()) {
        err << "Unable to load game: ";
        std::u16string message = MessageFor(outcome);
        if (!message.empty() && message.back() == u'\n') message.pop_back();
        Print(err, message);
        err << '\n';
        return kExitFailed;
    }
    return kExitOk;
}

// Runs body on game N of FILE given as args[0] and args[1]. Handles usage, the index and the
// load; body returns the exit code.
template <typename Body>
int WithLoadedGame(const Arguments& args, std::size_t argCount, const char* usage,
                   std::ostream& out, std::ostream& err, Body body) {
    if (WantsHelp(args, usage, out)) return kExitOk;
    int number = args.size() == argCount ? ParseGameNumber(args[1]) : 0;
    if (number == 0) {
        err << usage;
        return kExitUsage;
    }
    StreamMessages messages(err);
    GameIndex index(args[0].c_str());
    if (!LoadIndex(index, err)) return kExitFailed;
    Game game(&index);
    int code = LoadNumbered(index, number, game, err);
    return code != kExitOk ? code : body(index, game);
}

}  // namespace

int RunList(const Arguments& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args, kListUsage, out)) return kExitOk;
    if (args.size() != 1) {
        err << kListUsage;
        return kExitUsage;
    }
    StreamMessages messages(err);
    GameIndex index(args[0].c_str());
    if (!LoadIndex(index, err)) return kExitFailed;
    // The lines are gathered and written a large block at a time.
    constexpr std::size_t kBlock = 64 * 1024;
    std::string lines;
    lines.reserve(kBlock + 4096);
    char number[16];
    for (GameRow row : index) {
        lines.append(number, std::to_chars(number, number + sizeof number, row.Position() + 1).ptr);
        lines.push_back('\t');
        AppendRow(lines, row);
        lines.push_back('\n');
        if (lines.size() >= kBlock) {
            out.write(lines.data(), static_cast<std::streamsize>(lines.size()));
            lines.clear();
        }
    }
    out.write(lines.data(), static_cast<std::streamsize>(lines.size()));
    err << index.Count() << " games\n";
    return kExitOk;
}

int RunShow(const Arguments& args, std::ostream& out, std::ostream& err) {
    return WithLoadedGame(args, 2, kShowUsage, out, err, [&](GameIndex&, Game& game) {
        StreamFile file(out);
        PgnWriter writer(file);
        return writer.WriteGame(game) == 0 ? kExitOk : kExitFailed;
    });
}

int RunFens(const Arguments& args, std::ostream& out, std::ostream& err) {
    return WithLoadedGame(args, 2, kFensUsage, out, err, [&](GameIndex&, Game& game) {
        char16_t text[Position::kTextBufferSize];
        Position* position = &game.StartPosition();
        Print(out, std::u16string_view(text, position->WriteText(text)));
        out << '\n';
        while (MoveNode* node = position->FirstContinuation()) {
            char16_t san[kSanBufferSize];
            Print(out, std::u16string_view(san, WriteSan(node, san, {.withNumber = true})));
            out << '\t';
            position = node->positionAfter;
            Print(out, std::u16string_view(text, position->WriteText(text)));
            out << '\n';
        }
        return kExitOk;
    });
}

int RunCheck(const Arguments& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args, kCheckUsage, out)) return kExitOk;
    if (args.empty()) {
        err << kCheckUsage;
        return kExitUsage;
    }
    StreamMessages messages(err);
    long long games = 0, loaded = 0, failed = 0;
    bool unreadable = false;
    for (const std::u16string& path : args) {
        GameIndex index(path.c_str());
        if (!LoadIndex(index, err)) {
            unreadable = true;
            continue;
        }
        // One reader serves every game of the file, so it is read once, in order.
        platform::ErrorCode error = 0;
        std::unique_ptr<platform::File> file =
            platform::SystemFileSystem().Open(path, platform::OpenMode::ReadShared, &error);
        if (!file) {
            messages.ShowUnopenable(path, error);
            unreadable = true;
            continue;
        }
        PgnLineReader reader(*file);
        Progress progress(err, path);
        for (GameRow entry : index) {
            const int number = entry.Position() + 1;
            ++games;
            progress.Update("games checked", number);
            PgnOutcome outcome = CheckGame(reader, entry.Offset());
            if (outcome.Ok()) {
                ++loaded;
                continue;
            }
            ++failed;
            std::u16string message = MessageFor(outcome);
            if (!message.empty() && message.back() == u'\n') message.pop_back();
            Print(out, path);
            out << '\t' << number << '\t' << outcome.code << '\t';
            Print(out, message);
            out << '\n';
        }
    }
    err << games << " games, " << loaded << " loaded, " << failed << " failed\n";
    return failed == 0 && !unreadable ? kExitOk : kExitFailed;
}

int RunAppend(const Arguments& args, std::ostream& out, std::ostream& err) {
    if (args.size() == 3 && !WantsHelp(args, kAppendUsage, out)) {
        Arguments source(args.begin(), args.begin() + 2);
        return WithLoadedGame(source, 2, kAppendUsage, out, err, [&](GameIndex&, Game& game) {
            GameIndex destination(args[2].c_str());
            return AppendTo(game, nullptr, destination) == 0 ? kExitOk : kExitFailed;
        });
    }
    if (WantsHelp(args, kAppendUsage, out)) return kExitOk;
    err << kAppendUsage;
    return kExitUsage;
}

int RunResave(const Arguments& args, std::ostream& out, std::ostream& err) {
    return WithLoadedGame(args, 2, kResaveUsage, out, err, [&](GameIndex&, Game& game) {
        return SaveInPlace(game, nullptr) == 0 ? kExitOk : kExitFailed;
    });
}

}  // namespace velmora::cli
