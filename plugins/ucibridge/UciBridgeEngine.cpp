// UciBridgeEngine: the plug-in calls turned into UCI lines, and the program behind them.
#include "plugins/ucibridge/UciBridgeEngine.h"

#include <chrono>

#include "platform/CodePage.h"
#include "platform/DebugOutput.h"
#include "platform/Process.h"
#include "plugins/ucibridge/BridgeSettings.h"

namespace velmora::plugin {
namespace {

// How long a program may take to leave after "quit" before it is killed.
constexpr int kQuitWaitMs = 300;

class ProcessConnection final : public EngineConnection {
  public:
    explicit ProcessConnection(std::unique_ptr<platform::Process> process)
        : process_(std::move(process)) {}
    void SendLine(const std::string& line) override { process_->WriteLine(line); }
    bool Running() override { return process_->Running(); }
    void Close() override {
        if (!process_->WaitForExit(kQuitWaitMs)) process_->Kill();
    }

  private:
    std::unique_ptr<platform::Process> process_;
};

}  // namespace

UciBridgeEngine::UciBridgeEngine(HostCallbacks* host) : HostedEngine(host, u"UciBridge") {}

void UciBridgeEngine::Attach(std::unique_ptr<EngineConnection> connection) {
    connection_ = std::move(connection);
}

// Hands the line to the bridge on the library's thread and wakes a waiting handshake once the
// engine is ready.
void UciBridgeEngine::Receive(const std::string& line) {
    Post([this, line] {
        bridge_.HandleLine(line);
        if (!bridge_.Ready()) return;
        std::lock_guard<std::mutex> lock(mutex_);
        if (ready_) return;
        ready_ = true;
        name_ = bridge_.EngineName();
        changed_.notify_all();
    });
}

void UciBridgeEngine::ReceiveEnd() {
    std::lock_guard<std::mutex> lock(mutex_);
    ended_ = true;
    changed_.notify_all();
}

bool UciBridgeEngine::Handshake(std::vector<engine::UciOption> options, int timeoutMs) {
    Post([this, options = std::move(options)]() mutable {
        bridge_.BeginHandshake(std::move(options));
    });
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                      [this] { return ready_ || ended_; });
    if (!ready_) return false;
    if (!name_.empty()) SetName(platform::AnsiToWide(name_));
    return true;
}

void UciBridgeEngine::Think(const EngineGame& game, const engine::SearchLimits& limits,
                            int search) {
    search_ = search;
    bridge_.Think(game.BaseFen(), game.Moves(), limits);
}

void UciBridgeEngine::Close() {
    bridge_.Quit();
    if (connection_ != nullptr) connection_->Close();
}

void UciBridgeEngine::SendLine(const std::string& line) {
    if (connection_ != nullptr) connection_->SendLine(line);
}

// Starts the program in its own folder, so that it finds the files it keeps beside it.
Engine* LoadUciBridge(const std::u16string& path, HostCallbacks* host) {
    BridgeSettings settings;
    if (!LoadBridgeSettings(path, &settings)) {
        platform::DebugTrace(u"Fichier ini du pont UCI illisible\n");
        return nullptr;
    }
    auto* engine = new UciBridgeEngine(host);
    platform::ProcessStart start;
    start.program = settings.program;
    start.arguments = settings.arguments;
    start.folder = FolderOf(settings.program);
    start.onLine = [engine](const std::string& line) { engine->Receive(line); };
    start.onEnd = [engine] { engine->ReceiveEnd(); };
    platform::ErrorCode error = 0;
    std::unique_ptr<platform::Process> process = platform::StartProcess(start, &error);
    if (process == nullptr) {
        platform::DebugTrace(u"Programme du moteur introuvable\n");
        engine->Release();
        return nullptr;
    }
    engine->Attach(std::make_unique<ProcessConnection>(std::move(process)));
    if (!engine->Handshake(settings.options, settings.handshakeTimeoutMs)) {
        platform::DebugTrace(u"Le moteur UCI ne r\u00E9pond pas\n");
        engine->Release();
        return nullptr;
    }
    return engine;
}

}  // namespace velmora::plugin
