// velmora-engine-match: plays two UCI engines against each other at a fixed time per move,
// from openings taken from real games, and reports the score and the Elo difference.
//
// Usage: velmora-engine-match --engine CMD [--option NAME=VALUE]... --engine CMD [--option ...]
//            [--games N] [--movetime MS] [--plies N] [--margin MS] [--seed N] [--pgn OUT]
//            FILE.pgn...
//
// Each opening (the first --plies moves of a game from the files, games from set-up positions
// left out) is played twice, the engines swapping colours. Every move an engine sends is
// checked with the core's rules; the match adjudicates checkmate, stalemate, threefold
// repetition, the fifty-move rule and insufficient material. An engine that answers later than
// the move time plus the margin loses on time. POSIX only: engines run as child processes.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "bench/PgnMainLines.h"
#include "core/LegalMoves.h"
#include "core/MoveRules.h"
#include "core/San.h"

namespace {

using Clock = std::chrono::steady_clock;
using velmora::Move;
using velmora::PositionValue;

long long MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

// One UCI engine as a child process, spoken to over two pipes.
class UciProcess {
  public:
    UciProcess() = default;
    UciProcess(const UciProcess&) = delete;
    UciProcess& operator=(const UciProcess&) = delete;
    ~UciProcess() { Close(); }

    // Starts the command through the shell (so it may carry arguments).
    bool Start(const std::string& command) {
        int toChild[2], fromChild[2];
        if (pipe(toChild) != 0 || pipe(fromChild) != 0) return false;
        pid_ = fork();
        if (pid_ < 0) return false;
        if (pid_ == 0) {
            dup2(toChild[0], 0);
            dup2(fromChild[1], 1);
            close(toChild[1]);
            close(fromChild[0]);
            execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        close(toChild[0]);
        close(fromChild[1]);
        in_ = toChild[1];
        out_ = fromChild[0];
        return true;
    }

    void Send(const std::string& line) {
        const std::string text = line + "\n";
        if (in_ >= 0 && write(in_, text.data(), text.size()) < 0) {
            // The engine is gone; the next read reports it.
        }
    }

    // Reads one line, waiting until the deadline. Returns false on timeout or end of output.
    bool ReadLine(std::string* line, Clock::time_point deadline) {
        for (;;) {
            const std::size_t end = buffer_.find('\n');
            if (end != std::string::npos) {
                *line = buffer_.substr(0, end);
                if (!line->empty() && line->back() == '\r') line->pop_back();
                buffer_.erase(0, end + 1);
                return true;
            }
            const long long left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now())
                    .count();
            if (left <= 0) return false;
            pollfd wait = {out_, POLLIN, 0};
            if (poll(&wait, 1, static_cast<int>(std::min(left, 1000LL))) <= 0) continue;
            char chunk[4096];
            const ssize_t got = read(out_, chunk, sizeof chunk);
            if (got <= 0) return false;
            buffer_.append(chunk, static_cast<std::size_t>(got));
        }
    }

    // Reads lines until one starts with word; false when the deadline passes first.
    bool WaitFor(const std::string& word, std::string* line, Clock::time_point deadline) {
        while (ReadLine(line, deadline))
            if (line->compare(0, word.size(), word) == 0) return true;
        return false;
    }

