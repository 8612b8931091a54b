// Velmora.dll: the program's own engine as an engine library, searching in this process.
#include "engine/search/Engine.h"
#include "engine/search/MoveGen.h"
#include "platform/DebugOutput.h"
#include "plugins/common/HostedEngine.h"

namespace velmora::plugin {
namespace {

class VelmoraEngine final : public HostedEngine {
  public:
    explicit VelmoraEngine(HostCallbacks* host) : HostedEngine(host, u"Velmora") {}

  private:
    // Passes the search's reports and its move back with the search's number; both come on
    // the engine's search thread.
    void Think(const EngineGame& game, const engine::SearchLimits& limits, int search) override {
        const std::string& fen = game.BaseFen();
        if (!engine_.SetPosition(fen.empty() ? engine::kStartFen : fen, game.Moves())) {
            platform::DebugTrace(u"Position refus\u00E9e par le moteur\n");
            return;
        }
        engine_.Go(
            limits,
            [this, search](const engine::SearchInfo& info) { Report(search, ReportOf(info)); },
            [this, search](engine::Move best, engine::Move, const engine::SearchInfo&) {
                BestMove(search, best.IsNone() ? std::string() : engine::MoveText(best));
            });
    }

    void Halt(bool) override { engine_.Stop(); }
    void NewGame() override { engine_.NewGame(); }
    void Close() override {
        engine_.Stop();
        engine_.Wait();
    }
    bool Alive() override { return true; }

    static SearchReport ReportOf(const engine::SearchInfo& info) {
        SearchReport report;
        report.depth = info.depth;
        report.mate = engine::IsMateScore(info.score);
        report.score = report.mate ? engine::MateInMoves(info.score) : info.score;
        report.nodes = info.nodes;
        report.nodesPerSecond = info.nodesPerSecond;
        report.timeMs = info.timeMs;
        for (const engine::Move move : info.pv)
            report.line.push_back(engine::MoveText(move));
        return report;
    }

    engine::Engine engine_;
};

}  // namespace
}  // namespace velmora::plugin

VELMORA_PLUGIN_EXPORT velmora::plugin::Engine* LoadEngine(velmora::plugin::HostCallbacks* host) {
    return new velmora::plugin::VelmoraEngine(host);
}
