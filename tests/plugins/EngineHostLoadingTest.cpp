// The engine host over real libraries in an "Engines" folder (dlopen natively, LoadLibraryW
// under Wine): each load failure with its message, in the order the checks are made. How many
// folders it offers and one engine a run are tested over a stand-in (EngineHostTest).
#include <gtest/gtest.h>

#include <filesystem>

#include "TestFiles.h"
#include "engine/host/EngineHost.h"

namespace velmora {
namespace {

#if defined(_WIN32)
constexpr const char* kExtension = ".dll";
#else
constexpr const char* kExtension = ".so";
#endif

// Answers the dialog with the engine chosen, and keeps the boxes it was asked to show.
class BoxWindow final : public EngineHostWindow {
  public:
    explicit BoxWindow(EngineHost*& host) : host_(host) {}
    void SendToWindow(unsigned message, std::uintptr_t) override {
        if (message == kEngineMessageBox) boxes.push_back(host_->MessageText());
    }
    int RunStartDialog(StartGameChoice& choice) override {
        choice.chosen = chosen;
        choice.play = false;
        return 1;
    }
    std::u16string LoadText(int id) override { return platform::Utf8ToWide(std::to_string(id)); }
    void PlaySoundFile(const std::u16string&) override {}
    plugin::WindowHandle Handle() override { return nullptr; }

    int chosen = 0;
    std::vector<std::u16string> boxes;

  private:
    EngineHost*& host_;
};

class EngineHostLoading : public testing::Test {
  protected:
    // Puts library (from the build's test engines) into Engines/name/ as name, with script.
    void Install(const std::string& name, const std::string& script,
                 const char* library = "TestEngine") {
        const std::filesystem::path folder = engines / name;
        std::filesystem::create_directories(folder);
        const std::string source =
            std::string(VELMORA_TEST_ENGINES_DIR) + "/" + library + "/" + library + kExtension;
        std::filesystem::copy_file(source, folder / (name + kExtension));
        if (!script.empty()) test::WriteBytes((folder / (name + ".txt")).u16string(), script);
    }
    std::u16string ProgramFolder() const {
        std::u16string path = root.dir.u16string();
        return path + static_cast<char16_t>(std::filesystem::path::preferred_separator);
    }
    // Starts engine number index of the folder's listing in a fresh host; returns the boxes.
    std::vector<std::u16string> StartIn(const std::u16string& name, bool* started) {
        EngineHost fresh(ProgramFolder());
        host = &fresh;
        const auto& names = fresh.Names();
        window.chosen =
            static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin());
        window.boxes.clear();
        bool play = false;
        bool black = false;
        *started = fresh.StartEngine(window, &play, &black, false, game);
        fresh.Detach();
        host = nullptr;
        return window.boxes;
    }

    test::TempFolder root;
    std::filesystem::path engines = root.dir / "Engines";
    EngineHost* host = nullptr;
    BoxWindow window{host};
    Game game;
};

TEST_F(EngineHostLoading, EachFailureHasItsMessageAndTheHostGoesOn) {
    Install("Good", "flags 1\nname Good One\n");
    Install("NoEntry", "", "NoEntry");
    Install("Version1", "version 1\n");
    Install("Version3", "version 3\n");
    Install("NullEngine", "null\n");
    std::filesystem::create_directories(engines / "Empty");
    struct Case {
        const char16_t* folder;
        const char16_t* box;  // null: it starts
    };
    const Case cases[] = {{u"Empty", u"40111"},      {u"NoEntry", u"40112"},
                          {u"NullEngine", u"40114"}, {u"Version1", u"40117"},
                          {u"Version3", u"40117"},   {u"Good", nullptr}};
    for (const Case& c : cases) {
        SCOPED_TRACE(platform::WideToUtf8(c.folder));
        bool started = false;
        const std::vector<std::u16string> boxes = StartIn(c.folder, &started);
        if (c.box == nullptr) {
            EXPECT_TRUE(started);
            EXPECT_TRUE(boxes.empty());
        } else {
            EXPECT_FALSE(started);
            EXPECT_EQ(boxes, std::vector<std::u16string>{c.box});
        }
    }
}

}  // namespace
}  // namespace velmora
