// HostedEngine: what every engine library of ours does the same way: the plug-in interface,
// the game it plays or analyses, the time-control menu, and one thread that talks to the host.
#pragma once

#include <atomic>
#include <string>

#include "engine/PluginInterface.h"
#include "engine/SearchReport.h"
#include "plugins/common/EngineGame.h"
#include "plugins/common/TaskThread.h"

namespace velmora::plugin {

// The host's calls return at once: each becomes a task of the library's own thread, which
// keeps the game, starts and stops the searches and makes every call to the host. The host
// sends those on to its window and waits, so the library never waits for the host's thread
// (only Release does, when the window is gone).
//
// A concrete engine supplies the search through the hooks below, which run on that thread,
// and hands back what the search finds with Report and BestMove, from any thread.
class HostedEngine : public Engine {
  public:
    HostedEngine(HostCallbacks* host, std::u16string name);

    void GetInfo(EngineInfo* info) override;
    void Start(int enginePlaysBlack, int analyse, const char16_t* position) override;
    // Ends the search; nothing reaches the host until the next Start.
    void Stop() override;
    // Ends the search and the thread, closes the engine and destroys the object.
    void Release() override;
    void PlayMove(const char16_t* move) override;
    void SetWindow(WindowHandle window) override {}
    MenuHandle GetMenu() override;
    std::intptr_t OnCommand(WindowHandle window, std::uintptr_t wParam,
                            std::intptr_t lParam) override;
    void SetPosition(const char16_t* position) override;
    void Go() override;
    int IsAlive() override { return Alive() ? 1 : 0; }
    void SetAnalysis(int analyse) override;

    // Waits until every call made so far has been dealt with (for tests).
    void Flush() { tasks_.Flush(); }

  protected:
    // Release destroys the object.
    virtual ~HostedEngine();

    // Starts searching game's current position within limits; the search's results are
    // handed back with search as their number.
    virtual void Think(const EngineGame& game, const engine::SearchLimits& limits, int search) = 0;
    // Ends the running search. Abandoned, its results are dropped anyway; otherwise its move
    // is wanted at once.
    virtual void Halt(bool abandon) = 0;
    // Forgets what earlier games taught the engine.
    virtual void NewGame() {}
    // Ends the engine for good, before the object goes.
    virtual void Close() = 0;
    // Whether the engine still runs; asked from any thread.
    virtual bool Alive() = 0;

    // A progress report of search number search, from any thread.
    void Report(int search, const SearchReport& report);
    // The move search number search chose, as coordinates; empty when the side to move has
    // none. From any thread.
    void BestMove(int search, const std::string& move);
    // The same two on the library's thread, at once. Results of a search that is no longer
    // the current one are dropped.
    void DeliverReport(int search, const SearchReport& report);
    void DeliverMove(int search, const std::string& move);
    void Post(std::function<void()> task) { tasks_.Post(std::move(task)); }
    void SetName(const std::u16string& name) { name_ = name; }

  private:
    // These run on the library's thread.
    void StartSearch();
    void AbandonSearch();

    HostCallbacks* host_;
    std::u16string name_;
    // Set by Stop, cleared by Start: the host hears nothing in between.
    std::atomic<bool> silent_{false};
    // Only the host's thread touches these.
    MenuHandle menu_ = nullptr;
    int levelCommand_ = kDefaultLevelCommand;
    // Only the library's thread touches these.
    EngineGame game_;
    int search_ = 0;
    bool searching_ = false;
    TaskThread tasks_;
};

}  // namespace velmora::plugin
