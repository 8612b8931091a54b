// The engine host over real libraries in an "Engines" folder (dlopen natively, LoadLibraryW
// under Wine): how many folders it offers, each load failure with its message, and one
// engine a run.
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

TEST_F(EngineHostLoading, OffersTwentyFoldersAndLoadsOneEngineARun) {
    for (int i = 0; i < 22; ++i)
        Install("E" + std::to_string(10 + i), "name Engine\n");
    EngineHost fresh(ProgramFolder());
    host = &fresh;
    EXPECT_EQ(fresh.EngineCount(), 20);
    const std::u16string first = fresh.Names()[0];
    window.chosen = 0;
    bool play = false;
    bool black = false;
    ASSERT_TRUE(fresh.StartEngine(window, &play, &black, false, game));
    EXPECT_EQ(fresh.EngineName(), u"Engine");
    EXPECT_EQ(fresh.LoadedIndex(), 0);
    EXPECT_FALSE(fresh.LoadEngine(1));
    EXPECT_EQ(window.boxes, std::vector<std::u16string>{u"40115"});
    // The loaded engine stays, and it is the one offered again.
    ASSERT_TRUE(fresh.StartEngine(window, &play, &black, false, game));
    EXPECT_EQ(fresh.Names()[static_cast<std::size_t>(fresh.LoadedIndex())], first);
    fresh.Detach();
    host = nullptr;
}

}  // namespace
}  // namespace velmora
