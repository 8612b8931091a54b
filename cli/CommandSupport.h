// What the PGN subcommands share: messages and progress on standard error, summary lines.
#pragma once

#include <chrono>
#include <ostream>
#include <string>

#include "cli/Commands.h"
#include "game/GameRow.h"
#include "game/UserMessages.h"
#include "platform/File.h"

namespace velmora::cli {

// While it lives, the messages the core would show in a message box are printed as
// "caption: text" on err.
class StreamMessages final : public UserMessages {
  public:
    explicit StreamMessages(std::ostream& err);
    ~StreamMessages() override;
    int Show(const std::u16string& text, const std::u16string& caption, MessageIcon,
             MessageButtons buttons, MessageOwner) override;
    // "Unable to open file: reason (path)".
    void ShowUnopenable(const std::u16string& path, platform::ErrorCode error);

  private:
    std::ostream& err_;
    UserMessages* previous_;
};

// Shows how far a long job has got, on standard error when it is a terminal, at most a few
// times a second; the line is wiped when the job ends.
class Progress {
  public:
    Progress(std::ostream& err, const std::u16string& label);
    ~Progress();
    void Update(const char* what, long long value);
    void SetLabel(const std::u16string& label) { label_ = label; }

  private:
    std::ostream& err_;
    std::u16string label_;
    bool enabled_;
    bool shown_ = false;
    std::chrono::steady_clock::time_point last_{};
};

// Appends the fields of a game's list line after its number: offset, White, Black, result,
// Date, Event, Round, Site, ECO and start text, tab-separated, in UTF-8.
void AppendRow(std::string& line, const GameRow& row);

// Prints usage on out and returns true when args hold "--help".
bool WantsHelp(const Arguments& args, const char* usage, std::ostream& out);

}  // namespace velmora::cli
