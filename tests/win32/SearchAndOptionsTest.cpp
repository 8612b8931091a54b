// The search dialog and the options sheet, run for real: a search by name over real files with
// a game opened, a search stopped halfway, and options seen in the game window and stored.
#include <windows.h>

#include <prsht.h>

#include <filesystem>
#include <fstream>

#include "game/Game.h"
#include "game/GameListOrder.h"
#include "game/GameSearch.h"
#include "gamewindow/BoardView.h"
#include "gamewindow/OptionsSheet.h"
#include "platform/SettingsStore.h"
#include "platform/win32/WideText.h"
#include "resources/resource.h"
#include "shell/SearchDialog.h"
#include "ui/DocumentList.h"
#include "win32/GuiDriver.h"

namespace velmora::gui {
namespace {

using platform::win32::FromWin32;

// The shared PGN collections when the build found them, else the test data.
std::wstring SearchFolder() {
#ifdef VELMORA_SHARED_DATA_DIR
    return e2e::WindowsPath(VELMORA_SHARED_DATA_DIR "/");
#else
    return e2e::WindowsPath(VELMORA_TEST_DATA_DIR "/");
#endif
}

// What the portable search finds for the same criteria and files: what the dialog must show.
std::unique_ptr<GameSearchResults> SearchDirectly(const SearchCriteria& criteria,
                                                  const std::vector<std::u16string>& paths) {
    GameSearch search(criteria);
    return search.Run(paths);
}

void Type(HWND dialog, int id, const wchar_t* text) {
    SetWindowTextW(GetDlgItem(dialog, id), text);
}

class SearchAndOptionsTest : public GuiTest {
  protected:
    void SetUp() override {
        GuiTest::SetUp();
        // Whatever the options tests store, the settings store gets back what it held.
        saved_.Load(platform::SystemSettingsStore());
        *settings = Settings();
    }
    void TearDown() override {
        saved_.Save(platform::SystemSettingsStore());
        *settings = Settings();
        drawing->RebuildColours(*settings);
        pocketpc::SetOrientation(true);
        GuiTest::TearDown();
    }
    Settings saved_;
};

TEST_F(SearchAndOptionsTest, NameSearchListsTheGamesFoundAndOpensTheOneChosen) {
    MainWindowIn shown(SearchFolder());
    MainWindow& main = shown.main;
    ASSERT_NE(shown.window, nullptr);
    std::vector<std::u16string> paths;
    for (const std::wstring& path : pocketpc::DocListFiles(main.DocList()))
        paths.push_back(FromWin32(path));
    ASSERT_FALSE(paths.empty());
    SearchCriteria criteria;
    criteria.white = u"@a";
    criteria.black = u"@e";
    const auto expected = SearchDirectly(criteria, paths);
    ASSERT_GT(expected->Size(), 1);
    const GameRow second = expected->At(1);

    WhenPopup(Titled(L"Game search"), [&](HWND dialog) { PressButton(dialog, IDC_EDIT_MATERIAL); });
    WhenPopup(Titled(L"Material"), [&](HWND editor) {
        Repaint(editor);
        EXPECT_TRUE(test::SaveWindowShot(editor, L"search-material-editor"));
        PressButton(editor, IDCANCEL);
    });
    WhenPopup(Titled(L"Game search"), [&](HWND dialog) {
        Type(dialog, IDC_SEARCH_WHITE, L"@a");
        Type(dialog, IDC_SEARCH_BLACK, L"@e");
        PhotographBothWays(dialog, L"search-dialog");
        PressButton(dialog, IDC_SEARCH_RUN);
    });
    WhenPopup(HasControl(IDC_GAME_LIST), [&](HWND list) {
        const auto whites = ListViewColumn(GetDlgItem(list, IDC_GAME_LIST), 0);
        EXPECT_EQ(whites.size(), static_cast<std::size_t>(expected->Size()));
        EXPECT_TRUE(whites.size() > 1 &&
                    whites[1] == platform::win32::ToWin32(CellText(second, 0)));
        Repaint(list);
        EXPECT_TRUE(test::SaveWindowShot(list, L"search-results"));
        TapGameList(list, GetDlgItem(list, IDC_GAME_LIST), 1);
    });
    WhenPopup(HasControl(BoardView::kNotationId),
              [&](HWND board) { SendMessageW(board, WM_COMMAND, ID_CLOSE_GAME, 0); });
    SendMessageW(shown.window, WM_COMMAND, ID_SEARCH, 0);
    EXPECT_TRUE(popupActions.empty());
    popupActions.clear();
    // The second game listed is the one opened, from its own file, with its number there.
    ASSERT_NE(main.CurrentGame(), nullptr);
    ASSERT_NE(main.CurrentFile(), nullptr);
    EXPECT_EQ(main.CurrentFile()->Path(), second.FilePath());
    const GameRow opened = main.CurrentFile()->At(main.CurrentIndex() - 1);
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened.Offset(), second.Offset());
    // Saving splices the game back among the others of its file.
    EXPECT_EQ(main.CurrentGame()->saveMode, main.CurrentFile()->Count());
}

// A file of many games, so that a search over it lasts long enough to be stopped.
std::u16string ManyGamesFile() {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / "velmora-many-games.pgn";
    std::ifstream source(std::filesystem::path(DataPath(L"game-list-sorting.pgn")),
                         std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(source), {});
    std::ofstream target(path, std::ios::binary);
    for (int copy = 0; copy < 5000; ++copy)
        target << text << "\r\n";
    return path.u16string();
}

TEST_F(SearchAndOptionsTest, StopEndsTheSearchAndOffersTheGamesFoundSoFar) {
    const std::u16string many = ManyGamesFile();
    // The same file forty times over: the search starts each file at once, and the stop
    // button is pressed once the first has been read.
    const std::vector<std::u16string> paths(40, many);
    SearchCriteria criteria;
    criteria.white = u"@a";
    const int all = SearchDirectly(criteria, {many})->Size() * 40;

    SearchDialog dialog(paths);
    int listed = -1;
    WhenPopup(Titled(L"Game search"), [&](HWND search) {
        Type(search, IDC_SEARCH_WHITE, L"@a");
        PressButton(search, IDC_SEARCH_RUN);
    });
    // Runs from inside the search, once it has read its first file: the dialog keeps
    // answering while it looks.
    WhenPopup(
        [&](HWND search) {
            return dialog.Running() &&
                   SendDlgItemMessageW(search, IDC_FILES_PROGRESS, PBM_GETPOS, 0, 0) > 0;
        },
        [&](HWND search) {
            EXPECT_TRUE(IsWindowVisible(GetDlgItem(search, IDC_FILE_PROGRESS)));
            EXPECT_FALSE(IsWindowEnabled(GetDlgItem(search, IDC_SEARCH_WHITE)));
            EXPECT_EQ(WindowText(GetDlgItem(search, IDC_SEARCH_RUN)), L"Stop");
            Repaint(search);
            EXPECT_TRUE(test::SaveWindowShot(search, L"search-running"));
            PressButton(search, IDC_SEARCH_RUN);
        });
    WhenPopup(HasControl(IDC_GAME_LIST), [&](HWND list) {
        listed = ListView_GetItemCount(GetDlgItem(list, IDC_GAME_LIST));
        SendMessageW(list, WM_COMMAND, IDOK, 0);
    });
    WhenPopup(Titled(L"Game search"), [&](HWND search) {
        EXPECT_EQ(WindowText(GetDlgItem(search, IDC_SEARCH_RUN)), L"Search");
        SendMessageW(search, WM_COMMAND, IDOK, 0);
    });
    EXPECT_EQ(dialog.Run(frame), 0);
    EXPECT_TRUE(popupActions.empty());
    popupActions.clear();
    ASSERT_NE(dialog.Results(), nullptr);
    EXPECT_GT(dialog.Results()->Size(), 0);
    EXPECT_LT(dialog.Results()->Size(), all);
    EXPECT_EQ(listed, dialog.Results()->Size());
}

// Runs the options sheet with actions on its pages: action(sheet) is called once it shows.
bool RunSheet(HWND owner, Settings& settings, std::function<void(HWND)> action) {
    WhenPopup(Titled(L"Velmora options"), std::move(action));
    const bool ok = RunOptionsSheet(owner, settings);
    EXPECT_TRUE(popupActions.empty());
    popupActions.clear();
    return ok;
}

HWND ShowPage(HWND sheet, int index) {
    PropSheet_SetCurSel(sheet, nullptr, index);
    Pump();
    return PropSheet_GetCurrentPageHwnd(sheet);
}

// Changes on every page, each photographed, stored by OK where the next start reads them.
TEST_F(SearchAndOptionsTest, OptionsAreStoredOnOkAndKeptInMemoryOnCancel) {
    settings->layout = 0;
    bool ok = RunSheet(frame, *settings, [&](HWND sheet) {
        HWND display = ShowPage(sheet, 0);
        EXPECT_EQ(WindowText(GetDlgItem(display, IDC_LAYOUT)), L"Std board, list & large cmt");
        EXPECT_EQ(WindowText(GetDlgItem(display, IDC_PIECE_SET)), L"Diagram");
        SendDlgItemMessageW(display, IDC_LAYOUT, CB_SETCURSEL, 4, 0);     // "Lrg board, no list"
        SendDlgItemMessageW(display, IDC_PIECE_SET, CB_SETCURSEL, 3, 0);  // "Royal"
        CheckDlgButton(display, IDC_DISPLAY_ARROW, BST_UNCHECKED);
        Repaint(sheet);
        EXPECT_TRUE(test::SaveWindowShot(sheet, L"options-display"));
        HWND startup = ShowPage(sheet, 1);
        Repaint(sheet);
        EXPECT_TRUE(test::SaveWindowShot(sheet, L"options-startup"));
        // The template holds no 1005: the choices that depend on it stay disabled.
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(startup, IDC_STARTUP_NEW_GAME)));
        HWND colors = ShowPage(sheet, 2);
        Type(colors, IDC_WHITE_RED, L"300");  // keeps its low 8 bits: 44
        Type(colors, IDC_BLACK_GREEN, L"");   // reads as 0
        Repaint(sheet);
        EXPECT_TRUE(test::SaveWindowShot(sheet, L"options-colors"));
        PropSheet_PressButton(sheet, PSBTN_OK);
    });
    EXPECT_TRUE(ok);
    EXPECT_EQ(settings->displayArrow, 0u);
    EXPECT_EQ(settings->blackColor, 0x00800080u);
    // Intended: with this template the Startup page always stores "Database Option" 1.
    EXPECT_EQ(settings->openLastDatabase, 0u);
    EXPECT_EQ(settings->databaseOption, 1u);
    EXPECT_EQ(drawing->lightColour, 0x00FFFF2Cu);
    Settings next;  // what the next start reads
    next.Load(platform::SystemSettingsStore());
    EXPECT_EQ(next.layout, 3u);
    EXPECT_EQ(next.bitmapIndex, 3u);
    EXPECT_EQ(next.whiteColor, 0x00FFFF2Cu);

    // "Restore" puts back the colours of the moment the page opened; Cancel keeps the edits in
    // memory but neither stores them nor rebuilds the colours.
    ok = RunSheet(frame, *settings, [&](HWND sheet) {
        HWND display = ShowPage(sheet, 0);
        SendDlgItemMessageW(display, IDC_LAYOUT, CB_SETCURSEL, 1, 0);  // code 4
        HWND colors = ShowPage(sheet, 2);
        Type(colors, IDC_WHITE_RED, L"7");
        PressButton(colors, IDC_COLORS_RESTORE);
        EXPECT_EQ(WindowText(GetDlgItem(colors, IDC_WHITE_RED)), L"44");
        Type(colors, IDC_SELECT_BLUE, L"1");
        PropSheet_PressButton(sheet, PSBTN_CANCEL);
    });
    EXPECT_FALSE(ok);
    // Intended: a cancelled sheet leaves what its pages held in the settings.
    EXPECT_EQ(settings->layout, 4u);
    EXPECT_EQ(settings->selectColor, 0x000180FFu);
    EXPECT_EQ(drawing->highlightColour, 0x00FF80FFu);
    next.Load(platform::SystemSettingsStore());
    EXPECT_EQ(next.layout, 3u);
}

