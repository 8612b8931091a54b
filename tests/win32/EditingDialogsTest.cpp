// The dialogs that edit a game, run for real and photographed in portrait and in landscape.
#include "TestFiles.h"
#include "core/MoveRules.h"
#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/MoveTree.h"
#include "game/PgnParser.h"
#include "game/TagDictionary.h"
#include "gamewindow/BoardView.h"
#include "gamewindow/GameHeadersDialog.h"
#include "gamewindow/SetupBoardDialog.h"
#include "gamewindow/TagsDialog.h"
#include "platform/win32/WideText.h"
#include "resources/resource.h"
#include "win32/GuiDriver.h"

namespace velmora::gui {
namespace {

std::u16string Text(const OwnedText& text) {
    return text.Get() != nullptr ? text.Get() : u"<none>";
}

// A message box over a dialog: titled caption, without the dialog's own controls.
std::function<bool(HWND)> MessageBoxTitled(const std::wstring& caption) {
    return [caption](HWND window) {
        return Titled(caption)(window) && GetDlgItem(window, IDC_SETUP_CLEAR) == nullptr &&
               FindWindowExW(window, nullptr, L"Static", nullptr) != nullptr;
    };
}

class EditingDialogsTest : public GuiTest {
  protected:
    void TearDown() override {
        pocketpc::SetOrientation(true);
        GuiTest::TearDown();
    }

