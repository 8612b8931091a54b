// velmora-uci-script: a stand-in UCI engine for the tests, playing a script.
//
// Usage: velmora-uci-script SCRIPT [LOG]. The script has one step per line:
//   < TEXT    wait for an input line equal to TEXT (TEXT ending in '*': starting with the rest);
//             other lines are passed over
//   > TEXT    write TEXT as a line of output
//   exit      end at once
//   silent    never answer again: read and drop the input until it ends
// After the last step the program reads its input until "quit" or its end. With LOG, its
// process id ("pid N") and then every input line are written to that file as they come.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>

#if defined(_WIN32)
#include <process.h>
#define VELMORA_PROCESS_ID _getpid()
#else
#include <unistd.h>
#define VELMORA_PROCESS_ID getpid()
#endif

namespace {

std::ofstream logFile;

bool ReadLine(std::string* line) {
    if (!std::getline(std::cin, *line)) return false;
    if (!line->empty() && line->back() == '\r') line->pop_back();
    if (logFile.is_open()) logFile << *line << std::endl;
    return true;
}

bool Matches(const std::string& pattern, const std::string& line) {
    if (!pattern.empty() && pattern.back() == '*')
        return line.compare(0, pattern.size() - 1, pattern, 0, pattern.size() - 1) == 0;
    return line == pattern;
}

}  // namespace

int main(int argc, char** argv) {
    std::ifstream script(argc > 1 ? argv[1] : "");
    if (!script) {
        std::fprintf(stderr, "usage: velmora-uci-script SCRIPT [LOG], with a script it can read\n");
        return 2;
    }
    if (argc > 2) {
        logFile.open(argv[2], std::ios::app);
        logFile << "pid " << VELMORA_PROCESS_ID << std::endl;
    }
    std::string step, line;
    while (std::getline(script, step)) {
        if (!step.empty() && step.back() == '\r') step.pop_back();
        if (step.rfind("< ", 0) == 0) {
            do {
                if (!ReadLine(&line)) return 0;
            } while (!Matches(step.substr(2), line));
        } else if (step.rfind("> ", 0) == 0) {
            std::cout << step.substr(2) << std::endl;
        } else if (step == "exit") {
            return 0;
        } else if (step == "silent") {
            while (ReadLine(&line)) {
            }
            return 0;
        } else {
            std::fprintf(stderr, "velmora-uci-script: unknown step: %s\n", step.c_str());
            return 2;
        }
    }
    while (ReadLine(&line) && line != "quit") {
    }
    return 0;
}
