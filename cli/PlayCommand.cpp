// velmora-pgn play: drives the rules from a shell, one SAN move per argument.
#include <memory>

#include "cli/Commands.h"
#include "game/Position.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"

namespace velmora::cli {

const char kPlayUsage[] =
    "Usage: velmora-pgn play [--from \"POSITION TEXT\"] SAN...\n"
    "Plays the moves in order from the initial position, or from the position text given\n"
    "with --from, and prints the start position's text, then one line per move: the move\n"
    "with its number, a tab, and the position text after it.\n";

namespace {

void PrintPositionText(std::ostream& out, const Position& position) {
    char16_t text[Position::kTextBufferSize];
    int length = position.WriteText(text);
    Print(out, std::u16string_view(text, length));
}

}  // namespace

int RunPlay(const Arguments& args, std::ostream& out, std::ostream& err) {
    const std::u16string* fromText = nullptr;
    std::vector<const std::u16string*> moves;
    bool optionsDone = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::u16string& arg = args[i];
        if (!optionsDone && arg == u"--help") {
            out << kPlayUsage;
            return kExitOk;
        }
        if (!optionsDone && arg == u"--from" && i + 1 < args.size() && fromText == nullptr) {
            fromText = &args[++i];
        } else if (!optionsDone && arg == u"--") {
            optionsDone = true;
        } else if (!optionsDone && arg.size() > 1 && arg[0] == u'-') {
            err << kPlayUsage;
            return kExitUsage;
        } else {
            moves.push_back(&arg);
        }
    }

    auto start = std::make_unique<Position>();
    if (fromText != nullptr && !start->SetFromText(fromText->c_str())) {
        err << "Invalid initial position\n";
        return kExitFailed;
    }
    PrintPositionText(out, *start);
    out << '\n';

    Position* current = start.get();
    for (const std::u16string* move : moves) {
        Position* next = ReadSan(current, move->c_str());
        if (next == nullptr) {
            err << "Illegal move : ";
            Print(err, *move);
            err << '\n';
            return kExitFailed;
        }
        char16_t san[kSanBufferSize];
        int length = WriteSan(next->ArrivalNode(), san, {.withNumber = true});
        Print(out, std::u16string_view(san, length));
        out << '\t';
        PrintPositionText(out, *next);
        out << '\n';
        current = next;
    }
    return kExitOk;
}

}  // namespace velmora::cli
