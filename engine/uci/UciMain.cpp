// velmora-engine: the Velmora engine as a UCI program on standard input and output.
#include <cstdio>
#include <iostream>
#include <string>

#include "engine/uci/UciSession.h"

int main() {
    // Lines are read on this thread while the engine searches on its own, so "stop" is
    // heard during "go infinite".
    velmora::engine::Engine engine;
    velmora::engine::UciSession session(engine, [](const std::string& line) {
        std::fwrite(line.data(), 1, line.size(), stdout);
        std::fputc('\n', stdout);
        std::fflush(stdout);
    });
    std::string line;
    while (std::getline(std::cin, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!session.HandleLine(line)) return 0;
    }
    // End of input counts as "quit".
    session.HandleLine("quit");
    return 0;
}
