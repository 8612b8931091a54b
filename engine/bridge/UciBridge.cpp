// UciBridge: the lines sent to a UCI engine and the reading of its answers.
#include "engine/bridge/UciBridge.h"

#include <charconv>
#include <sstream>

namespace velmora::engine {
namespace {

std::vector<std::string> Words(std::string_view line) {
    std::istringstream stream{std::string(line)};
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

template <typename Number>
bool ReadNumber(const std::string& word, Number* value) {
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, *value);
    return error == std::errc() && stop == end;
}

// Whether a word is a move in coordinates: "e2e4", "e7e8q".
bool IsMoveText(const std::string& word) {
    if (word.size() != 4 && word.size() != 5) return false;
    for (int k = 0; k < 4; ++k) {
        const char c = word[static_cast<std::size_t>(k)];
        if (k % 2 == 0 ? (c < 'a' || c > 'h') : (c < '1' || c > '8')) return false;
    }
    return word.size() == 4 || std::string_view("qrbnQRBN").find(word[4]) != std::string::npos;
}

// The words of an "info" line that take one number after them.
bool TakesNumber(const std::string& word) {
    static const char* const kNumbered[] = {"depth",   "seldepth",       "time",     "nodes",
                                            "multipv", "currmovenumber", "hashfull", "nps",
                                            "tbhits",  "sbhits",         "cpuload"};
    for (const char* numbered : kNumbered)
        if (word == numbered) return true;
    return false;
}

}  // namespace

std::string PositionLine(const std::string& fen, const std::vector<std::string>& moves) {
    std::string line = fen.empty() ? "position startpos" : "position fen " + fen;
    if (!moves.empty()) line += " moves";
    for (const std::string& move : moves)
        line += ' ' + move;
    return line;
}

std::string GoLine(const SearchLimits& limits) {
    if (limits.infinite) return "go infinite";
    if (limits.moveTimeMs > 0) return "go movetime " + std::to_string(limits.moveTimeMs);
    std::string line = "go wtime " + std::to_string(limits.timeMs[0]) + " btime " +
                       std::to_string(limits.timeMs[1]) + " winc " +
                       std::to_string(limits.incrementMs[0]) + " binc " +
                       std::to_string(limits.incrementMs[1]);
    if (limits.movesToGo > 0) line += " movestogo " + std::to_string(limits.movesToGo);
    return line;
}

// Reads into a copy and keeps it only for the first principal line: with several ("multipv"),
// the others would overwrite the best one's numbers.
bool ReadInfoLine(std::string_view line, SearchReport* report) {
    const std::vector<std::string> words = Words(line);
    if (words.empty() || words[0] != "info") return false;
    SearchReport read = *report;
    bool scored = false;
    bool speedGiven = false;
    int lineNumber = 1;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "string") break;  // free text up to the end of the line
        if (word == "score" && i + 2 < words.size() &&
            (words[i + 1] == "cp" || words[i + 1] == "mate") &&
            ReadNumber(words[i + 2], &read.score)) {
            read.mate = words[i + 1] == "mate";
            scored = true;
            i += 2;
        } else if (word == "pv") {
            read.line.clear();
            while (i + 1 < words.size() && IsMoveText(words[i + 1]))
                read.line.push_back(words[++i]);
        } else if (word == "currmove" || word == "refutation" || word == "currline") {
            // Moves not shown; "currline" may start with a processor number.
            std::uint32_t number = 0;
            while (i + 1 < words.size() &&
                   (IsMoveText(words[i + 1]) || ReadNumber(words[i + 1], &number)))
                ++i;
        } else if (TakesNumber(word) && i + 1 < words.size()) {
            std::int64_t value = 0;
            if (!ReadNumber(words[i + 1], &value)) continue;
            ++i;
            if (word == "depth") read.depth = static_cast<int>(value);
            if (word == "time") read.timeMs = value;
            if (word == "nodes") read.nodes = static_cast<std::uint64_t>(value);
            if (word == "nps") read.nodesPerSecond = static_cast<std::uint64_t>(value);
            if (word == "multipv") lineNumber = static_cast<int>(value);
            speedGiven = speedGiven || word == "nps";
        }
    }
    if (lineNumber != 1) return false;
    if (!speedGiven && read.timeMs > 0)
        read.nodesPerSecond = read.nodes * 1000 / static_cast<std::uint64_t>(read.timeMs);
    *report = read;
    return scored;
}

void UciBridge::BeginHandshake(std::vector<UciOption> options) {
    options_ = std::move(options);
    handshaking_ = true;
    Send("uci");
}

void UciBridge::NewGame() {
    Stop(true);
    Send("ucinewgame");
    Send("isready");
    awaitingReady_ = true;
}

void UciBridge::Think(const std::string& fen, const std::vector<std::string>& moves,
                      const SearchLimits& limits) {
    waiting_ = Search{PositionLine(fen, moves), GoLine(limits)};
    if (searching_) {
        wanted_ = false;
        if (!stopSent_) Send("stop");
        stopSent_ = true;
    }
    SendWaiting();
}

void UciBridge::Stop(bool abandon) {
    if (abandon) {
        waiting_.reset();
        wanted_ = false;
    }
    if (searching_ && !stopSent_) {
        Send("stop");
        stopSent_ = true;
    }
}

void UciBridge::Quit() {
    Stop(true);
    Send("quit");
}

void UciBridge::SendWaiting() {
    if (!waiting_ || searching_ || awaitingReady_ || !ready_) return;
    Send(waiting_->position);
    Send(waiting_->go);
    waiting_.reset();
    searching_ = true;
    stopSent_ = false;
    wanted_ = true;
    report_ = SearchReport();
}

// Answers the handshake, passes on the reports and the move of the search that is wanted, and
// sends a waiting search once the engine is free. Lines out of turn are dropped.
void UciBridge::HandleLine(std::string_view line) {
    const std::vector<std::string> words = Words(line);
    if (words.empty()) return;
    const std::string& command = words[0];
    if (command == "id" && words.size() > 2 && words[1] == "name") {
        const std::size_t at = line.find("name");
        std::string_view name = line.substr(at + 4);
        while (!name.empty() && (name.front() == ' ' || name.front() == '\t'))
            name.remove_prefix(1);
        while (!name.empty() && (name.back() == ' ' || name.back() == '\t'))
            name.remove_suffix(1);
        name_ = std::string(name);
    } else if (command == "uciok" && handshaking_ && !awaitingReady_) {
        for (const auto& [option, value] : options_)
            Send("setoption name " + option + " value " + value);
        Send("isready");
        awaitingReady_ = true;
    } else if (command == "readyok" && awaitingReady_) {
        awaitingReady_ = false;
        if (handshaking_) ready_ = true;
        handshaking_ = false;
        SendWaiting();
    } else if (command == "info") {
        if (searching_ && wanted_ && ReadInfoLine(line, &report_)) listener_.OnReport(report_);
    } else if (command == "bestmove" && searching_) {
        const bool wanted = wanted_;
        searching_ = false;
        stopSent_ = false;
        wanted_ = false;
        SendWaiting();
        if (!wanted) return;
        std::string move = words.size() > 1 ? words[1] : std::string();
        if (move == "(none)" || move == "0000") move.clear();
        listener_.OnBestMove(move);
    }
}

}  // namespace velmora::engine
