// Fuzz drivers: what each fuzz target runs on its input. The tests run the seeds (and would run
// any input the fuzzers find) through the same functions, so each is checked on the fuzzed path.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "core/MoveRules.h"
#include "core/PositionText.h"
#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/GameScanner.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/PgnCheck.h"
#include "game/PgnLineReader.h"
#include "game/PgnParser.h"
#include "game/PgnWriter.h"
#include "game/Position.h"
#include "platform/CodePage.h"
#include "tests/MemoryFileSystem.h"

namespace velmora::fuzz {

// Position text: the bytes read as a position, the text written from it, and that text read
// into a fresh position and written again.
struct PositionTextRun {
    bool read = false;
    std::u16string written;
    bool reread = false;
    std::u16string rewritten;
    // The written text reads back to itself, except that a stored en-passant value is written
    // as two characters the reader rejects (an en-passant square read from text is kept as a
    // value that names no square, and written back from that value).
    bool RoundTripHolds(const PositionValue& first) const {
        return reread == (first.enPassant == kNoSquare) && (!reread || rewritten == written);
    }
};

inline PositionTextRun RunPositionText(std::string_view bytes, PositionValue& position) {
    PositionTextRun run;
    run.read = ReadPositionText(platform::AnsiToWide(bytes).c_str(), &position);
    // A failed read leaves a half-read position, which is still shown and written.
    char16_t text[kPositionTextSize];
    run.written.assign(text, WritePositionText(position, text));
    PositionValue again;
    run.reread = ReadPositionText(text, &again);
    run.rewritten.assign(text, WritePositionText(again, text));
    return run;
}

// SAN: the first byte picks a start position (and a glyph for the moves read), the rest is
// moves separated by blanks, each read from the position the last readable one reached.
struct SanRun {
    std::u16string written;  // each move read, as WriteSan writes it, separated by blanks
    int read = 0;            // moves read; every second one is written with its number
    int unreadable = 0;      // tokens that named no legal move
    bool pathsAgree = true;  // the tree and a bare position value played the same move
};

inline constexpr const char* kSanStarts[] = {
    nullptr,  // the initial position
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1",
    "4k3/1P6/8/8/8/8/6p1/4K2R w K - 0 40",
    "n1n1k3/1P6/8/8/8/8/1p6/N1N1K3 b - - 0 30",
    // Both sides may promote, capturing or not, and castle on either side.
    "r3k2r/1P4P1/8/3pP3/8/8/1p4p1/R3K2R w KQkq - 0 20",
};
// Moves played from the initial position before the input's, giving an en-passant chance: the
// start picked after the last of kSanStarts.
inline constexpr const char* kEnPassantPrelude[] = {"e4", "a6", "e5", "d5"};

inline std::u16string TextOf(const PositionValue& position) {
    char16_t text[kPositionTextSize];
    return std::u16string(text, WritePositionText(position, text));
}

// Reads each token twice: into the tree (UTF-16 text, the rules' shortcuts on) and on a bare
// copy of the position value that has forgotten what it knew of the kings (the bytes
// themselves, every test done in full). SAN letters are ASCII, so both must find the same move,
// reach the same position, give the same check mark and write the same SAN.
inline SanRun RunSan(std::string_view bytes) {
    SanRun run;
    if (bytes.empty()) return run;
    const auto first = static_cast<unsigned char>(bytes[0]);
    const std::size_t pick = first % (std::size(kSanStarts) + 1);
    const auto glyph = static_cast<std::uint8_t>(first / 8);
    bytes.remove_prefix(1);
    Position start;
    Position* current = &start;
    if (pick == std::size(kSanStarts)) {
        for (const char* move : kEnPassantPrelude)
            current = ReadSan(current, move);
    } else if (kSanStarts[pick] != nullptr) {
        start.SetFromText(platform::AnsiToWide(kSanStarts[pick]).c_str());
    }
    while (!bytes.empty()) {
        std::size_t blank = bytes.find(' ');
        std::string token(bytes.substr(0, blank));
        bytes.remove_prefix(blank == std::string_view::npos ? bytes.size() : blank + 1);
        PositionValue bare = current->Value();
        bare.MutableSquares();  // forgets the kings' safety
        const SanResolution found = ReadSanMove(bare, token.c_str());
        Position* next = ReadSan(current, platform::AnsiToWide(token).c_str());
        if ((next == nullptr) != !found.Found()) run.pathsAgree = false;
        if (next == nullptr) {
            ++run.unreadable;
            continue;
        }
        MoveNode* node = next->ArrivalNode();
        node->nag = glyph;
        const SanStyle style{.withNumber = run.read % 2 == 1, .nagAsDollar = (glyph & 1) != 0};
        char16_t san[kSanBufferSize], bareSan[kSanBufferSize];
        const int length = WriteSan(node, san, style);
        const int bareLength = WriteSan(bare, found.move, glyph, style, bareSan);
        const PlayedMove played = PlayOnValue(bare, found.move);
        if (Move{node->from, node->to, node->promotion} !=
                Move{found.move.from, found.move.to, played.promotion} ||
            node->givesCheck != played.givesCheck || TextOf(next->Value()) != TextOf(bare) ||
            std::u16string_view(san, length) != std::u16string_view(bareSan, bareLength)) {
            run.pathsAgree = false;
        }
        if (run.read++ > 0) run.written += u' ';
        run.written.append(san, length);
        WriteCoordinates(node, san);
        current = next;
    }
    return run;
}

// PGN file: the bytes as one file; the games the index finds are loaded one by one (at most
// maxGames), then the file is loaded at offset 0, each through the file system; then the same
// offsets are loaded again through one reader kept open on the file, whose read-ahead block
// of 1 to 300 bytes follows from the file's size. A game that loads is also written.
struct LoadRun {
    std::vector<std::uint32_t> offsets;  // of the games found
    std::vector<int> codes;              // LoadGame at each offset, then at 0
    std::vector<int> sharedCodes;        // the same through the one open reader
    // The messages of LoadGame, and of checking the same games without building them, which
    // must be the same.
    std::vector<std::u16string> messages, checkMessages;
    // Where each game that loaded ends (0 for the others), through the file system and through
    // the open reader.
    std::vector<std::uint32_t> ends, sharedEnds;
};

// The outcome's code and message, as one text.
inline std::u16string Labelled(const PgnOutcome& outcome) {
    return platform::Utf8ToWide(std::to_string(outcome.code)) + u": " + MessageFor(outcome);
}

inline LoadRun RunLoadGames(std::string_view bytes, int maxGames = 16) {
    test::MemoryFileSystem files;
    const std::u16string path = u"fuzz.pgn";
    files.files[path] = std::string(bytes);
    GameIndex index(path.c_str());
    index.Load(files);
    LoadRun run;
    for (GameRow entry = index.At(0); entry && int(run.offsets.size()) < maxGames;
         entry = index.At(entry.Position() + 1))
        run.offsets.push_back(entry.Offset());
    std::vector<std::uint32_t> offsets = run.offsets;
    offsets.push_back(0);

    for (std::uint32_t offset : offsets) {
        Game game(&index);
        PgnOutcome outcome = LoadGame(game, nullptr, offset, index.Count(), files);
        const int code = outcome.code;
        run.messages.push_back(Labelled(outcome));
        if (code == kPgnOk) {
            test::MemoryFile written;
            PgnWriter(written).WriteGame(game);
        }
        run.codes.push_back(code);
        run.ends.push_back(code == kPgnOk ? game.endOffset : 0);
    }
    test::MemoryFile file{std::string(bytes)};
    PgnLineReader reader(file, 1 + static_cast<std::uint32_t>(bytes.size() % 300));
    for (std::uint32_t offset : offsets) {
        Game game(&index);
        const int code = LoadGame(game, reader, offset, index.Count()).code;
        run.sharedCodes.push_back(code);
        run.sharedEnds.push_back(code == kPgnOk ? game.endOffset : 0);
    }
    PgnLineReader checkReader(file, 1 + static_cast<std::uint32_t>(bytes.size() % 300));
    for (std::uint32_t offset : offsets) {
        run.checkMessages.push_back(Labelled(CheckGame(checkReader, offset)));
    }
    return run;
}

// Scan: the games ScanFile finds, each as one line of text.
inline std::u16string GameLine(const ScannedGame& game, std::uint32_t nextLine) {
    std::u16string line;
    for (std::uint32_t number : {game.offset, nextLine, std::uint32_t(game.result)})
        line += platform::Utf8ToWide(std::to_string(number)) + u'|';
    for (int field = 0; field < kRowFieldCount; ++field) {
        RowText text = game.Text(static_cast<RowField>(field));
        line += text.IsNull() ? u"<none>" : std::u16string(text.View());
        line += u'|';
    }
    return line;
}

struct ScanRun {
    int count = 0;
    std::vector<std::u16string> games;
};

inline ScanRun RunScan(std::string_view bytes, std::uint32_t blockSize) {
    test::MemoryFile file{std::string(bytes)};
    PgnLineReader reader(file, blockSize);
    ScanRun run;
    ScanFile(reader, &run.count, [&](ScannedGame& game, std::uint32_t next) {
        run.games.push_back(GameLine(game, next));
        return 1;
    });
    return run;
}

// Lines: each line with the offset where it begins, cut one by one with NextLine, and as
// ForEachLine cuts them; then the tag lines alone, found by cutting every line and by passing
// over the others as the scanner does (After::SkipToTagLine after each line that is not one).
struct LinesRun {
    using Line = std::pair<std::uint32_t, std::string>;
    std::vector<Line> cut, visited, tagLines, skippedTo;
};

inline LinesRun RunLines(std::string_view bytes, std::uint32_t blockSize) {
    using After = PgnLineReader::After;
    LinesRun run;
    test::MemoryFile file{std::string(bytes)};
    PgnLineReader reader(file, blockSize);
    const char* line = nullptr;
    std::uint32_t length = 0;
    for (std::uint32_t start = 0; reader.NextLine(&line, &length); start = reader.Position()) {
        run.cut.emplace_back(start, std::string(line, length));
        if (length != 0 && line[0] == '[') run.tagLines.push_back(run.cut.back());
    }
    for (bool skip : {false, true}) {
        reader.Seek(0);
        reader.ForEachLine([&](const char* text, std::uint32_t size, std::uint32_t start,
                               std::uint32_t) {
            const bool tag = size != 0 && text[0] == '[';
            if (!skip || tag)
                (skip ? run.skippedTo : run.visited).emplace_back(start, std::string(text, size));
            return skip && !tag ? After::SkipToTagLine : After::NextLine;
        });
    }
    return run;
}

// Stops the fuzz run with a report when a property that must hold does not.
inline void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "property broken: %s\n", what);
    std::abort();
}

}  // namespace velmora::fuzz