// Options chosen from the game window lay it out again at once: no list with a large board.
TEST_F(SearchAndOptionsTest, GameWindowFollowsTheLayoutChosen) {
    Game game;
    BoardView view(game);
    WhenPopup(HasControl(BoardView::kNotationId), [&](HWND board) {
        EXPECT_TRUE(IsWindowVisible(GetDlgItem(board, BoardView::kNotationId)));
        SendMessageW(board, WM_COMMAND, ID_OPTIONS, 0);
        Repaint(board);
        EXPECT_FALSE(IsWindowVisible(GetDlgItem(board, BoardView::kNotationId)));
        EXPECT_TRUE(test::SaveWindowShot(board, L"options-after"));
        SendMessageW(board, WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    WhenPopup(Titled(L"Velmora options"), [&](HWND sheet) {
        HWND display = ShowPage(sheet, 0);
        SendDlgItemMessageW(display, IDC_LAYOUT, CB_SETCURSEL, 4, 0);     // "Lrg board, no list"
        SendDlgItemMessageW(display, IDC_PIECE_SET, CB_SETCURSEL, 1, 0);  // "Staunton"
        PropSheet_PressButton(sheet, PSBTN_OK);
    });
    view.Run(frame, 0);
    EXPECT_TRUE(popupActions.empty());
    popupActions.clear();
}

}  // namespace
}  // namespace velmora::gui
