// Device fuzz drivers: the UCB board link and the Star Diamond import fed arbitrary lines, with
// the properties that must hold after each one. Shared by the fuzz targets and their tests.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "devices/StarDiamondImport.h"
#include "devices/UcbLink.h"
#include "game/Game.h"
#include "game/MoveTree.h"

namespace velmora::fuzz {

// Cuts bytes into lines at each '\n'; a last line without one counts too.
inline std::vector<std::string> SplitLines(std::string_view bytes) {
    std::vector<std::string> lines;
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        lines.emplace_back(bytes.substr(0, end));
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    }
    return lines;
}

// Returns a copy of line in a block of exactly its size (up to its first NUL), so that a read
// past its end is caught by the address sanitizer.
inline std::unique_ptr<char[]> ExactCopy(const std::string& line) {
    const std::size_t length = std::strlen(line.c_str());
    auto copy = std::make_unique<char[]>(length + 1);
    std::memcpy(copy.get(), line.c_str(), length + 1);
    return copy;
}

// Counts the move nodes of the tree that follows position, variations included.
inline int CountMoves(const Position& position) {
    int count = 0;
    std::vector<const Position*> pending{&position};
    while (!pending.empty()) {
        const Position* next = pending.back();
        pending.pop_back();
        for (const MoveNode* node = next->FirstContinuation(); node; node = node->nextAlternative) {
            ++count;
            pending.push_back(node->positionAfter);
        }
    }
    return count;
}

// Whether position is reached from the game's start through the tree's links.
inline bool InGame(Game& game, const Position* position) {
    for (int steps = 0; position != nullptr && steps < 100000; ++steps) {
        if (position == &game.StartPosition()) return true;
        const MoveNode* arrival = position->ArrivalNode();
        if (arrival == nullptr || arrival->positionAfter != position) return false;
        position = position->PreviousPosition();
    }
    return false;
}

// A game view that only counts what it is told.
struct CountingView final : GameView {
    void OnMovePlayed(MoveNode*, GameView*) override { ++played; }
    void OnPositionChanged(Position*) override { ++changed; }
    void Refresh() override {}
    MoveNode* ChooseContinuation(MoveNode* first) override { return first; }
    int EditHeaders() override { return 0; }
    int ChooseSaveTarget(std::u16string*) override { return 0; }
    int QueryClose() override { return 1; }
    int played = 0, changed = 0;
};

// UCB link: every line of the input from the board, to a link over a fresh game.
struct UcbRun {
    std::vector<std::string> sent;
    int shown = 0;
    int redraws = 0;
    int moves = 0;  // nodes in the game's tree at the end
    // After every line: each answer is a whole line, a dump has its eight lines, the current
    // position lies in the game, nodes were only added by move lines (and then the game is
    // modified), and the game window never hears of its own moves.
    bool holds = true;
};

struct UcbRecorder final : UcbLinkHost {
    bool SendToBoard(const char* text) override {
        sent->push_back(text);
        return sent->size() % 2 == 0;  // every other write fails
    }
    void ShowBoardLine(const char16_t* text) override {
        ++*shown;
        if (std::char_traits<char16_t>::length(text) > 32) *holds = false;
    }
    void RedrawBoard() override { ++*redraws; }
    std::vector<std::string>* sent;
    int* shown;
    int* redraws;
    bool* holds;
};

