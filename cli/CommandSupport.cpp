// What the PGN subcommands share: messages and progress on standard error, summary lines.
#include "cli/CommandSupport.h"

#include <charconv>
#include <cstring>
#include <iterator>

#include "game/ShortBytes.h"
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

// The row is measured first and then written in one piece: a list of a large file is mostly
// this function. ASCII texts are copied as they are stored; only the others are converted,
// from the file's bytes to UTF-16 to UTF-8. A field with no value prints as an empty one.
void AppendRow(std::string& line, const GameRow& row) {
    static constexpr RowField kFields[] = {RowField::White, RowField::Black, RowField::Date,
                                           RowField::Event, RowField::Round, RowField::Site,
                                           RowField::Eco,   RowField::Start};
    constexpr int kCount = static_cast<int>(std::size(kFields));
    std::string_view texts[kCount];
    thread_local std::string converted[kCount];
    std::size_t size = 16 + 8 + kCount;  // offset, result, one tab before each text
    for (int i = 0; i < kCount; ++i) {
        if (!row.AsciiText(kFields[i], &texts[i])) {
            converted[i].clear();
            AppendUtf8(converted[i], row.Text(kFields[i]).View());
            texts[i] = converted[i];
        }
        size += texts[i].size();
    }
    const std::size_t start = line.size();
    line.resize(start + size);
    char* at = line.data() + start;
    at = std::to_chars(at, at + 16, row.Offset()).ptr;
    auto put = [&at](std::string_view text) {
        *at++ = '\t';
        at = CopyBytes(at, text);
    };
    put(texts[0]);
    put(texts[1]);
    *at++ = '\t';
    for (const char16_t* result = row.ResultText(ResultForm::Pgn); *result; ++result)
        *at++ = static_cast<char>(*result);  // "1-0", "1/2-1/2", "0-1" or "*"
    for (int i = 2; i < kCount; ++i)
        put(texts[i]);
    line.resize(static_cast<std::size_t>(at - line.data()));
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
