// The UCI bridge DLL loaded as the program loads it, beside an ini file that runs the scripted
// UCI program.
#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "engine/PluginInterface.h"
#include "plugins/RecordingHost.h"
#include "win32/ProgramDriver.h"

namespace velmora::plugin {
namespace {

using testing::RecordingHost;

using e2e::WindowsPath;

std::string Narrow(const std::wstring& text) {
    return std::string(text.begin(), text.end());
}

// A DLL of the build loaded from a path, and the engine its entry point returns.
class LoadedEngine {
  public:
    LoadedEngine(const std::wstring& path, RecordingHost* host) {
        module_ = LoadLibraryW(path.c_str());
        if (module_ == nullptr) return;
        auto load = reinterpret_cast<LoadEngineFunction>(GetProcAddress(module_, kEntryPointName));
        if (load != nullptr) engine_ = load(host);
    }
    ~LoadedEngine() {
        if (engine_ != nullptr) engine_->Release();
        if (module_ != nullptr) FreeLibrary(module_);
    }
    bool ModuleLoaded() const { return module_ != nullptr; }
    Engine* operator->() const { return engine_; }
    Engine* Get() const { return engine_; }

  private:
    HMODULE module_ = nullptr;
    Engine* engine_ = nullptr;
};

// A temporary folder holding a copy of UciBridge.dll, its ini file and the script it runs.
class BridgeFolder : public ::testing::Test {
  protected:
    void SetUp() override {
        wchar_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, temp);
        folder_ = std::wstring(temp) + L"velmora-bridge-" + std::to_wstring(GetCurrentProcessId()) +
                  L"-" + std::to_wstring(++count_) + L"\\";
        CreateDirectoryW(folder_.c_str(), nullptr);
        const std::wstring built = WindowsPath(VELMORA_ENGINES_DIR "/UciBridge/UciBridge.dll");
        ASSERT_TRUE(CopyFileW(built.c_str(), (folder_ + L"UciBridge.dll").c_str(), FALSE))
            << Narrow(built);
    }
    void TearDown() override {
        engine_.reset();
        for (const wchar_t* name :
             {L"UciBridge.dll", L"UciBridge.ini", L"engine.script", L"engine.log"})
            DeleteFileW((folder_ + name).c_str());
        RemoveDirectoryW(folder_.c_str());
    }

    // Writes the script and an ini that runs it, then loads the copied library.
    void Load(const std::string& script, const std::string& extra = "") {
        const std::string folder = Narrow(folder_);
        std::ofstream(std::filesystem::path(folder_ + L"engine.script")) << script;
        std::ofstream(std::filesystem::path(folder_ + L"UciBridge.ini"))
            << "[Engine]\r\nProgram=" << Narrow(WindowsPath(VELMORA_UCI_SCRIPT))
            << "\r\nArguments=\"" << folder << "engine.script\" \"" << folder << "engine.log\"\r\n"
            << extra;
        engine_ = std::make_unique<LoadedEngine>(folder_ + L"UciBridge.dll", &host_);
        ASSERT_TRUE(engine_->ModuleLoaded());
    }
    std::string Log() {
        std::ifstream file(std::filesystem::path(folder_ + L"engine.log"));
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }

    static inline int count_ = 0;
    std::wstring folder_;
    RecordingHost host_;
    std::unique_ptr<LoadedEngine> engine_;
};

constexpr char kHandshake[] = "< uci\n> id name Scripted\n> uciok\n< isready\n> readyok\n";

// The bridge runs the program with pipes both ways: a program that answers plays a move each way
// with the ini's options and, killed, is seen to be gone; one that ends at once is refused
// without waiting for the handshake's timeout.
TEST_F(BridgeFolder, RunsTheProgramOverPipesAndSeesItEnd) {
    Load(std::string(kHandshake) + "< isready\n> readyok\n< go*\n> bestmove e7e5\n",
         "[Options]\r\nHash=4\r\n");
    ASSERT_NE(engine_->Get(), nullptr);
    EngineInfo info = {kEngineInfoSize, 0, 0, {}};
    (*engine_)->GetInfo(&info);
    EXPECT_EQ(std::u16string(info.name), u"Scripted");
    (*engine_)->Start(1, 0, nullptr);
    (*engine_)->SetAnalysis(0);
    (*engine_)->PlayMove(u"e2e4");
    ASSERT_TRUE(host_.WaitFor("MovePlayed", 10000));
    EXPECT_EQ(host_.TakeCalls().back(), "MovePlayed e7e5");
    std::istringstream log(Log());
    std::string word;
    DWORD pid = 0;
    log >> word >> pid;
    ASSERT_EQ(word, "pid");
    for (const char* line : {"setoption name Hash value 4", "position startpos moves e2e4"})
        EXPECT_NE(log.str().find(line), std::string::npos) << line << " is not in:\n" << log.str();
    HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, pid);
    ASSERT_NE(process, nullptr);
    EXPECT_EQ((*engine_)->IsAlive(), 1);
    TerminateProcess(process, 9);
    CloseHandle(process);
    for (int tries = 0; tries < 300 && (*engine_)->IsAlive() != 0; ++tries)
        Sleep(10);
    EXPECT_EQ((*engine_)->IsAlive(), 0);

    const DWORD start = GetTickCount();
    Load("exit\n");
    EXPECT_EQ(engine_->Get(), nullptr);
    EXPECT_LT(GetTickCount() - start, 8000u);  // well before the 10 s timeout
}

}  // namespace
}  // namespace velmora::plugin
