// The scripted test engine: a plug-in library that answers with the moves and callbacks its
// script beside it names ("<library name>.txt") and writes every call it receives to a log
// beside it ("<library name>.log"), so that tests can drive the program's engine host with a
// known engine and check what the host told it. The answers come from a thread of its own, as
// a real engine's do.
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

#include "core/PositionText.h"
#include "engine/PluginInterface.h"
#include "platform/CodePage.h"
#include "platform/File.h"
#include "plugins/testengine/LibraryPath.h"
#include "plugins/testengine/TestScript.h"

namespace velmora::plugin {
namespace {

// Returns the library path without its extension.
std::u16string StemOf(const std::u16string& path) {
    const std::size_t separator = path.find_last_of(u"/\\");
    const std::size_t dot = path.rfind(u'.');
    if (dot == std::u16string::npos || (separator != std::u16string::npos && dot < separator))
        return path;
    return path.substr(0, dot);
}

std::u16string FileNameOf(const std::u16string& path) {
    const std::size_t separator = path.find_last_of(u"/\\");
    return separator == std::u16string::npos ? path : path.substr(separator + 1);
}

std::string ReadWholeFile(const std::u16string& path) {
    platform::ErrorCode error = 0;
    auto file = platform::SystemFileSystem().Open(path, platform::OpenMode::ReadShared, &error);
    std::string text;
    if (!file) return text;
    char buffer[4096];
    std::uint32_t got = 0;
    while (file->Read(buffer, sizeof buffer, &got) == 0 && got > 0)
        text.append(buffer, got);
    return text;
}

// Appends one line to the log; the file is opened for each line so that a test can read it
// while the engine runs.
void AppendLine(const std::u16string& path, const std::string& line) {
    platform::ErrorCode error = 0;
    auto file = platform::SystemFileSystem().Open(path, platform::OpenMode::WriteAlways, &error);
    if (!file || file->Seek(0, platform::SeekOrigin::End, nullptr) != 0) return;
    const std::string text = line + "\n";
    file->Write(text.data(), static_cast<std::uint32_t>(text.size()), nullptr);
}

std::string Utf8(const char16_t* text) {
    return text != nullptr ? platform::WideToUtf8(text) : "null";
}

bool WhiteToMoveIn(const char16_t* position) {
    PositionValue value;
    return position == nullptr || !ReadPositionText(position, &value) || value.sideToMove == kWhite;
}

class ScriptedEngine final : public Engine {
  public:
    ScriptedEngine(HostCallbacks* host, TestScript script, std::u16string stem)
        : host_(host), script_(std::move(script)), logPath_(stem + u".log") {
        name_ = script_.name.value_or(FileNameOf(stem));
        worker_ = std::thread([this] { Run(); });
    }

    void GetInfo(EngineInfo* info) override {
        Log("GetInfo " + std::to_string(info->size));
        info->version = script_.version;
        info->flags = script_.flags;
        const std::size_t length = std::min<std::size_t>(name_.size(), 31);
        name_.copy(info->name, length);
        info->name[length] = 0;
    }

    void Start(int enginePlaysBlack, int analyse, const char16_t* position) override {
        Log("Start " + std::to_string(enginePlaysBlack) + " " + std::to_string(analyse) + " " +
            Utf8(position));
        std::lock_guard lock(mutex_);
        enginePlaysBlack_ = enginePlaysBlack != 0;
        analysing_ = analyse != 0;
        whiteToMove_ = WhiteToMoveIn(position);
        stopped_ = false;
        Enqueue(Job::Announce);
        if (analysing_) Enqueue(Job::Analyse);
    }

    void Stop() override {
        Log("Stop");
        std::lock_guard lock(mutex_);
        stopped_ = true;
        jobs_.clear();
    }

    void Release() override {
        Log("Release");
        {
            std::lock_guard lock(mutex_);
            quit_ = true;
        }
        wake_.notify_all();
        worker_.join();
        delete this;
    }

    void PlayMove(const char16_t* move) override {
        Log("PlayMove " + Utf8(move));
        std::lock_guard lock(mutex_);
        whiteToMove_ = !whiteToMove_;
        if (analysing_) {
            Enqueue(Job::Analyse);
        } else if (whiteToMove_ != enginePlaysBlack_) {
            Enqueue(Job::Answer);
        }
    }

    void SetWindow(WindowHandle window) override {
        Log("SetWindow " + std::to_string(reinterpret_cast<std::uintptr_t>(window)));
    }

    MenuHandle GetMenu() override { return nullptr; }

    std::intptr_t OnCommand(WindowHandle, std::uintptr_t wParam, std::intptr_t lParam) override {
        Log("OnCommand " + std::to_string(wParam) + " " + std::to_string(lParam));
        return 0;
    }

    void SetPosition(const char16_t* position) override {
        Log("SetPosition " + Utf8(position));
        std::lock_guard lock(mutex_);
        whiteToMove_ = WhiteToMoveIn(position);
        if (analysing_) Enqueue(Job::Analyse);
    }