    void Close() {
        if (pid_ <= 0) return;
        Send("quit");
        close(in_);
        // Give it a moment to leave by itself, then make sure.
        for (int i = 0; i < 50 && waitpid(pid_, nullptr, WNOHANG) == 0; ++i)
            usleep(20000);
        if (waitpid(pid_, nullptr, WNOHANG) == 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        close(out_);
        pid_ = -1;
    }

  private:
    pid_t pid_ = -1;
    int in_ = -1, out_ = -1;
    std::string buffer_;
};

struct Player {
    std::string command;
    std::vector<std::pair<std::string, std::string>> options;
    std::string name;
    UciProcess process;
    int timeLosses = 0, illegalMoves = 0, moves = 0;
    long long totalMs = 0, longestMs = 0;
};

bool StartPlayer(Player& player) {
    if (!player.process.Start(player.command)) return false;
    std::string line;
    player.process.Send("uci");
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(10);
    while (player.process.ReadLine(&line, deadline)) {
        if (line.compare(0, 8, "id name ") == 0) player.name = line.substr(8);
        if (line == "uciok") break;
    }
    if (line != "uciok") return false;
    for (const auto& [name, value] : player.options)
        player.process.Send("setoption name " + name + " value " + value);
    player.process.Send("isready");
    return player.process.WaitFor("readyok", &line, Clock::now() + std::chrono::seconds(30));
}

// The coordinate text of a move ("e7e8q").
std::string Coordinates(Move move) {
    std::string text = {
        static_cast<char>('a' + (move.from & 7)), static_cast<char>('1' + (move.from >> 3)),
        static_cast<char>('a' + (move.to & 7)), static_cast<char>('1' + (move.to >> 3))};
    if (move.promotion != 0) text += velmora::LetterFromType(move.promotion);
    return text;
}

std::string SanText(const PositionValue& before, Move move) {
    char16_t buffer[velmora::kSanBufferSize];
    const int length = velmora::WriteSan(before, move, 0, {}, buffer);
    return std::string(buffer, buffer + length);
}

// Reads a coordinate move of the side to move and checks it with the core's rules. Returns
// false for anything that is not a legal move here.
bool ReadEngineMove(const PositionValue& position, const std::string& text, Move* move) {
    if (text.size() < 4 || text.size() > 5) return false;
    auto square = [&](std::size_t at) -> int {
        if (text[at] < 'a' || text[at] > 'h' || text[at + 1] < '1' || text[at + 1] > '8') return -1;
        return (text[at] - 'a') + 8 * (text[at + 1] - '1');
    };
    const int from = square(0), to = square(2);
    if (from < 0 || to < 0) return false;
    const velmora::PieceCode code = position.At(from);
    if (code == 0 || velmora::ColourOf(code) != position.sideToMove) return false;
    bool promotes = false;
    if (!velmora::IsLegalMove(position, static_cast<velmora::Square>(from),
                              static_cast<velmora::Square>(to), &promotes))
        return false;
    const int type = text.size() == 5 ? velmora::TypeFromLetter(text[4]) : 0;
    if (promotes != (type != 0)) return false;
    *move = {static_cast<velmora::Square>(from), static_cast<velmora::Square>(to),
             static_cast<std::uint8_t>(type)};
    return true;
}

// What identifies a position for repetition: squares, side, castling and an en-passant square
// only when a pawn stands ready to take there.
std::string RepetitionKey(const PositionValue& p) {
    std::string key(reinterpret_cast<const char*>(p.Squares()), 64);
    key += static_cast<char>(p.sideToMove);
    key += static_cast<char>(p.castleWhiteKing | p.castleWhiteQueen << 1 | p.castleBlackKing << 2 |
                             p.castleBlackQueen << 3);
    int ep = p.enPassant;
    if (ep < 64) {
        const int rank = p.sideToMove == velmora::kWhite ? 4 : 3;  // where the taking pawn stands
        const velmora::PieceCode pawn = p.sideToMove + velmora::kPawn;
        const int file = ep & 7;
        const bool ready = (file > 0 && p.At(8 * rank + file - 1) == pawn) ||
                           (file < 7 && p.At(8 * rank + file + 1) == pawn);
        if (!ready) ep = 255;
    }
    key += static_cast<char>(ep);
    return key;
}

// Neither side can mate: bare kings, a single minor piece, or one bishop each on squares of
// one colour.
bool InsufficientMaterial(const PositionValue& p) {
    int minors = 0, bishops[2] = {0, 0}, bishopColour[2] = {-1, -1};
    for (int s = 0; s < 64; ++s) {
        const int type = velmora::TypeOf(p.At(s));
        if (type == velmora::kPawn || type == velmora::kRook || type == velmora::kQueen)
            return false;
        if (type == velmora::kKnight || type == velmora::kBishop) ++minors;
        if (type == velmora::kBishop) {
            const int side = velmora::ColourOf(p.At(s)) == velmora::kWhite ? 0 : 1;
            ++bishops[side];
            bishopColour[side] = ((s & 7) + (s >> 3)) & 1;
        }
    }
    if (minors <= 1) return true;
    return minors == 2 && bishops[0] == 1 && bishops[1] == 1 && bishopColour[0] == bishopColour[1];
}

struct Opening {
    std::vector<Move> moves;
    std::string san;
};

// Collects distinct openings: the first plies moves of each game that replays cleanly.
std::vector<Opening> ReadOpenings(const std::vector<std::string>& files, int plies) {
    std::vector<Opening> openings;
    std::set<std::string> seen;
    for (const std::string& file : files) {
        std::ifstream in(file, std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(in)),
                               std::istreambuf_iterator<char>());
        for (const auto& game : velmora::bench::ScanMainLines(text)) {
            // Long enough to be a real game, from the initial position.
            if (game.notFromStart || static_cast<int>(game.moves.size()) < plies + 20) continue;
            PositionValue position;
            Opening opening;
            std::string key;
            bool ok = true;
            for (int k = 0; k < plies && ok; ++k) {
                const velmora::SanResolution read =
                    velmora::ReadSanMove(position, game.moves[k].c_str());
                ok = read.status == velmora::SanStatus::Ok;
                if (!ok) break;
                Move move = read.move;
                move.promotion = velmora::EffectivePromotion(position, move);
                opening.san += (k % 2 == 0 ? std::to_string(k / 2 + 1) + "." : "") +
                               SanText(position, move) + " ";
                key += Coordinates(move) + " ";
                opening.moves.push_back(move);
                velmora::PlayOnValue(position, move);
            }
            if (ok && velmora::GameEndOf(position) == velmora::GameEnd::None &&
                seen.insert(key).second)
                openings.push_back(std::move(opening));
        }
    }
    return openings;
}

struct GameResult {
    double whiteScore = 0.5;
    std::string reason;
    std::string movesText;  // SAN with numbers, for the PGN file
};

// Plays one game; the opening moves are played first. Returns false when an engine stopped
// answering altogether (the match cannot go on).
bool PlayGame(const Opening& opening, Player& white, Player& black, int moveTimeMs, int marginMs,
              GameResult* result) {
    PositionValue position;
    std::vector<std::string> played;
    std::map<std::string, int> occurrences;
    int quietPlies = 0;
    int ply = 0;
    auto record = [&](Move move, bool fromOpening) {
        const PositionValue before = position;
        const bool pawn = velmora::TypeOf(position.At(move.from)) == velmora::kPawn;
        const velmora::PlayedMove done = velmora::PlayOnValue(position, move);
        quietPlies =
            (pawn || done.effects.captured || done.effects.enPassantCapture) ? 0 : quietPlies + 1;
        if (quietPlies == 0) occurrences.clear();
        ++occurrences[RepetitionKey(position)];
        if (ply % 2 == 0) result->movesText += std::to_string(ply / 2 + 1) + ". ";
        result->movesText += SanText(before, move) + " ";
        if (fromOpening && ply + 1 == static_cast<int>(opening.moves.size()))
            result->movesText += "{end of opening} ";
        played.push_back(Coordinates(move));
        ++ply;
    };
    ++occurrences[RepetitionKey(position)];
    for (const Move& move : opening.moves)
        record(move, true);
    for (Player* player : {&white, &black}) {
        player->process.Send("ucinewgame");
        player->process.Send("isready");
        std::string line;
        if (!player->process.WaitFor("readyok", &line, Clock::now() + std::chrono::seconds(30)))
            return false;
    }

    for (;;) {
        const bool whiteToMove = position.sideToMove == velmora::kWhite;
        const velmora::GameEnd end = velmora::GameEndOf(position);
        if (end == velmora::GameEnd::Checkmate) {
            result->whiteScore = whiteToMove ? 0.0 : 1.0;
            result->reason = whiteToMove ? "black mates" : "white mates";
            return true;
        }
        if (end == velmora::GameEnd::Stalemate) return result->reason = "stalemate", true;
        if (occurrences[RepetitionKey(position)] >= 3)
            return result->reason = "threefold repetition", true;
        if (quietPlies >= 100) return result->reason = "fifty-move rule", true;
        if (InsufficientMaterial(position)) return result->reason = "insufficient material", true;

        Player& mover = whiteToMove ? white : black;
        std::string command = "position startpos moves";
        for (const std::string& move : played)
            command += " " + move;
        mover.process.Send(command);
        mover.process.Send("go movetime " + std::to_string(moveTimeMs));
        const Clock::time_point start = Clock::now();
        std::string line;
        const bool answered = mover.process.WaitFor(
            "bestmove", &line, start + std::chrono::milliseconds(moveTimeMs + marginMs));
        const long long took = MillisecondsSince(start);
        if (!answered) {
            ++mover.timeLosses;
            result->whiteScore = whiteToMove ? 0.0 : 1.0;
            result->reason = (whiteToMove ? "white" : "black") + std::string(" loses on time");
            // Get the engine back in step for the next game, or give up on it.
            mover.process.Send("stop");
            return mover.process.WaitFor("bestmove", &line,
                                         Clock::now() + std::chrono::seconds(10));
        }
        ++mover.moves;
        mover.totalMs += took;
        mover.longestMs = std::max(mover.longestMs, took);
        const std::string text = line.size() > 9 ? line.substr(9, line.find(' ', 9) - 9) : "";
        Move move;
        if (!ReadEngineMove(position, text, &move)) {
            ++mover.illegalMoves;
            result->whiteScore = whiteToMove ? 0.0 : 1.0;
            result->reason =
                (whiteToMove ? "white" : "black") + std::string(" plays an illegal move: ") + text;
            return true;
        }
        record(move, false);
    }
}

// The Elo difference that a score fraction means.
double EloFromScore(double score) {
    return -400.0 * std::log10(1.0 / score - 1.0);
}

}  // namespace

