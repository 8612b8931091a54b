// velmora-pgn: the command-line tool over Velmora's chess and PGN core.
#include <cstring>
#include <iostream>

#include "cli/Commands.h"
#include "platform/CodePage.h"
#include "platform/Console.h"

namespace velmora::cli {

namespace {

struct Command {
    const char16_t* name;
    int (*run)(const Arguments&, std::ostream&, std::ostream&);
    const char* usage;
};

const Command kCommands[] = {
    {u"play", RunPlay, kPlayUsage},       {u"list", RunList, kListUsage},
    {u"show", RunShow, kShowUsage},       {u"fens", RunFens, kFensUsage},
    {u"check", RunCheck, kCheckUsage},    {u"append", RunAppend, kAppendUsage},
    {u"resave", RunResave, kResaveUsage}, {u"search", RunSearch, kSearchUsage},
};

void PrintUsage(std::ostream& stream) {
    stream << "Usage: velmora-pgn COMMAND [ARGUMENTS]\n"
              "Commands:\n";
    for (const Command& command : kCommands) {
        const char* line = std::strchr(command.usage, ':') + 2;
        stream << "  " << std::string(line, std::strchr(line, '\n') - line) << '\n';
    }
    stream << "Run \"velmora-pgn COMMAND --help\" for the details of one command.\n";
}

}  // namespace

}  // namespace velmora::cli

int main(int argc, char** argv) {
    using namespace velmora::cli;
    velmora::platform::UseBinaryStandardStreams();
    // Nothing here writes through C's stdio, so the streams may buffer on their own.
    std::ios::sync_with_stdio(false);
    Arguments args = velmora::platform::CommandLineArguments(argc, argv);
    if (args.size() < 2) {
        PrintUsage(std::cerr);
        return kExitUsage;
    }
    if (args[1] == u"--help" || args[1] == u"-h") {
        PrintUsage(std::cout);
        return kExitOk;
    }
    for (const Command& command : kCommands) {
        if (args[1] == command.name) {
            Arguments rest(args.begin() + 2, args.end());
            int code = command.run(rest, std::cout, std::cerr);
            std::cout.flush();
            return code;
        }
    }
    std::cerr << "Unknown command: " << velmora::platform::WideToUtf8(args[1]) << '\n';
    PrintUsage(std::cerr);
    return kExitUsage;
}