    void Go() override {
        Log("Go");
        std::lock_guard lock(mutex_);
        Enqueue(Job::Answer);
    }

    int IsAlive() override { return alive_ ? 1 : 0; }

    void SetAnalysis(int analyse) override {
        Log("SetAnalysis " + std::to_string(analyse));
        std::lock_guard lock(mutex_);
        analysing_ = analyse != 0;
    }

  private:
    enum class Job { Announce, Answer, Analyse };

    ~ScriptedEngine() = default;

    // Appends line to the log. Only the host's calls are logged, all on the host's thread, so
    // lines never interleave.
    void Log(const std::string& line) { AppendLine(logPath_, line); }

    // Queues a job for the engine's thread; the caller holds the lock.
    void Enqueue(Job job) {
        if (stopped_) return;
        jobs_.push_back(job);
        wake_.notify_all();
    }

    // Runs the queued jobs on the engine's thread until Release, or until the script lets it die.
    void Run() {
        if (script_.dieAfter == 0) {
            alive_ = false;
            return;
        }
        for (;;) {
            Job job;
            {
                std::unique_lock lock(mutex_);
                wake_.wait(lock, [this] { return quit_ || !jobs_.empty(); });
                if (quit_) return;
                job = jobs_.front();
                jobs_.pop_front();
            }
            if (job == Job::Announce) Announce();
            if (job == Job::Answer) Answer();
            if (job == Job::Analyse) Analyse();
            if (!alive_) return;
        }
    }

    void Announce() {
        if (script_.showInfo) host_->ShowInfo(*script_.showInfo);
        if (script_.engineName) host_->SetEngineName(script_.engineName->c_str());
        if (script_.timeControl) {
            const auto& n = *script_.timeControl;
            host_->SetTimeControl(n[0], n[1], n[2], n[3], n[4], n[5], n[6]);
        }
    }

    void SendInfos(const ScriptedMove& move) {
        for (const ScriptedInfo& info : move.infos) {
            host_->SearchInfo(info.depth, info.speed, info.nodes, info.milliseconds,
                              info.move.c_str(), info.line.c_str());
        }
    }

    // Plays the next scripted move, then the callbacks the script ties to its number.
    void Answer() {
        if (script_.hang) return;
        const ScriptedMove* move = nullptr;
        int answer = 0;
        {
            std::unique_lock lock(mutex_);
            if (script_.delayMilliseconds > 0) {
                wake_.wait_for(lock, std::chrono::milliseconds(script_.delayMilliseconds),
                               [this] { return quit_ || stopped_; });
            }
            if (quit_ || stopped_ || nextMove_ >= script_.moves.size()) return;
            move = &script_.moves[nextMove_++];
            answer = ++answers_;
            // Turned before the host hears of the move: the opponent's reply may come at once.
            whiteToMove_ = !whiteToMove_;
        }
        SendInfos(*move);
        host_->MovePlayed(move->text.c_str());
        if (answer == script_.gameOverAfter) {
            // Twice with the same texts: the host shows its box only once.
            for (int i = 0; i < 2; ++i)
                host_->GameOver(script_.gameOverCaption.c_str(), script_.gameOverText.c_str());
        }
        if (answer == script_.switchSidesAfter) {
            {
                std::lock_guard lock(mutex_);
                enginePlaysBlack_ = !enginePlaysBlack_;
            }
            host_->SwitchSides();
        }
        if (answer == script_.dieAfter) alive_ = false;
    }

    // Sends the search information of the next scripted entry without playing its move: while
    // analysing, the start and each position change get one.
    void Analyse() {
        const ScriptedMove* move = nullptr;
        {
            std::lock_guard lock(mutex_);
            if (stopped_ || nextMove_ >= script_.moves.size()) return;
            move = &script_.moves[nextMove_++];
        }
        SendInfos(*move);
    }

    HostCallbacks* host_;
    const TestScript script_;
    const std::u16string logPath_;
    std::u16string name_;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Job> jobs_;
    bool quit_ = false;
    bool stopped_ = false;
    bool enginePlaysBlack_ = true;
    bool analysing_ = false;
    bool whiteToMove_ = true;
    std::size_t nextMove_ = 0;
    int answers_ = 0;
    std::atomic<bool> alive_{true};
    std::thread worker_;
};

// Any object of this library: its address tells which file the library was loaded from.
const char kAnchor = 0;

}  // namespace
}  // namespace velmora::plugin

// Reads the script beside the library and returns the engine, or null when the script says so.
VELMORA_PLUGIN_EXPORT velmora::plugin::Engine* LoadEngine(velmora::plugin::HostCallbacks* host) {
    using namespace velmora::plugin;
    const std::u16string stem = StemOf(LibraryPathOf(&kAnchor));
    TestScript script = ParseTestScript(ReadWholeFile(stem + u".txt"));
    AppendLine(stem + u".log", script.loadNull ? "LoadEngine null" : "LoadEngine");
    for (const std::string& error : script.errors)
        AppendLine(stem + u".log", "Script error " + error);
    if (script.loadNull) return nullptr;
    return new ScriptedEngine(host, std::move(script), stem);
}
