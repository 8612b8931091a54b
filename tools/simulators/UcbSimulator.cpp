// velmora-ucb-sim: a UCB electronic chessboard on a pseudo-terminal, for trying and testing the
// program's board link without the hardware. Interactive by default (type moves and requests),
// or playing a script with --script.
#include <ctype.h>
#include <stdio.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "SimulatorLine.h"

namespace velmora::simulators {
namespace {

const char* const kProgram = "velmora-ucb-sim";

const char* const kUsage =
    "usage: velmora-ucb-sim [--link PATH] [--script FILE] [--timeout SECONDS]\n"
    "  Offers a UCB chessboard on a pseudo-terminal and prints 'pty: /dev/pts/N'.\n"
    "  --link PATH      also make PATH a symbolic link to it (for example a Wine port,\n"
    "                   ~/.velmora-wine/dosdevices/com5), removed at exit\n"
    "  --script FILE    play FILE instead of reading the keyboard: one command a line,\n"
    "                   send TEXT | expect TEXT | hello | sleep MS | timeout SECONDS | die | # "
    "...\n"
    "  --timeout S      how long expect and hello wait (default 20 s)\n"
    "Interactive: type a move (e2e4, e7e8q: sent as Me2e4, Me7e8/Q) or any other line, which is\n"
    "sent as it is (I, P, X, T, N, ...). Every line sent and received is printed.\n";

// The board as the simulator sees it: moves typed and moves received are both played on it,
// without checking them, so that the person typing sees where the pieces stand.
class Board {
  public:
    Board() {
        const char* kRanks[8] = {"RNBQKBNR", "PPPPPPPP", "........", "........",
                                 "........", "........", "pppppppp", "rnbqkbnr"};
        for (int rank = 0; rank < 8; ++rank)
            for (int file = 0; file < 8; ++file)
                squares_[rank][file] = kRanks[rank][file];
    }

    // Plays from-to (squares like "e2"), with promotion a piece letter or 0. Castling moves the
    // rook too and a pawn moving aside onto an empty square takes en passant.
    void Play(const char* from, const char* to, char promotion) {
        const int fromFile = from[0] - 'a', fromRank = from[1] - '1';
        const int toFile = to[0] - 'a', toRank = to[1] - '1';
        char piece = squares_[fromRank][fromFile];
        const bool white = piece >= 'A' && piece <= 'Z';
        if ((piece == 'P' || piece == 'p') && fromFile != toFile && squares_[toRank][toFile] == '.')
            squares_[fromRank][toFile] = '.';
        if ((piece == 'K' || piece == 'k') && (toFile - fromFile == 2 || fromFile - toFile == 2)) {
            const int rookFrom = toFile > fromFile ? 7 : 0, rookTo = toFile > fromFile ? 5 : 3;
            squares_[fromRank][rookTo] = squares_[fromRank][rookFrom];
            squares_[fromRank][rookFrom] = '.';
        }
        if (promotion) piece = white ? toupper(promotion) : tolower(promotion);
        squares_[fromRank][fromFile] = '.';
        squares_[toRank][toFile] = piece;
    }

    void Print() const {
        for (int rank = 7; rank >= 0; --rank) {
            printf("  %d ", rank + 1);
            for (int file = 0; file < 8; ++file)
                printf(" %c", squares_[rank][file]);
            printf("\n");
        }
        printf("     a b c d e f g h\n");
        fflush(stdout);
    }

