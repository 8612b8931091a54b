// UciSession: commands parsed by words, replies formatted as the protocol has them.
#include "engine/uci/UciSession.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <sstream>

namespace velmora::engine {

namespace {

std::vector<std::string_view> Words(std::string_view line) {
    std::vector<std::string_view> words;
    std::size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && std::isspace(static_cast<unsigned char>(line[i])))
            ++i;
        const std::size_t start = i;
        while (i < line.size() && !std::isspace(static_cast<unsigned char>(line[i])))
            ++i;
        if (i > start) words.push_back(line.substr(start, i - start));
    }
    return words;
}

template <typename Number>
bool ReadNumber(std::string_view word, Number* value) {
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, *value);
    return error == std::errc() && stop == end;
}

// The words after the command word, as one view.
std::string_view Rest(std::string_view line, std::string_view command) {
    const std::size_t at = line.find(command);
    return at == std::string_view::npos ? std::string_view() : line.substr(at + command.size());
}

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

}  // namespace

bool ParseGoLimits(std::string_view line, SearchLimits* limits) {
    const std::vector<std::string_view> words = Words(line);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (word == "infinite") {
            limits->infinite = true;
            continue;
        }
        int* target = word == "wtime"       ? &limits->timeMs[0]
                      : word == "btime"     ? &limits->timeMs[1]
                      : word == "winc"      ? &limits->incrementMs[0]
                      : word == "binc"      ? &limits->incrementMs[1]
                      : word == "movestogo" ? &limits->movesToGo
                      : word == "movetime"  ? &limits->moveTimeMs
                      : word == "depth"     ? &limits->depth
                                            : nullptr;
        if (word == "nodes") {
            if (i + 1 >= words.size() || !ReadNumber(words[++i], &limits->nodes)) return false;
        } else if (target != nullptr) {
            if (i + 1 >= words.size() || !ReadNumber(words[++i], target)) return false;
            // A GUI may send a clock already run below zero; it means no time left.
            if ((word == "wtime" || word == "btime") && *target < 0) *target = 0;
        }
    }
    return true;
}

std::string InfoLine(const SearchInfo& info) {
    std::ostringstream line;
    line << "info depth " << info.depth << " seldepth " << info.selectiveDepth << " score ";
    if (IsMateScore(info.score)) {
        line << "mate " << MateInMoves(info.score);
    } else {
        line << "cp " << info.score;
    }
    line << " nodes " << info.nodes << " nps " << info.nodesPerSecond << " time " << info.timeMs
         << " hashfull " << info.hashPermille << " pv";
    for (Move move : info.pv)
        line << ' ' << MoveText(move);
    return line.str();
}

UciSession::UciSession(Engine& engine, Writer writer)
    : engine_(engine), writer_(std::move(writer)) {}

void UciSession::Send(const std::string& line) {
    std::lock_guard<std::mutex> lock(writing_);
    writer_(line);
}

bool UciSession::HandleLine(std::string_view line) {
    const std::vector<std::string_view> words = Words(line);
    if (words.empty()) return true;
    const std::string_view command = words[0];
    if (command == "uci") {
        Send("id name Velmora");
        Send("id author the Velmora developers");
        Send("option name Hash type spin default " +
             std::to_string(TranspositionTable::kDefaultMegabytes) + " min 1 max 1024");
        Send("option name Move Overhead type spin default 30 min 0 max 5000");
        Send("option name Clear Hash type button");
        Send("uciok");
    } else if (command == "isready") {
        Send("readyok");
    } else if (command == "ucinewgame") {
        engine_.NewGame();
    } else if (command == "setoption") {
        HandleSetOption(Rest(line, "setoption"));
    } else if (command == "position") {
        HandlePosition(Rest(line, "position"));
    } else if (command == "go") {
        HandleGo(Rest(line, "go"));
    } else if (command == "stop") {
        engine_.Stop();
    } else if (command == "quit") {
        engine_.Stop();
        engine_.Wait();
        return false;
    } else if (command == "d") {
        // Not part of the protocol: shows the position, for a person at the console.
        Send(engine_.CurrentBoard().Fen());
    }
    return true;
}

void UciSession::HandlePosition(std::string_view arguments) {
    const std::vector<std::string_view> words = Words(arguments);
    if (words.empty()) return;
    std::string fen;
    std::size_t i = 1;
    if (words[0] == "startpos") {
        fen = kStartFen;
    } else if (words[0] == "fen") {
        for (; i < words.size() && words[i] != "moves"; ++i)
            fen += std::string(words[i]) + ' ';
    } else {
        return;
    }
    std::vector<std::string> moves;
    if (i < words.size() && words[i] == "moves") {
        for (++i; i < words.size(); ++i)
            moves.emplace_back(words[i]);
    }
    if (!engine_.SetPosition(fen, moves))
        Send("info string illegal position or move: " + std::string(arguments));
}

void UciSession::HandleSetOption(std::string_view arguments) {
    // "name <words> [value <words>]": option names may hold blanks.
    const std::vector<std::string_view> words = Words(arguments);
    std::string name, value;
    std::string* into = nullptr;
    for (std::string_view word : words) {
        if (word == "name") {
            into = &name;
        } else if (word == "value") {
            into = &value;
        } else if (into != nullptr) {
            if (!into->empty()) *into += ' ';
            *into += word;
        }
    }
    const std::string option = Lower(name);
    int number = 0;
    if (option == "hash" && ReadNumber(std::string_view(value), &number)) {
        engine_.SetHashMegabytes(number);
    } else if (option == "move overhead" && ReadNumber(std::string_view(value), &number)) {
        overheadMs_ = std::clamp(number, 0, 5000);
    } else if (option == "clear hash") {
        engine_.NewGame();
    } else {
        Send("info string unknown option " + name);
    }
}

void UciSession::HandleGo(std::string_view arguments) {
    SearchLimits limits;
    limits.overheadMs = overheadMs_;
    if (!ParseGoLimits(arguments, &limits)) Send("info string unreadable go parameters");
    engine_.Go(
        limits, [this](const SearchInfo& info) { Send(InfoLine(info)); },
        [this](Move best, Move ponder, const SearchInfo&) {
            std::string line = "bestmove " + MoveText(best);
            if (!ponder.IsNone()) line += " ponder " + MoveText(ponder);
            Send(line);
        });
}

}  // namespace velmora::engine
