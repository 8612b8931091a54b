// What the PGN subcommands share: messages and progress on standard error, summary lines.
#include "cli/CommandSupport.h"

#include <charconv>

#include "platform/Console.h"
#include "platform/SystemError.h"

namespace velmora::cli {

StreamMessages::StreamMessages(std::ostream& err) : err_(err), previous_(&GetUserMessages()) {
    SetUserMessages(this);
}

StreamMessages::~StreamMessages() {
    SetUserMessages(previous_ == this ? nullptr : previous_);
}

int StreamMessages::Show(const std::u16string& text, const std::u16string& caption, MessageIcon,
                         MessageButtons buttons, MessageOwner) {
    std::u16string shown = text;
    while (!shown.empty() && (shown.back() == u'\n' || shown.back() == u'\r')) {
        shown.pop_back();
    }
    Print(err_, caption);
    err_ << ": ";
    Print(err_, shown);
    err_ << '\n';
    return buttons == MessageButtons::Ok ? kAnswerOk : kAnswerNo;
}

void StreamMessages::ShowUnopenable(const std::u16string& path, platform::ErrorCode error) {
    Show(platform::ErrorTextOrCode(error) + u" (" + path + u")", u"Unable to open file",
         MessageIcon::Error, MessageButtons::Ok, nullptr);
}

Progress::Progress(std::ostream& err, const std::u16string& label)
    : err_(err), label_(label), enabled_(platform::StandardErrorIsTerminal()) {}

Progress::~Progress() {
    if (shown_) err_ << "\r\x1b[K" << std::flush;
}

void Progress::Update(const char* what, long long value) {
    if (!enabled_) return;
    auto now = std::chrono::steady_clock::now();
    if (now - last_ < std::chrono::milliseconds(250)) return;
    last_ = now;
    shown_ = true;
    err_ << "\r\x1b[K";
    Print(err_, label_);
    err_ << ": " << value << ' ' << what << std::flush;
}

namespace {

void AppendField(std::string& line, const OwnedText& text) {
    line.push_back('\t');
    if (!text.IsNull()) AppendUtf8(line, text.View());
}

}  // namespace

// The line is put together in memory and written at once: a list of a large file is mostly
// this function.
void PrintSummary(std::ostream& out, const GameSummary& summary) {
    thread_local std::string line;
    line.clear();
    char number[16];
    line.append(number, std::to_chars(number, number + sizeof number, summary.offset).ptr);
    AppendField(line, summary.white);
    AppendField(line, summary.black);
    line.push_back('\t');
    AppendUtf8(line, summary.ResultText(0));
    AppendField(line, summary.date);
    AppendField(line, summary.event);
    AppendField(line, summary.round);
    AppendField(line, summary.site);
    AppendField(line, summary.eco);
    AppendField(line, summary.start);
    out.write(line.data(), static_cast<std::streamsize>(line.size()));
}

bool WantsHelp(const Arguments& args, const char* usage, std::ostream& out) {
    for (const std::u16string& arg : args) {
        if (arg == u"--help") {
            out << usage;
            return true;
        }
    }
    return false;
}

}  // namespace velmora::cli