  private:
    char squares_[8][8];
};

bool IsSquare(const std::string& text, std::size_t at) {
    return at + 1 < text.size() && text[at] >= 'a' && text[at] <= 'h' && text[at + 1] >= '1' &&
           text[at + 1] <= '8';
}

bool IsPieceLetter(char letter) {
    return letter != 0 && strchr("qrbnQRBN", letter) != nullptr;
}

// Reads a typed move "e2e4" or "e7e8q" into the line the board sends: "Me2e4", "Me7e8/Q".
bool TypedMove(const std::string& typed, std::string* line) {
    if (!IsSquare(typed, 0) || !IsSquare(typed, 2)) return false;
    if (typed.size() == 4) {
        *line = "M" + typed;
        return true;
    }
    if (typed.size() == 5 && IsPieceLetter(typed[4])) {
        *line = "M" + typed.substr(0, 4) + "/" + static_cast<char>(toupper(typed[4]));
        return true;
    }
    return false;
}

// Plays a move line on the board when it is one: the board's "Me2e4", "Me7e8/Q", and the
// program's "Me2-e4", "Me7-e8/q". Returns whether it was.
bool PlayMoveLine(const std::string& line, Board* board) {
    if (line.empty() || line[0] != 'M' || !IsSquare(line, 1)) return false;
    const std::size_t to = line.size() > 3 && line[3] == '-' ? 4 : 3;
    if (!IsSquare(line, to)) return false;
    char promotion = 0;
    if (line.size() > to + 3 && line[to + 2] == '/' && IsPieceLetter(line[to + 3]))
        promotion = line[to + 3];
    else if (line.size() != to + 2)
        return false;
    board->Play(line.c_str() + 1, line.c_str() + to, promotion);
    return true;
}

std::string Trimmed(std::string text) {
    while (!text.empty() && (text.back() == '\r' || text.back() == ' ' || text.back() == '\t'))
        text.pop_back();
    std::size_t start = 0;
    while (start < text.size() && (text[start] == ' ' || text[start] == '\t'))
        ++start;
    return text.substr(start);
}

// Sends what the person types and shows the board after every move, until the input ends.
int RunInteractive(SimulatorLine& line) {
    Board board;
    board.Print();
    std::deque<std::string> received;
    std::string typed;
    for (;;) {
        bool keyboard = false;
        if (!line.Wait(-1, &received, STDIN_FILENO, &keyboard)) Exit(0);
        for (; !received.empty(); received.pop_front())
            if (PlayMoveLine(received.front(), &board)) board.Print();
        if (!keyboard) continue;
        char bytes[256];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) Exit(0);
        for (ssize_t at = 0; at < count; ++at) {
            if (bytes[at] != '\n') {
                typed += bytes[at];
                continue;
            }
            const std::string text = Trimmed(typed);
            typed.clear();
            std::string move;
            if (TypedMove(text, &move)) {
                line.Send(move);
                PlayMoveLine(move, &board);
                board.Print();
            } else if (!text.empty()) {
                line.Send(text);
            }
        }
    }
}

struct Command {
    int lineNumber;
    std::string name;
    std::string text;
};

// Reads the script: one command a line, blank lines and lines starting with '#' skipped.
bool LoadScript(const char* path, std::vector<Command>* script) {
    std::ifstream file(path);
    if (!file) {
        fprintf(stderr, "%s: cannot read %s\n", kProgram, path);
        return false;
    }
    std::string row;
    for (int number = 1; std::getline(file, row); ++number) {
        while (!row.empty() && row.back() == '\r')
            row.pop_back();
        const std::string text = Trimmed(row);
        if (text.empty() || text[0] == '#') continue;
        const std::size_t blank = text.find(' ');
        Command command{number, text.substr(0, blank),
                        blank == std::string::npos ? "" : text.substr(blank + 1)};
        static const char* const kNames[] = {"send", "expect", "hello", "sleep", "timeout", "die"};
        bool known = false;
        for (const char* name : kNames)
            known = known || command.name == name;
        if (!known) {
            fprintf(stderr, "%s: %s:%d: unknown command '%s'\n", kProgram, path, number,
                    command.name.c_str());
            return false;
        }
        script->push_back(command);
    }
    return true;
}

// Waits until a received line equals text, dropping the lines before it; false when none
// came within timeoutSeconds. With a question, sends it first and again every 500 ms.
bool AwaitLine(SimulatorLine& line, std::deque<std::string>& received, const std::string& text,
               int timeoutSeconds, const char* question, int lineNumber) {
    const long long end = NowMilliseconds() + timeoutSeconds * 1000LL;
    long long nextQuestion = NowMilliseconds();
    for (;;) {
        for (; !received.empty(); received.pop_front())
            if (received.front() == text) {
                received.pop_front();
                return true;
            }
        const long long now = NowMilliseconds();
        if (now >= end) return false;
        if (question && now >= nextQuestion) {
            line.Send(question);
            nextQuestion = now + 500;
        }
        const long long until = question ? std::min(end, nextQuestion) : end;
        if (!line.Wait(static_cast<int>(until - now), &received)) {
            fprintf(stderr, "%s: stopped at script line %d, before its end\n", kProgram,
                    lineNumber);
            Exit(1);
        }
    }
}

// Plays the script; returns the exit code: 0 at its end, 1 when an expectation failed.
int RunScript(SimulatorLine& line, const std::vector<Command>& script, int timeoutSeconds) {
    std::deque<std::string> received;
    for (const Command& command : script) {
        if (gStopSignal) {
            fprintf(stderr, "%s: stopped at script line %d, before its end\n", kProgram,
                    command.lineNumber);
            return 1;
        }
        if (command.name == "send") {
            line.Send(command.text);
        } else if (command.name == "die") {
            Exit(0);
        } else if (command.name == "sleep") {
            if (!line.Pause(atoi(command.text.c_str()), &received)) {
                fprintf(stderr, "%s: stopped at script line %d, before its end\n", kProgram,
                        command.lineNumber);
                return 1;
            }
        } else if (command.name == "timeout") {
            timeoutSeconds = atoi(command.text.c_str());
        } else {
            const bool hello = command.name == "hello";
            const std::string wanted = hello ? "Velmora 2.1" : command.text;
            if (!AwaitLine(line, received, wanted, timeoutSeconds, hello ? "I" : nullptr,
                           command.lineNumber)) {
                fprintf(stderr, "%s: script line %d: no line \"%s\" within %d s\n", kProgram,
                        command.lineNumber, wanted.c_str(), timeoutSeconds);
                return 1;
            }
        }
    }
    return 0;
}

}  // namespace
}  // namespace velmora::simulators

int main(int argc, char** argv) {
    using namespace velmora::simulators;
    const char* link = nullptr;
    const char* scriptPath = nullptr;
    int timeoutSeconds = 20;
    for (int at = 1; at < argc; ++at) {
        const std::string option = argv[at];
        if (option == "--link" && at + 1 < argc) {
            link = argv[++at];
        } else if (option == "--script" && at + 1 < argc) {
            scriptPath = argv[++at];
        } else if (option == "--timeout" && at + 1 < argc) {
            timeoutSeconds = atoi(argv[++at]);
        } else {
            fputs(kUsage, option == "--help" ? stdout : stderr);
            return option == "--help" ? 0 : 2;
        }
    }
    std::vector<Command> script;
    if (scriptPath && !LoadScript(scriptPath, &script)) return 2;
    CatchStopSignals();
    SimulatorLine line(false);
    if (!line.Open(link, kProgram)) Exit(2);
    Exit(scriptPath ? RunScript(line, script, timeoutSeconds) : RunInteractive(line));
}
