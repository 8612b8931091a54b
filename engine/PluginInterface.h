// PluginInterface: the binary interface between the program and an engine library: the
// information record, the engine object the library returns, the host's callbacks, and the
// entry point "LoadEngine". The slot order of both classes is fixed: libraries built apart
// from the program call through it.
#pragma once

#include <cstdint>

#if defined(_WIN32)
#define VELMORA_PLUGIN_EXPORT extern "C" __declspec(dllexport)
#else
#define VELMORA_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace velmora::plugin {

// The interface version an engine must report.
constexpr std::uint32_t kInterfaceVersion = 2;
// Bit 0 of the flags: the engine reads and writes moves as coordinates ("e2e4", "e7e8q")
// instead of SAN.
constexpr std::uint32_t kCoordinateMoves = 1;
// The size the host puts in the record before asking for it.
constexpr std::uint32_t kEngineInfoSize = 76;

// What an engine tells about itself. Wide texts are UTF-16.
struct EngineInfo {
    std::uint32_t size;
    std::uint32_t version;
    std::uint32_t flags;
    char16_t name[32];
};
static_assert(sizeof(EngineInfo) == kEngineInfoSize);

// A window handle of the system, passed through unchanged (an HWND on Windows).
using WindowHandle = void*;
// A menu handle of the system (an HMENU on Windows).
using MenuHandle = void*;

// What the host offers the engine. Calls may come from any thread of the engine; the host
// passes them to its window by sent messages, so the caller waits until they are handled.
// No destructor in the table: the host owns this object.
class HostCallbacks {
  public:
    // The engine's move, as SAN or coordinates.
    virtual void MovePlayed(const char16_t* move) = 0;
    // A fatal error, shown in a box.
    virtual void FatalError(const char16_t* text) = 0;
    // The game is over: caption becomes the game's result tag, text is shown under it.
    virtual void GameOver(const char16_t* caption, const char16_t* text) = 0;
    // The engine's name, written into the tag of the colour it plays.
    virtual void SetEngineName(const char16_t* name) = 0;
    // The engine takes the other colour.
    virtual void SwitchSides() = 0;
    // 1 shows the search information in place of the comment pane, 0 hides it.
    virtual void ShowInfo(int show) = 0;
    // The time control, in the clock's order; times in seconds.
    virtual void SetTimeControl(std::int32_t timePerMove, std::int32_t firstMoves,
                                std::int32_t firstTime, std::int32_t secondMoves,
                                std::int32_t secondTime, std::int32_t thirdTime,
                                std::int32_t increment) = 0;
    // Search progress: depth, thousands of nodes per second, total nodes, elapsed
    // milliseconds; move and line are 8-bit texts of the system code page.
    virtual void SearchInfo(std::uint32_t depth, std::uint32_t speed, std::uint32_t nodes,
                            std::uint32_t milliseconds, const char* move, const char* line) = 0;
    // The clock's remaining times in milliseconds and the moves to the next time control.
    virtual void GetClockTimes(std::int32_t* whiteMilliseconds, std::int32_t* blackMilliseconds,
                               std::int32_t* movesToGo) = 0;

  protected:
    ~HostCallbacks() = default;
};

// The engine object a library returns. No destructor in the table: Release destroys it.
class Engine {
  public:
    // Fills the record; the host has set its size.
    virtual void GetInfo(EngineInfo* info) = 0;
    // Begins a game (analyse 0) or an analysis (analyse 1). position is a position text, or
    // null for the standard initial position.
    virtual void Start(int enginePlaysBlack, int analyse, const char16_t* position) = 0;
    // The game window closes: finish thinking.
    virtual void Stop() = 0;
    virtual void Release() = 0;
    // The opponent's move, as SAN or coordinates.
    virtual void PlayMove(const char16_t* move) = 0;
    virtual void SetWindow(WindowHandle window) = 0;
    // A menu the game window offers as the engine's, or null.
    virtual MenuHandle GetMenu() = 0;
    // A command of the game window it did not handle itself; returns 0 when the engine did
    // not handle it either.
    virtual std::intptr_t OnCommand(WindowHandle window, std::uintptr_t wParam,
                                    std::intptr_t lParam) = 0;
    virtual void SetPosition(const char16_t* position) = 0;
    // Start thinking on the current position.
    virtual void Go() = 0;
    // Non-zero while the engine runs.
    virtual int IsAlive() = 0;
    // 1 after an analysis start, 0 after a play start.
    virtual void SetAnalysis(int analyse) = 0;

  protected:
    ~Engine() = default;
};

// The entry point a library exports under the name "LoadEngine": null when the engine cannot
// start.
using LoadEngineFunction = Engine* (*)(HostCallbacks* host);
constexpr const char* kEntryPointName = "LoadEngine";

}  // namespace velmora::plugin
