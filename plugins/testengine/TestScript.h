// TestScript: what the scripted test engine does, read from the text file beside its library.
//
// One directive a line; blanks around words; '#' starts a comment line; blank lines are skipped.
//   version N                  interface version GetInfo reports (default 2)
//   name TEXT                  engine name GetInfo reports (default: the library's file name)
//   flags N                    GetInfo flags: 1 = coordinate moves, 0 = SAN (default 0)
//   null                       LoadEngine returns null
//   info D S N T MOVE [LINE]   search information sent before the next "move": depth, kN/s,
//                              nodes, milliseconds, a move text without blanks, and the rest of
//                              the line, where \t, \n, \r and \\ stand for tab, LF, CR and '\'
//   move TEXT                  the next move to answer, as SAN or coordinates (any text: an
//                              illegal one shows how the host refuses it)
//   show-info N                ShowInfo(N) once the engine starts
//   engine-name TEXT           SetEngineName(TEXT) once the engine starts
//   time-control A B C D E F G SetTimeControl with the seven numbers once the engine starts
//   game-over N CAPTION | TEXT GameOver(CAPTION, TEXT), sent twice, after the N-th answer
//   switch-sides N             SwitchSides after the N-th answer; it then plays the other colour
//   die-after N                the engine's thread ends after the N-th answer (0: at once) and
//                              IsAlive returns 0 from then on
//   hang                       never answers, and stays alive
//   delay MS                   waits MS milliseconds before each answer
// The script is 8-bit text of the system code page.
//
// The engine answers Go, and PlayMove when the move leaves its colour to move (play mode), with
// the next move; while analysing it sends the next entry's search information at the start and
// after each SetPosition or PlayMove instead. The callbacks tied to the start (ShowInfo,
// SetEngineName, SetTimeControl) come from its thread, so the host gets them once it is back in
// its message loop.
//
// The log ("<library name>.log", UTF-8, one line per call, appended): "LoadEngine" (or
// "LoadEngine null"), "Script error line N: TEXT", "GetInfo SIZE", "Start BLACK ANALYSE TEXT"
// (TEXT "null" without a position), "PlayMove TEXT", "SetPosition TEXT", "Go", "Stop",
// "SetAnalysis N", "SetWindow HANDLE" (decimal), "OnCommand WPARAM LPARAM", "Release".
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::plugin {

// One SearchInfo call.
struct ScriptedInfo {
    std::uint32_t depth = 0;
    std::uint32_t speed = 0;
    std::uint32_t nodes = 0;
    std::uint32_t milliseconds = 0;
    std::string move;  // 8-bit, passed as it is
    std::string line;  // 8-bit, escapes resolved
};

// One answer: the search information sent first, then the move.
struct ScriptedMove {
    std::vector<ScriptedInfo> infos;
    std::u16string text;
};

struct TestScript {
    std::uint32_t version = 2;
    std::optional<std::u16string> name;
    std::uint32_t flags = 0;
    bool loadNull = false;
    std::vector<ScriptedMove> moves;
    std::optional<int> showInfo;
    std::optional<std::u16string> engineName;
    std::optional<std::array<std::int32_t, 7>> timeControl;
    // Answers are counted from 1; -1 means never.
    int gameOverAfter = -1;
    std::u16string gameOverCaption;
    std::u16string gameOverText;
    int switchSidesAfter = -1;
    int dieAfter = -1;
    bool hang = false;
    int delayMilliseconds = 0;
    // "line N: ..." for each line that could not be read; those lines are skipped.
    std::vector<std::string> errors;
};

// Reads a script. Lines that cannot be read are reported in errors and skipped; info lines
// after the last move are kept nowhere (reported as an error too).
TestScript ParseTestScript(std::string_view text);

}  // namespace velmora::plugin
