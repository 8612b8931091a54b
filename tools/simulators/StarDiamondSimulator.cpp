// velmora-stardiamond-sim: a Star Diamond chess computer holding a stored game, on a
// pseudo-terminal, for trying and testing the program's game import without the hardware. It
// only answers: "Origin", "H", "pos" (the start position), "res" (the number of moves), then one
// move line for each bare line end.
#include <ctype.h>
#include <stdio.h>

#include <fstream>
#include <string>
#include <vector>

#include "SimulatorLine.h"

namespace velmora::simulators {
namespace {

const char* const kProgram = "velmora-stardiamond-sim";

const char* const kUsage =
    "usage: velmora-stardiamond-sim [--link PATH] [--game NAME | --game-file FILE]\n"
    "                               [--stop-after N] [--list-games]\n"
    "  Offers a Star Diamond chess computer on a pseudo-terminal and prints 'pty: /dev/pts/N'.\n"
    "  --link PATH      also make PATH a symbolic link to it (for example a Wine port,\n"
    "                   ~/.velmora-wine/dosdevices/com6), removed at exit\n"
    "  --game NAME      the stored game: short (default), promotion, illegal, empty\n"
    "  --game-file FILE a game of your own: a line 'position <FEN placement> <w|b>' (or\n"
    "                   'position start'), then one move a line: e2-e4, e7-e8/Q; # comments\n"
    "  --stop-after N   answer nothing at all after the N-th move line\n";

const char* const kStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";

struct StoredGame {
    const char* name;
    const char* description;
    const char* placement;
    char side;
    std::vector<std::string> moves;
};

const StoredGame kGames[] = {
    {"short",
     "a Ruy Lopez of 16 moves from the initial position, with both sides castling",
     kStart,
     'w',
     {"e2-e4", "e7-e5", "g1-f3", "b8-c6", "f1-b5", "a7-a6", "b5-a4", "g8-f6", "e1-g1", "f8-e7",
      "f1-e1", "b7-b5", "a4-b3", "d7-d6", "c2-c3", "e8-g8"}},
    {"promotion",
     "8 moves from a set-up position: White promotes to a queen, Black to a knight",
     "7k/1P6/8/8/8/8/6p1/2K5",
     'w',
     {"b7-b8/Q", "h8-h7", "c1-d2", "g2-g1/N", "b8-b1", "h7-h6", "b1-g1", "h6-h5"}},
    {"illegal",
     "6 moves from the initial position; the 5th (e1-e3) is illegal",
     kStart,
     'w',
     {"e2-e4", "e7-e5", "g1-f3", "b8-c6", "e1-e3", "g8-f6"}},
    {"empty", "no moves, the initial position", kStart, 'w', {}},
};

// Reads a game file: "position PLACEMENT SIDE" or "position start", then one move a line.
bool LoadGame(const char* path, StoredGame* game, std::string* placement) {
    std::ifstream file(path);
    if (!file) {
        fprintf(stderr, "%s: cannot read %s\n", kProgram, path);
        return false;
    }
    *game = {"file", path, kStart, 'w', {}};
    std::string row;
    for (int number = 1; std::getline(file, row); ++number) {
        while (!row.empty() && (row.back() == '\r' || row.back() == ' '))
            row.pop_back();
        if (row.empty() || row[0] == '#') continue;
        if (row.rfind("position ", 0) == 0) {
            const std::string rest = row.substr(9);
            const std::size_t blank = rest.find(' ');
            if (rest != "start") {
                if (blank == std::string::npos ||
                    (rest[blank + 1] != 'w' && rest[blank + 1] != 'b')) {
                    fprintf(stderr, "%s: %s:%d: want 'position PLACEMENT w|b'\n", kProgram, path,
                            number);
                    return false;
                }
                *placement = rest.substr(0, blank);
                game->placement = placement->c_str();
                game->side = rest[blank + 1];
            }
        } else {
            game->moves.push_back(row);
        }
    }
    return true;
}

// Fills the board, rank 8 first, from a FEN piece placement. False when it is not one.
bool ReadPlacement(const char* placement, char board[8][8]) {
    int rank = 0, file = 0;
    for (const char* at = placement; *at; ++at) {
        if (*at == '/') {
            if (file != 8) return false;
            ++rank;
            file = 0;
        } else if (*at >= '1' && *at <= '8') {
            for (int count = *at - '0'; count > 0; --count) {
                if (file >= 8) return false;
                board[rank][file++] = '.';
            }
        } else if (strchr("pnbrqkPNBRQK", *at) && file < 8 && rank < 8) {
            board[rank][file++] = *at;
        } else {
            return false;
        }
    }
    return rank == 7 && file == 8;
}

// Returns the position dump: the header line, the ranks 8 to 1 (two-character codes at columns 3,
// 6,
// ..., 24, "--" for an empty square, the side to move at column 28 of rank 2), the header again.
std::vector<std::string> PositionLines(const char board[8][8], char side) {
    const std::string header = ".  aa bb cc dd ee ff gg hh";
    std::vector<std::string> lines = {header};
    for (int rank = 0; rank < 8; ++rank) {
        std::string line = ".";
        line += static_cast<char>('8' - rank);
        for (int file = 0; file < 8; ++file) {
            const char piece = board[rank][file];
            line += ' ';
            if (piece == '.') {
                line += "--";
            } else if (isupper(static_cast<unsigned char>(piece))) {
                line += 'W';
                line += piece;
            } else {
                line += 'b';
                line += piece;
            }
        }
        if (rank == 6) line += side == 'w' ? "  +" : "  -";
        lines.push_back(line);
    }
    lines.push_back(header);
    return lines;
}

// Returns the n-th move line (from 1), with the move from column 8 on.
std::string MoveLine(int number, const std::string& move) {
    char line[64];
    snprintf(line, sizeof line, "Move%3d %s", number, move.c_str());
    return line;
}

}  // namespace
}  // namespace velmora::simulators