int main(int argc, char** argv) {
    signal(SIGPIPE, SIG_IGN);
    Player players[2];
    int engines = 0, games = 20, moveTimeMs = 100, plies = 8, marginMs = 200;
    unsigned seed = 1;
    std::string pgnPath;
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const bool hasValue = i + 1 < argc;
        if (arg == "--engine" && hasValue && engines < 2) {
            players[engines++].command = argv[++i];
        } else if (arg == "--option" && hasValue && engines > 0) {
            const std::string option = argv[++i];
            const std::size_t equals = option.find('=');
            players[engines - 1].options.emplace_back(
                option.substr(0, equals),
                equals == std::string::npos ? "" : option.substr(equals + 1));
        } else if (arg == "--games" && hasValue) {
            games = std::max(2, std::atoi(argv[++i]));
        } else if (arg == "--movetime" && hasValue) {
            moveTimeMs = std::max(1, std::atoi(argv[++i]));
        } else if (arg == "--plies" && hasValue) {
            plies = std::max(0, std::atoi(argv[++i]));
        } else if (arg == "--margin" && hasValue) {
            marginMs = std::max(0, std::atoi(argv[++i]));
        } else if (arg == "--seed" && hasValue) {
            seed = static_cast<unsigned>(std::atoi(argv[++i]));
        } else if (arg == "--pgn" && hasValue) {
            pgnPath = argv[++i];
        } else if (!arg.empty() && arg[0] != '-') {
            files.push_back(arg);
        } else {
            std::fprintf(stderr, "unknown or incomplete argument: %s\n", arg.c_str());
            return 2;
        }
    }
    if (engines != 2 || files.empty()) {
        std::fprintf(stderr,
                     "usage: %s --engine CMD [--option N=V]... --engine CMD [--option N=V]... "
                     "[--games N] [--movetime MS] [--plies N] [--margin MS] [--seed N] [--pgn OUT] "
                     "FILE.pgn...\n",
                     argv[0]);
        return 2;
    }

    std::vector<Opening> openings = ReadOpenings(files, plies);
    if (openings.empty()) {
        std::fprintf(stderr, "no openings of %d plies found in the files\n", plies);
        return 1;
    }
    std::mt19937 random(seed);
    std::shuffle(openings.begin(), openings.end(), random);
    std::printf("%zu distinct openings of %d plies; %d games at %d ms a move (margin %d ms)\n",
                openings.size(), plies, games, moveTimeMs, marginMs);

    for (Player& player : players) {
        if (!StartPlayer(player)) {
            std::fprintf(stderr, "engine did not start: %s\n", player.command.c_str());
            return 1;
        }
    }
    std::FILE* pgn = pgnPath.empty() ? nullptr : std::fopen(pgnPath.c_str(), "w");
    int wins = 0, losses = 0, draws = 0;  // of the first engine
    std::map<std::string, int> reasons;
    for (int game = 0; game < games; ++game) {
        const Opening& opening = openings[(game / 2) % openings.size()];
        // The first engine has white in even games, black in odd ones, on the same opening.
        const bool firstIsWhite = game % 2 == 0;
        Player& white = players[firstIsWhite ? 0 : 1];
        Player& black = players[firstIsWhite ? 1 : 0];
        GameResult result;
        if (!PlayGame(opening, white, black, moveTimeMs, marginMs, &result)) {
            std::fprintf(stderr, "an engine stopped answering in game %d; match abandoned\n",
                         game + 1);
            return 1;
        }
        const double firstScore = firstIsWhite ? result.whiteScore : 1.0 - result.whiteScore;
        (firstScore == 1.0 ? wins : firstScore == 0.0 ? losses : draws) += 1;
        ++reasons[result.reason];
        const char* resultText = result.whiteScore == 1.0   ? "1-0"
                                 : result.whiteScore == 0.0 ? "0-1"
                                                            : "1/2-1/2";
        std::printf("Game %d/%d: %s - %s %s (%s), opening %s\n", game + 1, games,
                    white.name.c_str(), black.name.c_str(), resultText, result.reason.c_str(),
                    opening.san.c_str());
        std::printf("  score of %s: +%d -%d =%d\n", players[0].name.c_str(), wins, losses, draws);
        std::fflush(stdout);
        if (pgn != nullptr) {
            std::fprintf(pgn,
                         "[Event \"Engine match, %d ms a move\"]\n[Round \"%d\"]\n[White "
                         "\"%s\"]\n[Black \"%s\"]\n"
                         "[Result \"%s\"]\n[Termination \"%s\"]\n\n%s%s\n\n",
                         moveTimeMs, game + 1, white.name.c_str(), black.name.c_str(), resultText,
                         result.reason.c_str(), result.movesText.c_str(), resultText);
        }
    }
    if (pgn != nullptr) std::fclose(pgn);

    const int total = wins + losses + draws;
    const double score = (wins + 0.5 * draws) / total;
    std::printf("\nScore of %s vs %s: +%d -%d =%d  (%.1f%%, %d games)\n", players[0].name.c_str(),
                players[1].name.c_str(), wins, losses, draws, 100.0 * score, total);
    // The Elo error margin from the spread of the game results: a 95% interval of the score,
    // turned into Elo at both ends.
    const double variance = (wins * std::pow(1.0 - score, 2) + draws * std::pow(0.5 - score, 2) +
                             losses * std::pow(0.0 - score, 2)) /
                            total;
    const double spread = 1.96 * std::sqrt(variance / total);
    if (score <= 0.0 || score >= 1.0) {
        std::printf("Elo difference: %s (no margin: every game went one way)\n",
                    score <= 0.0 ? "-inf" : "+inf");
    } else {
        const double low = std::max(score - spread, 1e-6),
                     high = std::min(score + spread, 1.0 - 1e-6);
        std::printf("Elo difference: %+.0f +/- %.0f (95%%)\n", EloFromScore(score),
                    (EloFromScore(high) - EloFromScore(low)) / 2.0);
    }
    for (const auto& [reason, count] : reasons)
        std::printf("  %3d x %s\n", count, reason.c_str());
    for (const Player& player : players) {
        std::printf(
            "%s: time losses %d, illegal moves %d, %d moves, %.0f ms a move on average, longest "
            "%lld ms\n",
            player.name.c_str(), player.timeLosses, player.illegalMoves, player.moves,
            player.moves > 0 ? static_cast<double>(player.totalMs) / player.moves : 0.0,
            player.longestMs);
    }
    return 0;
}
