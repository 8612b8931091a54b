// What the PGN subcommands share: messages and progress on standard error, summary lines.
#include "cli/CommandSupport.h"

#include "platform/Console.h"

namespace velmora::cli {

StreamMessages::StreamMessages(std::ostream& err) : err_(err), previous_(&GetUserMessages()) {
    SetUserMessages(this);
}

StreamMessages::~StreamMessages() {
    SetUserMessages(previous_ == this ? nullptr : previous_);
}

int StreamMessages::Show(const std::u16string& text, const std::u16string& caption, MessageIcon,
                         MessageButtons buttons, void*) {
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

void PrintField(std::ostream& out, const OwnedText& text) {
    out << '\t';
    if (!text.IsNull()) Print(out, text.View());
}

}  // namespace

void PrintSummary(std::ostream& out, const GameSummary& summary) {
    out << summary.offset;
    PrintField(out, summary.white);
    PrintField(out, summary.black);
    out << '\t';
    Print(out, summary.ResultText(0));
    PrintField(out, summary.date);
    PrintField(out, summary.event);
    PrintField(out, summary.round);
    PrintField(out, summary.site);
    PrintField(out, summary.eco);
    PrintField(out, summary.start);
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
