// PgnMainLines: a crude scanner that pulls each game's main-line SAN moves out of PGN text,
// good enough for benchmark input (the benchmarks share it).
#pragma once

#include <cstring>
#include <string>
#include <vector>

namespace velmora::bench {

struct ScannedGame {
    std::vector<std::string> moves;
    // The game starts from a set-up position or is a variant (FEN, SetUp or Variant tag):
    // its moves do not follow from the initial position.
    bool notFromStart = false;
};

// Splits PGN text into games, each a list of main-line SAN tokens. Tags, comments,
// variations, glyphs, move numbers and results are skipped.
inline std::vector<ScannedGame> ScanMainLines(const std::string& text) {
    std::vector<ScannedGame> games(1);
    std::size_t i = 0;
    int depth = 0;
    bool lineStart = true;
    while (i < text.size()) {
        char c = text[i];
        if (lineStart && c == '[') {
            if (!games.back().moves.empty()) games.emplace_back();
            if (text.compare(i, 5, "[FEN ") == 0 || text.compare(i, 7, "[SetUp ") == 0 ||
                text.compare(i, 9, "[Variant ") == 0) {
                games.back().notFromStart = true;
            }
            while (i < text.size() && text[i] != '\n')
                ++i;
            continue;
        }
        lineStart = c == '\n';
        if (c == '{') {
            while (i < text.size() && text[i] != '}')
                ++i;
            ++i;
        } else if (c == ';') {
            while (i < text.size() && text[i] != '\n')
                ++i;
        } else if (c == '(') {
            ++depth, ++i;
        } else if (c == ')') {
            --depth, ++i;
        } else if (c == ' ' || c == '\n' || c == '\r' || c == '\t') {
            ++i;
        } else {
            std::size_t start = i;
            while (i < text.size() && !std::strchr(" \r\n\t(){};", text[i]))
                ++i;
            std::string token = text.substr(start, i - start);
            std::size_t skip = token.find_first_not_of("0123456789.");
            if (depth > 0 || token[0] == '$' || token == "*" || token == "1-0" || token == "0-1" ||
                token == "1/2-1/2" || skip == std::string::npos) {
                continue;
            }
            games.back().moves.push_back(token.substr(skip));
        }
    }
    return games;
}

}  // namespace velmora::bench