inline UcbRun RunUcbLines(std::string_view bytes) {
    UcbRun run;
    Game game;
    CountingView window, notation;
    game.AddObserver(&window, true);
    game.AddObserver(&notation, false);
    UcbRecorder host;
    host.sent = &run.sent;
    host.shown = &run.shown;
    host.redraws = &run.redraws;
    host.holds = &run.holds;
    UcbLink link(game, &window, host);
    for (const std::string& line : SplitLines(bytes)) {
        const std::size_t sentBefore = run.sent.size();
        const int movesBefore = run.moves;
        link.OnBoardLine(ExactCopy(line).get());
        run.moves = CountMoves(game.StartPosition());
        for (std::size_t i = sentBefore; i < run.sent.size(); ++i) {
            const std::string& answer = run.sent[i];
            const std::size_t lines =
                static_cast<std::size_t>(std::count(answer.begin(), answer.end(), '\n'));
            if (!answer.ends_with("\r\n") || lines != (line[0] == 'P' ? 8u : 1u) ||
                (line[0] == 'P' && answer.size() != 97))
                run.holds = false;
        }
        const bool moveLine = line[0] == 'M' || line[0] == 'm';
        if (!InGame(game, game.Current()) || run.moves < movesBefore ||
            (run.moves > movesBefore && (!moveLine || game.modified != 1)) || window.played != 0)
            run.holds = false;
    }
    return run;
}

// Star Diamond import: Start, then each line of the input. A line beginning with '!' fires the
// request timer, '~' the watchdog, '^' presses "Import" again; any other line is received.
struct StarDiamondRun {
    std::vector<std::string> sent;
    std::vector<std::u16string> boxes;
    int stopped = 0;
    std::uint32_t step = 0;
    bool importing = false;
    int moves = -1;  // main line of the game at the end; -1 without a game
    // After every event: an import in progress has a game, ImportStopped is called exactly when
    // an import ends, a failure leaves no game and no timer armed, the game's tree is one line.
    bool holds = true;
};

struct StarDiamondRecorder final : StarDiamondHost {
    bool SendToComputer(const char* text) override {
        run->sent.push_back(text);
        return true;
    }
    void SetTimer(int id, int milliseconds) override {
        if (milliseconds <= 0) run->holds = false;
        armed.insert(id);
    }
    void KillTimer(int id) override { armed.erase(id); }
    void AppendMessage(const char16_t* text) override {
        if (std::char_traits<char16_t>::length(text) > 80) run->holds = false;
    }
    void ShowMessage(const char16_t* text, const char16_t*, bool) override {
        run->boxes.push_back(text);
    }
    void ImportStopped() override { ++run->stopped; }
    StarDiamondRun* run;
    std::set<int> armed;
};

inline StarDiamondRun RunStarDiamondLines(std::string_view bytes) {
    StarDiamondRun run;
    StarDiamondRecorder host;
    host.run = &run;
    StarDiamondImport import(host);
    import.Start();
    for (const std::string& line : SplitLines(bytes)) {
        const bool wasImporting = import.Importing();
        const int stoppedBefore = run.stopped;
        const std::size_t boxesBefore = run.boxes.size();
        if (line.starts_with('!')) {
            host.armed.erase(StarDiamondImport::kRequestTimer);
            import.OnTimer(StarDiamondImport::kRequestTimer);
        } else if (line.starts_with('~')) {
            host.armed.erase(StarDiamondImport::kWatchdogTimer);
            import.OnTimer(StarDiamondImport::kWatchdogTimer);
        } else if (line.starts_with('^')) {
            import.Start();
        } else {
            import.OnLine(ExactCopy(line).get());
        }
        Game* game = import.CurrentGame();
        const bool ended = wasImporting && !import.Importing();
        if ((import.Importing() && game == nullptr) || run.stopped != stoppedBefore + ended ||
            (ended && import.Step() != 4 &&
             (game != nullptr || run.boxes.size() != boxesBefore + 1 || !host.armed.empty())))
            run.holds = false;
        if (game != nullptr) {
            // The moves are played one after the other: the tree is a single line, and its last
            // position lies in the game.
            int mainLine = 0;
            const Position* last = &game->StartPosition();
            for (; last->FirstContinuation(); ++mainLine)
                last = last->FirstContinuation()->positionAfter;
            if (!InGame(*game, last) || CountMoves(game->StartPosition()) != mainLine)
                run.holds = false;
        }
    }
    run.step = import.Step();
    run.importing = import.Importing();
    if (Game* game = import.CurrentGame()) run.moves = CountMoves(game->StartPosition());
    return run;
}

}  // namespace velmora::fuzz