    // A tap on the editor's board at a square ("e1").
    static void TapSetupSquare(HWND dialog, const char* square) {
        const int file = square[0] - 'a';
        const int rank = square[1] - '1';
        const int x = 3 + 19 * file + 9;
        const int y = 3 + 19 * (7 - rank) + 9;
        SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    }
};

// Two white kings are refused; a rook missing from its corner turns that right off with a
// warning, and the accepted position keeps only the rights the board allows.
TEST_F(EditingDialogsTest, BoardEditorChecksKingsAndCastlingAndStoresTheChoices) {
    Game game;
    Position source;
    std::wstring firstError, warning;
    WhenPopup(Titled(L"Setup board"), [&](HWND dialog) {
        PhotographBothWays(dialog, L"setup-board");
        SendMessageW(dialog, WM_COMMAND, IDC_SETUP_CLEAR, 0);
        const std::pair<int, const char*> placed[] = {{IDC_SETUP_WHITE_KING, "e1"},
                                                      {IDC_SETUP_WHITE_KING, "d1"},
                                                      {IDC_SETUP_BLACK_KING, "e8"},
                                                      {IDC_SETUP_WHITE_ROOK, "h1"}};
        for (const auto& [piece, square] : placed) {
            SendMessageW(dialog, WM_COMMAND, piece, 0);
            TapSetupSquare(dialog, square);
        }
        CheckDlgButton(dialog, IDC_BLACK_TO_PLAY, BST_CHECKED);
        CheckDlgButton(dialog, IDC_WHITE_TO_PLAY, BST_UNCHECKED);
        SetDlgItemInt(dialog, IDC_MOVE_NUMBER, 12, FALSE);
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);
        WhenPopup(MessageBoxTitled(L"Invalid position"), [&](HWND box) {
            firstError = MessageText(box);
            PostMessageW(box, WM_COMMAND, IDOK, 0);
            WhenPopup(Titled(L"Setup board"), [&](HWND again) {
                SendMessageW(again, WM_COMMAND, IDC_SETUP_WHITE_KING, 0);
                TapSetupSquare(again, "d1");  // the same piece again: the square is emptied
                PostMessageW(again, WM_COMMAND, IDOK, 0);
                WhenPopup(MessageBoxTitled(L"Setup board"), [&](HWND box2) {
                    warning = MessageText(box2);
                    PostMessageW(box2, WM_COMMAND, IDOK, 0);
                });
            });
        });
    });
    SetupBoardDialog dialog(game, &source, false);
    ASSERT_EQ(dialog.DoModal(frame), 1);
    EXPECT_EQ(firstError, L"Only one white king please");
    EXPECT_EQ(warning, L"White O-O-O,Black O-O,Black O-O-O disabled");
    const PositionValue& value = game.StartPosition().Value();
    EXPECT_EQ(value.At(4), 6);
    EXPECT_EQ(value.At(3), 0);
    EXPECT_EQ(value.At(60), kBlack + 6);
    EXPECT_EQ(value.castleWhiteKing, 1);
    EXPECT_EQ(value.castleWhiteQueen + value.castleBlackKing + value.castleBlackQueen, 0);
    EXPECT_EQ(value.sideToMove, kBlack);
    EXPECT_EQ(value.moveNumber, 12);
    EXPECT_TRUE(game.StartPosition().setUp);
    EXPECT_EQ(game.modified, 1);
}

// The names come from the recent lists, a year-only date shows as none and is stored as
// "????.??.??" (the loss is intended), and a typed name becomes the newest recent player.
TEST_F(EditingDialogsTest, HeadersShowRecentNamesAndStoreWhatWasTyped) {
    settings->recentPlayers.Add(u"Zed Older");
    Game game;
    game.SetWhite(u"Anna");
    game.SetDate(u"1999.??.??");
    game.modified = 0;
    WhenPopup(Titled(L"Game headers"), [&](HWND dialog) {
        wchar_t recent[128] = {};
        EXPECT_EQ(SendDlgItemMessageW(dialog, IDC_HEADER_WHITE, CB_GETCOUNT, 0, 0), 1);
        SendDlgItemMessageW(dialog, IDC_HEADER_WHITE, CB_GETLBTEXT, 0,
                            reinterpret_cast<LPARAM>(recent));
        EXPECT_STREQ(recent, L"Zed Older");
        SYSTEMTIME time{};
        EXPECT_EQ(SendDlgItemMessageW(dialog, IDC_HEADER_DATE, DTM_GETSYSTEMTIME, 0,
                                      reinterpret_cast<LPARAM>(&time)),
                  GDT_NONE);
        EXPECT_EQ(WindowText(GetDlgItem(dialog, IDC_HEADER_WHITE)), L"Anna");
        PhotographBothWays(dialog, L"game-headers");
        SetDlgItemTextW(dialog, IDC_HEADER_BLACK, L"Boris New");
        CheckDlgButton(dialog, IDC_RESULT_LINE, BST_UNCHECKED);
        CheckDlgButton(dialog, IDC_RESULT_DRAW, BST_CHECKED);
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    });
    GameHeadersDialog dialog(game);
    ASSERT_EQ(dialog.DoModal(frame), 1);
    EXPECT_EQ(Text(game.black), u"Boris New");
    EXPECT_EQ(Text(game.date), u"????.??.??");  // intended: the partial date is lost
    EXPECT_EQ(game.result, kDraw);
    EXPECT_EQ(game.modified, 1);
    ASSERT_GE(settings->recentPlayers.Count(), 2);
    EXPECT_EQ(settings->recentPlayers.At(settings->recentPlayers.Count() - 1), u"Boris New");
}

// Set adds a tag as a row, Del removes one found in any letter case; the names the program
// writes itself are refused with a message.
TEST_F(EditingDialogsTest, TagsDialogSetsAndDeletesTagsThroughTheGame) {
    std::string dictionary = std::string(VELMORA_TEST_DATA_DIR) + "/../../resources/PgnTags.txt";
    GlobalTagDictionary().LoadFrom(std::u16string(dictionary.begin(), dictionary.end()),
                                   platform::SystemFileSystem());
    Game game;
    game.SetTag(u"ECO", u"C20");
    std::wstring refusal;
    WhenPopup(Titled(L"Tags"), [&](HWND dialog) {
        EXPECT_GT(SendDlgItemMessageW(dialog, IDC_TAG_NAME, CB_GETCOUNT, 0, 0), 10);
        HWND list = GetDlgItem(dialog, IDC_TAG_LIST);
        SetDlgItemTextW(dialog, IDC_TAG_NAME, L"Annotator");
        SetDlgItemTextW(dialog, IDC_TAG_VALUE, L"Velmora tester");
        SendMessageW(dialog, WM_COMMAND, IDC_TAG_SET, 0);
        EXPECT_EQ(ListViewColumn(list, 1), (std::vector<std::wstring>{L"C20", L"Velmora tester"}));
        PhotographBothWays(dialog, L"tags");
        SetDlgItemTextW(dialog, IDC_TAG_NAME, L"eco");
        SendMessageW(dialog, WM_COMMAND, IDC_TAG_DELETE, 0);
        EXPECT_EQ(ListViewColumn(list, 1), std::vector<std::wstring>{L"Velmora tester"});
        SetDlgItemTextW(dialog, IDC_TAG_NAME, L"white");
        PostMessageW(dialog, WM_COMMAND, IDC_TAG_SET, 0);
        WhenPopup(MessageBoxTitled(L"Tags"), [&](HWND box) {
            refusal = MessageText(box);
            PostMessageW(box, WM_COMMAND, IDOK, 0);
            WhenPopup(Titled(L"Tags"),
                      [&](HWND again) { PostMessageW(again, WM_COMMAND, IDOK, 0); });
        });
    });
    TagsDialog dialog(game);
    ASSERT_EQ(dialog.DoModal(frame), 1);
    EXPECT_NE(refusal.find(L"game headers"), std::wstring::npos) << testing::PrintToString(refusal);
    ASSERT_NE(game.FirstTag(), nullptr);
    EXPECT_EQ(Text(game.FirstTag()->name), u"Annotator");
    EXPECT_EQ(game.FirstTag()->next, nullptr);
}

// A pawn tapped onto the last rank asks for its piece, then whether it starts a new line.
TEST_F(EditingDialogsTest, MoveEntryAsksForThePieceAndTheNewLine) {
    test::TempFolder folder;
    const std::u16string path = folder.Path("promotion.pgn");
    test::WriteBytes(path,
                     "[White \"Me\"]\n[Black \"?\"]\n[Result \"*\"]\n[SetUp \"1\"]\n"
                     "[FEN \"4k3/1P6/8/8/8/8/8/4K3 w - - 0 1\"]\n\n1. Kd2 *\n");
    GameIndex index(path.c_str());
    ASSERT_EQ(index.Load(), 1);
    Game game(&index);
    ASSERT_TRUE(LoadGame(game, nullptr, index.At(0).Offset(), index.Count()).Ok());
    game.GoToStart();
    BoardView view(game);
    WhenPopup(HasControl(BoardView::kNotationId), [&](HWND window) {
        WhenPopup(Titled(L"Promotion in"), [&](HWND dialog) {
            PhotographBothWays(dialog, L"promotion");
            PostMessageW(dialog, WM_COMMAND, IDC_PROMOTE_KNIGHT, 0);
        });
        WhenPopup(Titled(L"New line"), [&](HWND dialog) {
            EXPECT_EQ(ListBoxRows(GetDlgItem(dialog, IDC_OTHER_MOVES)),
                      std::vector<std::wstring>{L"1. Kd2"});
            PhotographBothWays(dialog, L"new-line");
            SendDlgItemMessageW(dialog, IDC_OTHER_MOVES, LB_SETCURSEL, 0, 0);
            PostMessageW(dialog, WM_COMMAND, IDC_NEW_LINE_REPLACE, 0);
        });
        MoveByTaps(view, "b7", "b8");
        EXPECT_EQ(ListBoxRows(view.Notation().Window()),
                  (std::vector<std::wstring>{L"   ", L"1. b8=N"}));
        game.modified = 0;
        SendMessageW(window, WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    EXPECT_TRUE(view.Run(frame, 0));
    EXPECT_TRUE(popupActions.empty());
    popupActions.clear();
}

}  // namespace
}  // namespace velmora::gui
