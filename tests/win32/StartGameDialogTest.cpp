// The "Start game" dialog run for real: the engine list with each name's index as item data,
// the loaded engine fixed, "Engine plays Black" following Play and Analyze, and what Start and
// Cancel return. Photographed in portrait and in landscape.
#include "gamewindow/StartGameDialog.h"
#include "resources/resource.h"
#include "win32/GuiDriver.h"

namespace velmora::gui {
namespace {

struct Seen {
    std::vector<std::wstring> names;
    std::vector<LRESULT> data;
    LRESULT selected = -1;
    bool listEnabled = false;
    bool play = false;
    bool analyze = true;
    bool black = false;
    bool blackEnabled = false;
};

Seen Look(HWND dialog) {
    Seen seen;
    HWND list = GetDlgItem(dialog, IDC_START_ENGINE);
    for (LRESULT row = 0; row < SendMessageW(list, CB_GETCOUNT, 0, 0); ++row) {
        wchar_t text[64] = {};
        SendMessageW(list, CB_GETLBTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text));
        seen.names.push_back(text);
        seen.data.push_back(SendMessageW(list, CB_GETITEMDATA, static_cast<WPARAM>(row), 0));
    }
    seen.selected = SendMessageW(list, CB_GETCURSEL, 0, 0);
    seen.listEnabled = IsWindowEnabled(list) != 0;
    seen.play = IsDlgButtonChecked(dialog, IDC_START_PLAY) == BST_CHECKED;
    seen.analyze = IsDlgButtonChecked(dialog, IDC_START_ANALYZE) == BST_CHECKED;
    seen.black = IsDlgButtonChecked(dialog, IDC_ENGINE_PLAYS_BLACK) == BST_CHECKED;
    seen.blackEnabled = IsWindowEnabled(GetDlgItem(dialog, IDC_ENGINE_PLAYS_BLACK)) != 0;
    return seen;
}

void Click(HWND dialog, int id) {
    SendDlgItemMessageW(dialog, id, BM_CLICK, 0, 0);
}

class StartGameDialogTest : public GuiTest {
  protected:
    void TearDown() override {
        pocketpc::SetOrientation(true);
        GuiTest::TearDown();
    }
    StartGameChoice choice{{u"Alpha", u"Beta", u"Gamma"}, -1, 7, false, false};
};

// No engine loaded yet: every name, the first selected, the list open to change; Play and
// "Engine plays Black" checked; Analyze disables the colour and Play enables it again.
TEST_F(StartGameDialogTest, FirstStartOffersEveryEngineAndReturnsTheChoices) {
    Seen opened, analyzing, playing;
    WhenPopup(Titled(L"Start game"), [&](HWND dialog) {
        opened = Look(dialog);
        PhotographBothWays(dialog, L"start-game");
        Click(dialog, IDC_START_ANALYZE);
        analyzing = Look(dialog);
        Click(dialog, IDC_START_PLAY);
        playing = Look(dialog);
        SendDlgItemMessageW(dialog, IDC_START_ENGINE, CB_SETCURSEL, 2, 0);
        Click(dialog, IDC_ENGINE_PLAYS_BLACK);
        PostMessageW(dialog, WM_COMMAND, IDC_START_BUTTON, 0);
    });
    ASSERT_EQ(RunStartGameDialog(frame, choice), 1);
    EXPECT_EQ(opened.names, (std::vector<std::wstring>{L"Alpha", L"Beta", L"Gamma"}));
    EXPECT_EQ(opened.data, (std::vector<LRESULT>{0, 1, 2}));
    EXPECT_EQ(opened.selected, 0);
    EXPECT_TRUE(opened.listEnabled);
    EXPECT_TRUE(opened.play && !opened.analyze && opened.black && opened.blackEnabled);
    EXPECT_TRUE(analyzing.analyze && !analyzing.play && !analyzing.blackEnabled);
    EXPECT_TRUE(playing.play && playing.blackEnabled);
    EXPECT_EQ(choice.chosen, 2);
    EXPECT_TRUE(choice.play);
    EXPECT_FALSE(choice.enginePlaysBlack);
}

// Cancel returns 2 and leaves the choice as it was. An engine already loaded stays the only
// choice: its entry is selected, the list disabled.
TEST_F(StartGameDialogTest, CancelLeavesTheChoiceAndALoadedEngineCannotBeChanged) {
    WhenPopup(Titled(L"Start game"), [&](HWND dialog) {
        SendDlgItemMessageW(dialog, IDC_START_ENGINE, CB_SETCURSEL, 2, 0);
        Click(dialog, IDC_START_CANCEL);
    });
    EXPECT_EQ(RunStartGameDialog(frame, choice), 2);
    EXPECT_EQ(choice.chosen, 7);
    EXPECT_FALSE(choice.play);

    choice.loadedIndex = 1;
    Seen opened;
    WhenPopup(Titled(L"Start game"), [&](HWND dialog) {
        opened = Look(dialog);
        Click(dialog, IDC_START_ANALYZE);
        Click(dialog, IDC_START_BUTTON);
    });
    ASSERT_EQ(RunStartGameDialog(frame, choice), 1);
    EXPECT_EQ(opened.selected, 1);
    EXPECT_FALSE(opened.listEnabled);
    EXPECT_EQ(choice.chosen, 1);
    EXPECT_FALSE(choice.play);
}

}  // namespace
}  // namespace velmora::gui
