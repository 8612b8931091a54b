// HostedEngine: the host's calls turned into tasks, and the searches' results passed on.
#include "plugins/common/HostedEngine.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/DebugOutput.h"

namespace velmora::plugin {
namespace {

// The longest line the host shows.
constexpr std::size_t kLineLength = 127;

std::uint32_t Clamped(std::uint64_t value) {
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(value, std::numeric_limits<std::uint32_t>::max()));
}

// Copies a host text, which lives only as long as the call; null stays apart from empty.
struct HostText {
    explicit HostText(const char16_t* text) : given(text != nullptr), text(given ? text : u"") {}
    const char16_t* Get() const { return given ? text.c_str() : nullptr; }
    bool given;
    std::u16string text;
};

}  // namespace

HostedEngine::HostedEngine(HostCallbacks* host, std::u16string name)
    : host_(host), name_(std::move(name)) {}

HostedEngine::~HostedEngine() {
    DestroyEngineMenu(menu_);
}

void HostedEngine::GetInfo(EngineInfo* info) {
    info->version = kInterfaceVersion;
    info->flags = kCoordinateMoves;
    std::fill(std::begin(info->name), std::end(info->name), u'\0');
    std::copy_n(name_.begin(), std::min<std::size_t>(name_.size(), 31), info->name);
}

void HostedEngine::Start(int enginePlaysBlack, int analyse, const char16_t* position) {
    silent_ = false;
    Post([this, enginePlaysBlack, analyse, text = HostText(position)] {
        AbandonSearch();
        if (!game_.Start(enginePlaysBlack != 0, analyse != 0, text.Get()))
            platform::DebugTrace(u"Position illisible au d\u00E9part\n");
        NewGame();
        if (!silent_) host_->ShowInfo(1);
        if (game_.Analysing()) StartSearch();
    });
}

void HostedEngine::Stop() {
    silent_ = true;
    Post([this] { AbandonSearch(); });
}

void HostedEngine::Release() {
    silent_ = true;
    Post([this] {
        AbandonSearch();
        Close();
    });
    tasks_.Finish();
    delete this;
}

void HostedEngine::PlayMove(const char16_t* move) {
    Post([this, text = HostText(move)] {
        AbandonSearch();
        if (!game_.PlayMove(std::u16string_view(text.text))) {
            platform::DebugTrace(u"Coup refus\u00E9 par le moteur\n");
            return;
        }
        if (game_.Analysing() || game_.EngineToMove()) StartSearch();
    });
}

MenuHandle HostedEngine::GetMenu() {
    if (menu_ == nullptr) menu_ = CreateEngineMenu(levelCommand_);
    return menu_;
}

// Takes a level at once (the host stores it for the clock's next start) and "Move now" on the
// library's thread. The command is the low word of wParam.
std::intptr_t HostedEngine::OnCommand(WindowHandle window, std::uintptr_t wParam,
                                      std::intptr_t lParam) {
    const std::uintptr_t command = wParam & 0xFFFF;
    if (const TimeLevel* level = LevelOfCommand(command)) {
        levelCommand_ = level->command;
        CheckEngineMenuLevel(menu_, level->command);
        const std::int32_t* n = level->numbers;
        host_->SetTimeControl(n[0], n[1], n[2], n[3], n[4], n[5], n[6]);
        Post([this, level] { game_.SetLevel(*level); });
        return 1;
    }
    if (command == static_cast<std::uintptr_t>(kMoveNowCommand)) {
        Post([this] {
            if (searching_ && !game_.Analysing()) Halt(false);
        });
        return 1;
    }
    return 0;
}

void HostedEngine::SetPosition(const char16_t* position) {
    Post([this, text = HostText(position)] {
        AbandonSearch();
        if (!game_.SetPosition(text.Get())) platform::DebugTrace(u"Position illisible\n");
        if (game_.Analysing()) StartSearch();
    });
}

void HostedEngine::Go() {
    Post([this] {
        AbandonSearch();
        StartSearch();
    });
}

void HostedEngine::SetAnalysis(int analyse) {
    Post([this, analyse = analyse != 0] {
        if (analyse == game_.Analysing()) {
            if (analyse && !searching_) StartSearch();
            return;
        }
        AbandonSearch();
        game_.SetAnalysing(analyse);
        if (analyse || game_.EngineToMove()) StartSearch();
    });
}

void HostedEngine::Report(int search, const SearchReport& report) {
    Post([this, search, report] { DeliverReport(search, report); });
}

void HostedEngine::BestMove(int search, const std::string& move) {
    Post([this, search, move] { DeliverMove(search, move); });
}

// Searches the current position, unless the side to move has no legal move: a game then ends
// with the result, an analysis shows why it cannot go on. Asks the host's clock first in a
// game.
void HostedEngine::StartSearch() {
    GameOverTexts over;
    if (game_.GameOver(&over)) {
        if (silent_) return;
        if (game_.Analysing()) {
            const std::u16string reason(over.text);
            host_->SearchInfo(0, 0, 0, 0, std::string(reason.begin(), reason.end()).c_str(), "");
        } else {
            host_->GameOver(over.caption, over.text);
        }
        return;
    }
    ClockTimes clock;
    if (!game_.Analysing() && !silent_)
        host_->GetClockTimes(&clock.whiteMs, &clock.blackMs, &clock.movesToGo);
    ++search_;
    searching_ = true;
    Think(game_, game_.Limits(clock), search_);
}

void HostedEngine::AbandonSearch() {
    if (!searching_) return;
    searching_ = false;
    Halt(true);
}

void HostedEngine::DeliverReport(int search, const SearchReport& report) {
    if (search != search_ || !searching_ || silent_) return;
    const std::string score = game_.ScoreText(report.mate, report.score);
    const std::string line = game_.SanLine(report.line, kLineLength);
    host_->SearchInfo(static_cast<std::uint32_t>(std::max(0, report.depth)),
                      Clamped(report.nodesPerSecond / 1000), Clamped(report.nodes),
                      Clamped(static_cast<std::uint64_t>(std::max<std::int64_t>(0, report.timeMs))),
                      score.c_str(), line.c_str());
}

// Plays the engine's move in the game before the host hears of it: the host does not send the
// engine's own moves back.
void HostedEngine::DeliverMove(int search, const std::string& move) {
    if (search != search_ || !searching_) return;
    searching_ = false;
    if (silent_ || game_.Analysing()) return;
    GameOverTexts over;
    if (move.empty()) {
        if (game_.GameOver(&over)) host_->GameOver(over.caption, over.text);
        return;
    }
    if (!game_.PlayMove(move)) platform::DebugTrace(u"Coup ill\u00E9gal du moteur\n");
    host_->MovePlayed(std::u16string(move.begin(), move.end()).c_str());
}

}  // namespace velmora::plugin
