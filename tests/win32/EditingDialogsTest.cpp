// The dialogs that edit and save a game, run for real: the board editor with its messages, the
// headers and tags, the save target, the comment editor, and from the game window the promotion
// and new-line questions and the material balance. Each is photographed in portrait and in
// landscape.
#include "TestFiles.h"
#include "core/MoveRules.h"
#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/MoveTree.h"
#include "game/PgnParser.h"
#include "game/TagDictionary.h"
#include "gamewindow/BoardView.h"
#include "gamewindow/CommentDialog.h"
#include "gamewindow/GameHeadersDialog.h"
#include "gamewindow/SaveTargetDialog.h"
#include "gamewindow/SetupBoardDialog.h"
#include "gamewindow/TagsDialog.h"
#include "platform/win32/WideText.h"
#include "resources/resource.h"
#include "win32/GuiDriver.h"
#include "win32/ProgramDriver.h"

namespace velmora::gui {
namespace {

using e2e::MessageText;

std::wstring ControlText(HWND dialog, int id) {
    return WindowText(GetDlgItem(dialog, id));
}

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
    std::wstring firstError, warning, secondPieceButton;
    WhenPopup(Titled(L"Setup board"), [&](HWND dialog) {
        PhotographBothWays(dialog, L"setup-board");
        SendMessageW(dialog, WM_COMMAND, IDC_SETUP_CLEAR, 0);
        SendMessageW(dialog, WM_COMMAND, IDC_SETUP_WHITE_KING, 0);
        TapSetupSquare(dialog, "e1");
        TapSetupSquare(dialog, "d1");
        SendMessageW(dialog, WM_COMMAND, IDC_SETUP_BLACK_KING, 0);
        TapSetupSquare(dialog, "e8");
        SendMessageW(dialog, WM_COMMAND, IDC_SETUP_WHITE_ROOK, 0);
        TapSetupSquare(dialog, "h1");
        SendMessageW(dialog, WM_COMMAND, IDC_SETUP_BLACK_PAWN, 0);
        TapSetupSquare(dialog, "c7");
        TapSetupSquare(dialog, "c6");
        TapSetupSquare(dialog, "c6");  // the same piece twice: the square is empty again
        CheckDlgButton(dialog, IDC_BLACK_TO_PLAY, BST_CHECKED);
        CheckDlgButton(dialog, IDC_WHITE_TO_PLAY, BST_UNCHECKED);
        SetDlgItemInt(dialog, IDC_MOVE_NUMBER, 12, FALSE);
        Repaint(dialog);
        EXPECT_TRUE(test::SaveWindowShot(dialog, L"setup-board-placed"));
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);
        WhenPopup(MessageBoxTitled(L"Invalid position"), [&](HWND box) {
            firstError = MessageText(box);
            EXPECT_TRUE(test::SaveWindowShot(box, L"setup-board-invalid"));
            PostMessageW(box, WM_COMMAND, IDOK, 0);
            WhenPopup(Titled(L"Setup board"), [&](HWND again) {
                SendMessageW(again, WM_COMMAND, IDC_SETUP_WHITE_KING, 0);
                TapSetupSquare(again, "d1");  // takes the second king away
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
    EXPECT_EQ(value.At(50), kBlack + 1);
    EXPECT_EQ(value.At(42), 0);
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
    std::vector<std::wstring> players;
    LRESULT dateState = -1;
    bool lineChecked = false;
    WhenPopup(Titled(L"Game headers"), [&](HWND dialog) {
        HWND white = GetDlgItem(dialog, IDC_HEADER_WHITE);
        for (LRESULT i = 0; i < SendMessageW(white, CB_GETCOUNT, 0, 0); ++i) {
            wchar_t text[128] = {};
            SendMessageW(white, CB_GETLBTEXT, static_cast<WPARAM>(i),
                         reinterpret_cast<LPARAM>(text));
            players.push_back(text);
        }
        SYSTEMTIME time{};
        dateState = SendDlgItemMessageW(dialog, IDC_HEADER_DATE, DTM_GETSYSTEMTIME, 0,
                                        reinterpret_cast<LPARAM>(&time));
        lineChecked = IsDlgButtonChecked(dialog, IDC_RESULT_LINE) == BST_CHECKED;
        EXPECT_EQ(ControlText(dialog, IDC_HEADER_WHITE), L"Anna");
        PhotographBothWays(dialog, L"game-headers");
        SetDlgItemTextW(dialog, IDC_HEADER_BLACK, L"Boris New");
        CheckDlgButton(dialog, IDC_RESULT_LINE, BST_UNCHECKED);
        CheckDlgButton(dialog, IDC_RESULT_DRAW, BST_CHECKED);
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    });
    GameHeadersDialog dialog(game);
    ASSERT_EQ(dialog.DoModal(frame), 1);
    EXPECT_EQ(players, std::vector<std::wstring>{L"Zed Older"});
    EXPECT_EQ(dateState, GDT_NONE);
    EXPECT_TRUE(lineChecked);
    EXPECT_EQ(Text(game.white), u"Anna");
    EXPECT_EQ(Text(game.black), u"Boris New");
    EXPECT_EQ(Text(game.date), u"????.??.??");  // intended: the partial date is lost
    EXPECT_EQ(game.result, kDraw);
    EXPECT_EQ(game.modified, 1);
    ASSERT_GE(settings->recentPlayers.Count(), 2);
    EXPECT_EQ(settings->recentPlayers.At(settings->recentPlayers.Count() - 1), u"Boris New");
}

// Set finds a tag in any letter case, adds a new one as a row, Del removes one; the names
// the program writes itself are refused with a message.
TEST_F(EditingDialogsTest, TagsDialogSetsAndDeletesTagsThroughTheGame) {
    std::string dictionary = std::string(VELMORA_TEST_DATA_DIR) + "/../../resources/PgnTags.txt";
    GlobalTagDictionary().LoadFrom(std::u16string(dictionary.begin(), dictionary.end()),
                                   platform::SystemFileSystem());
    Game game;
    game.SetTag(u"ECO", u"C20");
    LRESULT offered = 0;
    int rowsAfterSet = 0;
    int rowsAfterDelete = 0;
    std::wstring refusal;
    WhenPopup(Titled(L"Tags"), [&](HWND dialog) {
        offered = SendDlgItemMessageW(dialog, IDC_TAG_NAME, CB_GETCOUNT, 0, 0);
        HWND list = GetDlgItem(dialog, IDC_TAG_LIST);
        SetDlgItemTextW(dialog, IDC_TAG_NAME, L"eco");
        SetDlgItemTextW(dialog, IDC_TAG_VALUE, L"C21");
        SendMessageW(dialog, WM_COMMAND, IDC_TAG_SET, 0);
        SetDlgItemTextW(dialog, IDC_TAG_NAME, L"Annotator");
        SetDlgItemTextW(dialog, IDC_TAG_VALUE, L"Velmora tester");
        SendMessageW(dialog, WM_COMMAND, IDC_TAG_SET, 0);
        rowsAfterSet = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
        EXPECT_EQ(ListViewColumn(list, 1), (std::vector<std::wstring>{L"C21", L"Velmora tester"}));
        PhotographBothWays(dialog, L"tags");
        SetDlgItemTextW(dialog, IDC_TAG_NAME, L"ECO");
        SendMessageW(dialog, WM_COMMAND, IDC_TAG_DELETE, 0);
        rowsAfterDelete = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
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
    EXPECT_GT(offered, 10);
    EXPECT_EQ(rowsAfterSet, 2);
    EXPECT_EQ(rowsAfterDelete, 1);
    EXPECT_NE(refusal.find(L"game headers"), std::wstring::npos) << testing::PrintToString(refusal);
    ASSERT_NE(game.FirstTag(), nullptr);
    EXPECT_EQ(Text(game.FirstTag()->name), u"Annotator");
    EXPECT_EQ(game.FirstTag()->next, nullptr);
}

// Two recent files give two "Append to" buttons, newest first, with the other buttons closed
// up below them; the second button appends to the older file.
TEST_F(EditingDialogsTest, SaveTargetNamesRecentFilesNewestFirstAndStacksTheButtons) {
    settings->recentFiles = RecentList(5);
    settings->recentFiles.Add(u"C:\\games\\older.pgn");
    settings->recentFiles.Add(u"C:\\games\\newer.pgn");
    std::wstring first, second;
    bool thirdHidden = false;
    int gap = -1;
    WhenPopup(Titled(L"Save game"), [&](HWND dialog) {
        first = ControlText(dialog, 1004);
        second = ControlText(dialog, 1005);
        thirdHidden = !IsWindowVisible(GetDlgItem(dialog, 1006));
        PhotographBothWays(dialog, L"save-target");
        RECT above{}, other{};
        GetWindowRect(GetDlgItem(dialog, 1005), &above);
        GetWindowRect(GetDlgItem(dialog, IDC_TARGET_OTHER_FILE), &other);
        gap = other.top - above.bottom;
        PostMessageW(dialog, WM_COMMAND, 1005, 0);
    });
    SaveTargetDialog dialog;
    std::u16string path;
    ASSERT_TRUE(dialog.Run(frame, &path));
    EXPECT_EQ(first, L"Append to newer.pgn");
    EXPECT_EQ(second, L"Append to older.pgn");
    EXPECT_TRUE(thirdHidden);
    EXPECT_EQ(gap, 2);
    EXPECT_EQ(path, u"C:\\games\\older.pgn");
    EXPECT_EQ(settings->recentFiles.At(settings->recentFiles.Count() - 1), u"C:\\games\\newer.pgn")
        << "a recent file chosen is not moved";
}

// Reset brings back the text the editor opened with, Clear empties it, Close keeps what is
// there with its line breaks as blanks.
TEST_F(EditingDialogsTest, CommentEditorResetsClearsAndKeepsTheText) {
    Position position;
    position.SetComment(u"Old words");
    std::wstring afterReset, afterClear;
    WhenPopup(Titled(L"Comment"), [&](HWND dialog) {
        PhotographBothWays(dialog, L"comment-editor");
        SetDlgItemTextW(dialog, IDC_COMMENT_TEXT, L"Something else");
        SendMessageW(dialog, WM_COMMAND, ID_COMMENT_RESET, 0);
        afterReset = ControlText(dialog, IDC_COMMENT_TEXT);
        SendMessageW(dialog, WM_COMMAND, ID_COMMENT_CLEAR, 0);
        afterClear = ControlText(dialog, IDC_COMMENT_TEXT);
        SetDlgItemTextW(dialog, IDC_COMMENT_TEXT, L"Two\r\nlines");
        PostMessageW(dialog, WM_COMMAND, ID_COMMENT_CLOSE, 0);
    });
    CommentDialog dialog(position);
    ASSERT_EQ(dialog.DoModal(frame), 1);
    EXPECT_EQ(afterReset, L"Old words");
    EXPECT_EQ(afterClear, L"");
    ASSERT_NE(position.Comment(), nullptr);
    EXPECT_EQ(std::u16string(position.Comment()), u"Two lines");
}

// A pawn tapped onto the last rank in the game window asks for its piece, then, beside the move
// that follows, whether it starts a new line: Replace takes the place of the line picked in the
// list. The material balance opens on the position reached.
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
    std::vector<std::wstring> offered, rows;
    WhenPopup(HasControl(BoardView::kNotationId), [&](HWND window) {
        WhenPopup(Titled(L"Promotion in"), [&](HWND dialog) {
            PhotographBothWays(dialog, L"promotion");
            PostMessageW(dialog, WM_COMMAND, IDC_PROMOTE_KNIGHT, 0);
        });
        WhenPopup(Titled(L"New line"), [&](HWND dialog) {
            offered = ListBoxRows(GetDlgItem(dialog, IDC_OTHER_MOVES));
            PhotographBothWays(dialog, L"new-line");
            SendDlgItemMessageW(dialog, IDC_OTHER_MOVES, LB_SETCURSEL, 0, 0);
            PostMessageW(dialog, WM_COMMAND, IDC_NEW_LINE_REPLACE, 0);
        });
        MoveByTaps(view, "b7", "b8");
        rows = ListBoxRows(view.Notation().Window());
        WhenPopup(Titled(L"Material Balance"), [&](HWND dialog) {
            PhotographBothWays(dialog, L"material-balance");
            PostMessageW(dialog, WM_COMMAND, IDOK, 0);
        });
        SendMessageW(window, WM_COMMAND, ID_MATERIAL_BALANCE, 0);
        game.modified = 0;
        SendMessageW(window, WM_COMMAND, ID_CLOSE_GAME, 0);
    });
    EXPECT_TRUE(view.Run(frame, 0));
    EXPECT_TRUE(popupActions.empty());
    popupActions.clear();
    EXPECT_EQ(offered, std::vector<std::wstring>{L"1. Kd2"});
    EXPECT_EQ(rows, (std::vector<std::wstring>{L"   ", L"1. b8=N"}));
}

}  // namespace
}  // namespace velmora::gui
