// Process: another program run with its standard input and output connected to this one.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/File.h"

namespace velmora::platform {

// A running child program. Its output arrives line by line on a reader thread that belongs to
// the object. Destroying the object kills the program if it still runs and waits for the
// reader thread, so the handlers must not destroy the object themselves.
class Process {
  public:
    virtual ~Process() = default;
    // Writes line and a line feed to the program's input. Returns false once the program no
    // longer reads it.
    virtual bool WriteLine(std::string_view line) = 0;
    // Whether the program is still running.
    virtual bool Running() = 0;
    // Waits at most milliseconds for the program to end; returns true when it has ended.
    virtual bool WaitForExit(int milliseconds) = 0;
    // Ends the program at once and waits until it is gone.
    virtual void Kill() = 0;
};

struct ProcessStart {
    // Full path of the program file.
    std::u16string program;
    // The arguments as one text: split at blanks, double quotes keep blanks inside one.
    std::u16string arguments;
    // The folder the program starts in; empty keeps this program's.
    std::u16string folder;
    // Called on the reader thread with each line of output, without its line end.
    std::function<void(const std::string& line)> onLine;
    // Called once on the reader thread when the output has ended (the program closed it or
    // ended).
    std::function<void()> onEnd;
};

// Starts the program. Returns null with *error set (a system code) when it cannot be started.
std::unique_ptr<Process> StartProcess(const ProcessStart& start, ErrorCode* error);

// Cuts a program's output into lines: bytes go in as they arrive, and each complete line goes
// to the handler without its line end (LF or CR LF).
class OutputLines {
  public:
    explicit OutputLines(std::function<void(const std::string& line)> handler)
        : handler_(std::move(handler)) {}
    void Add(const char* bytes, std::size_t count);
    // Hands on what is left after the last line end, once the output has ended.
    void Finish();

  private:
    std::function<void(const std::string& line)> handler_;
    std::string pending_;
};

// Splits an argument text at blanks; a double-quoted part keeps its blanks (the quotes go).
std::vector<std::u16string> SplitArguments(std::u16string_view arguments);

}  // namespace velmora::platform
