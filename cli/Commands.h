// The subcommands of velmora-pgn, each a function over its arguments and two text streams.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace velmora::cli {

using Arguments = std::vector<std::u16string>;

// Exit codes shared by every subcommand.
constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

// Writes UTF-16 text to a byte stream as UTF-8.
void Print(std::ostream& stream, std::u16string_view text);
// Appends UTF-16 text to out as UTF-8.
void AppendUtf8(std::string& out, std::u16string_view text);

// velmora-pgn play [--from "POSITION TEXT"] SAN...: plays the moves and prints each with the
// position text after it. args holds the words after "play".
int RunPlay(const Arguments& args, std::ostream& out, std::ostream& err);
extern const char kPlayUsage[];

// The PGN file commands; games are numbered from 1 in file order.
int RunList(const Arguments& args, std::ostream& out, std::ostream& err);
int RunShow(const Arguments& args, std::ostream& out, std::ostream& err);
int RunFens(const Arguments& args, std::ostream& out, std::ostream& err);
int RunCheck(const Arguments& args, std::ostream& out, std::ostream& err);
int RunAppend(const Arguments& args, std::ostream& out, std::ostream& err);
int RunResave(const Arguments& args, std::ostream& out, std::ostream& err);
extern const char kListUsage[];
extern const char kShowUsage[];
extern const char kFensUsage[];
extern const char kCheckUsage[];
extern const char kAppendUsage[];
extern const char kResaveUsage[];

// velmora-pgn search [criteria] FILE...: the games of the files that meet the criteria.
int RunSearch(const Arguments& args, std::ostream& out, std::ostream& err);
extern const char kSearchUsage[];

}  // namespace velmora::cli