int main(int argc, char** argv) {
    using namespace velmora::simulators;
    const char* link = nullptr;
    const char* gameName = "short";
    const char* gamePath = nullptr;
    int stopAfter = -1;
    for (int at = 1; at < argc; ++at) {
        const std::string option = argv[at];
        if (option == "--link" && at + 1 < argc) {
            link = argv[++at];
        } else if (option == "--game" && at + 1 < argc) {
            gameName = argv[++at];
        } else if (option == "--game-file" && at + 1 < argc) {
            gamePath = argv[++at];
        } else if (option == "--stop-after" && at + 1 < argc) {
            stopAfter = atoi(argv[++at]);
        } else if (option == "--list-games") {
            for (const StoredGame& game : kGames)
                printf("%-10s %s\n", game.name, game.description);
            return 0;
        } else {
            fputs(kUsage, option == "--help" ? stdout : stderr);
            return option == "--help" ? 0 : 2;
        }
    }
    StoredGame game;
    std::string placement;
    if (gamePath) {
        if (!LoadGame(gamePath, &game, &placement)) return 2;
    } else {
        const StoredGame* found = nullptr;
        for (const StoredGame& stored : kGames)
            if (strcmp(stored.name, gameName) == 0) found = &stored;
        if (!found) {
            fprintf(stderr, "%s: no game '%s' (see --list-games)\n", kProgram, gameName);
            return 2;
        }
        game = *found;
    }
    char board[8][8];
    if (!ReadPlacement(game.placement, board)) {
        fprintf(stderr, "%s: bad position '%s'\n", kProgram, game.placement);
        return 2;
    }

    CatchStopSignals();
    SimulatorLine line(true);
    if (!line.Open(link, kProgram)) Exit(2);
    std::deque<std::string> received;
    // The next move to send once "res" has been asked, and how many have gone.
    int next = -1;
    int sent = 0;
    for (;;) {
        if (!line.Wait(-1, &received)) Exit(0);
        for (; !received.empty(); received.pop_front()) {
            const std::string& request = received.front();
            if (stopAfter >= 0 && sent >= stopAfter) continue;
            if (request == "Origin") {
                line.Send("Star Diamond");
            } else if (request == "H") {
                line.Send("Help: H pos res");
            } else if (request == "pos") {
                for (const std::string& row : PositionLines(board, game.side))
                    line.Send(row);
            } else if (request == "res") {
                line.Send("Replay " + std::to_string(game.moves.size()));
                next = 0;
            } else if (request.empty() && next >= 0 && next < static_cast<int>(game.moves.size())) {
                line.Send(MoveLine(next + 1, game.moves[next]));
                ++next;
                ++sent;
            }
        }
    }
}
