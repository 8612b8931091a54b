// UciBridgeEngine: an engine library that plays through a UCI engine program.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/bridge/UciBridge.h"
#include "plugins/common/HostedEngine.h"

namespace velmora::plugin {

// What the bridge talks to: the input of an engine program, and whether it still runs.
class EngineConnection {
  public:
    virtual ~EngineConnection() = default;
    virtual void SendLine(const std::string& line) = 0;
    virtual bool Running() = 0;
    // Ends the program, giving it a moment to leave by itself after "quit".
    virtual void Close() = 0;
};

class UciBridgeEngine final : public HostedEngine,
                              private engine::UciChannel,
                              private engine::UciListener {
  public:
    explicit UciBridgeEngine(HostCallbacks* host);

    // Takes the connection to the program, before the handshake.
    void Attach(std::unique_ptr<EngineConnection> connection);
    // A line from the program, and the end of its output; from any thread.
    void Receive(const std::string& line);
    void ReceiveEnd();
    // Runs the handshake, setting options. Returns true once the engine is ready (its name is
    // then the library's), false when its output ended or timeoutMs passed first.
    bool Handshake(std::vector<engine::UciOption> options, int timeoutMs);

  private:
    // The connection goes first: its reader thread hands lines to this object.
    ~UciBridgeEngine() override { connection_.reset(); }

    void Think(const EngineGame& game, const engine::SearchLimits& limits, int search) override;
    void Halt(bool abandon) override { bridge_.Stop(abandon); }
    void NewGame() override { bridge_.NewGame(); }
    void Close() override;
    bool Alive() override { return connection_ != nullptr && connection_->Running(); }

    void SendLine(const std::string& line) override;
    // The bridge calls these on the library's thread.
    void OnReport(const SearchReport& report) override { DeliverReport(search_, report); }
    void OnBestMove(const std::string& move) override { DeliverMove(search_, move); }

    std::unique_ptr<EngineConnection> connection_;
    engine::UciBridge bridge_{*this, *this};
    int search_ = 0;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool ready_ = false;
    bool ended_ = false;
    std::string name_;
};

// Starts the engine program that the ini file at path names and runs the handshake. Returns
// null when the file is missing or unreadable, the program cannot start or ends at once, or the
// handshake does not finish within the file's timeout.
Engine* LoadUciBridge(const std::u16string& path, HostCallbacks* host);

}  // namespace velmora::plugin
