// Editing and saving games in Velmora20.exe itself, driven across processes: Save as, appending,
// and saving in place among other games, also after another program changed the file.
#include "win32/ProgramDriver.h"

#include <commctrl.h>

#include <filesystem>
#include <fstream>

#include "game/Game.h"
#include "game/GameIndex.h"
#include "game/MoveText.h"
#include "game/MoveTree.h"
#include "game/PgnParser.h"
#include "models/BoardLayout.h"
#include "platform/win32/WideText.h"
#include "resources/resource.h"

namespace velmora::e2e {
namespace {

constexpr int kNotationId = 2000;

// The game window: a dialog of the program holding the notation list.
HWND GameWindowOf(DWORD processId) {
    return DialogWithControl(processId, kNotationId);
}

// Sends a message to a window of the program, giving up after five seconds if it hangs.
LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DWORD_PTR result = 0;
    SendMessageTimeoutW(window, message, wParam, lParam, SMTO_ABORTIFHUNG, 5000, &result);
    return static_cast<LRESULT>(result);
}

void SetText(HWND dialog, int id, const wchar_t* text) {
    Send(GetDlgItem(dialog, id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
}

std::vector<std::wstring> NotationRows(HWND gameWindow) {
    HWND list = GetDlgItem(gameWindow, kNotationId);
    std::vector<std::wstring> rows(std::max<LRESULT>(Send(list, LB_GETCOUNT, 0, 0), 0));
    for (std::size_t row = 0; row < rows.size(); ++row) {
        wchar_t text[128] = {};
        Send(list, LB_GETTEXT, row, reinterpret_cast<LPARAM>(text));
        rows[row] = text;
    }
    return rows;
}

// Where a square's centre lies in the game window, from the same layout the window uses.
POINT SquareOnBoard(HWND gameWindow, const char* square) {
    RECT client{};
    GetClientRect(gameWindow, &client);
    BoardLayoutInput input;
    input.clientWidth = client.right;
    input.clientHeight = client.bottom;
    const Point centre =
        SquareCentre(ComputeBoardLayout(input).Placement(false), square[0] - 'a', square[1] - '1');
    return {centre.x, centre.y};
}

void Tap(HWND window, POINT point) {
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(point.x, point.y));
    PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(point.x, point.y));
}

// Presses and releases the left button at a point of the screen, as a person's tap does.
void ClickAt(int x, int y) {
    INPUT inputs[3] = {};
    const int width = GetSystemMetrics(SM_CXSCREEN);
    const int height = GetSystemMetrics(SM_CYSCREEN);
    inputs[0].type = INPUT_MOUSE;
    inputs[0].mi.dx = (x * 65536 + width / 2) / width;
    inputs[0].mi.dy = (y * 65536 + height / 2) / height;
    inputs[0].mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    inputs[1].type = INPUT_MOUSE;
    inputs[1].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    inputs[2].type = INPUT_MOUSE;
    inputs[2].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    SendInput(3, inputs, sizeof(INPUT));
}

void Command(HWND window, int id) {
    PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(id), 0);
}

std::string ReadBytes(const std::wstring& path) {  // "" while the file is missing
    std::ifstream in(std::filesystem::path(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// Game number (from 0) of a file as the program reads it back: "White: e2e4 e7e5", with "!"
// after a move with a glyph and "{}" after one with a comment.
std::string ReadBack(const std::wstring& path, int number) {
    GameIndex index(platform::win32::FromWin32(path).c_str());
    if (index.Load() == 0 || index.Count() <= number) return "<no such game>";
    Game game(&index);
    if (!LoadGame(game, nullptr, index.At(number).Offset(), index.Count()).Ok()) return "<error>";
    std::string text(game.white.View().begin(), game.white.View().end());
    text += ":";
    for (MoveNode* node = game.StartPosition().FirstContinuation(); node != nullptr;
         node = node->positionAfter->FirstContinuation()) {
        char16_t move[kSanBufferSize];
        text += " " + std::string(move, move + WriteCoordinates(node, move));
        if (node->nag != 0) text += "!";
        if (node->positionAfter->Comment() != nullptr) text += "{}";
    }
    return text;
}

class EditingEndToEnd : public EndToEnd {
  protected:
    void TearDown() override {
        for (const std::wstring& path : created_)
            DeleteFileW(path.c_str());
        EndToEnd::TearDown();
    }

    // Waits until what returns true, the time is up or the process has ended.
    bool WaitUntil(const Started& process, const std::function<bool()>& what) {
        HWND any = GetDesktopWindow();  // stands for "done": WaitFor waits for a window
        return WaitFor(process, [&] { return what() ? any : nullptr; }) != nullptr;
    }

    // Taps from and to on the game window, then waits for the notation list to hold rows.
    void PlayByTaps(const Started& process, HWND game, const char* from, const char* to,
                    size_t rows) {
        Tap(game, SquareOnBoard(game, from));
        Tap(game, SquareOnBoard(game, to));
        EXPECT_TRUE(WaitUntil(process, [&] { return NotationRows(game).size() == rows; }))
            << from << "-" << to << ": " << testing::PrintToString(NotationRows(game));
    }

    // Waits for a message box titled caption, returns its text and answers it.
    std::wstring Answer(const Started& process, const wchar_t* caption, int answer,
                        const wchar_t* photo = nullptr) {
        // The board editor shares its title with its warning: the box is the one without it.
        HWND box = WaitFor(process, [&] {
            return VisibleWindow(kDialogClass, process.id, [&](HWND window) {
                return WindowText(window) == caption &&
                       GetDlgItem(window, IDC_SETUP_COPY) == nullptr;
            });
        });
        if (box == nullptr) {
            ADD_FAILURE() << "no message box " << testing::PrintToString(std::wstring(caption));
            return {};
        }
        const std::wstring text = MessageText(box);
        if (photo != nullptr) Photograph(box, photo);
        PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(answer), 0);
        WaitUntil(process, [&] { return !IsWindow(box) || !IsWindowVisible(box); });
        return text;
    }

    // Chooses "Create new file" in the save-target dialog and types path into the picker.
    void SaveIntoNewFile(const Started& process, const std::wstring& path) {
        HWND target = WaitFor(process, [&] { return DialogWithControl(process.id, 1003); });
        ASSERT_NE(target, nullptr) << "no save-target dialog";
        Photograph(target, L"e2e-save-target");
        Command(target, IDC_TARGET_NEW_FILE);
        // The picker's file name box: the explorer style's combo box or the old style's edit.
        HWND picker = WaitFor(process, [&] {
            HWND found = DialogWithControl(process.id, 0x47C);
            return found != nullptr ? found : DialogWithControl(process.id, 0x480);
        });
        ASSERT_NE(picker, nullptr) << "no file picker";
        HWND name = GetDlgItem(picker, 0x47C) != nullptr ? GetDlgItem(picker, 0x47C)
                                                         : GetDlgItem(picker, 0x480);
        Send(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
        Command(picker, IDOK);
        created_.push_back(path);
    }

    std::vector<std::wstring> created_;
};

TEST_F(EditingEndToEnd, AnnotatesAGameSavesItAsANewFileAndAppendsASecond) {
    Started program = Start();
    HWND main = WaitForMainWindow(program, true);
    ASSERT_NE(main, nullptr);
    Command(main, ID_NEW_GAME);
    HWND game = WaitFor(program, [&] { return GameWindowOf(program.id); });
    ASSERT_NE(game, nullptr) << "no game window for a new game";
    PlayByTaps(program, game, "e2", "e4", 2);
    PlayByTaps(program, game, "e7", "e5", 3);
    PlayByTaps(program, game, "b1", "c3", 4);

    // On 2. Nc3: a glyph, an evaluation and a comment; then the headers.
    Command(game, ID_NAG_INTERESTING);
    Command(game, ID_EVAL_WHITE_SLIGHTLY_BETTER);
    Command(game, ID_EDIT_COMMENT);
    HWND comment =
        WaitFor(program, [&] { return DialogWithControl(program.id, IDC_COMMENT_TEXT); });
    ASSERT_NE(comment, nullptr) << "no comment editor";
    SetText(comment, IDC_COMMENT_TEXT, L"A quieter try");
    Command(comment, ID_COMMENT_CLOSE);
    EXPECT_TRUE(WaitUntil(program, [&] { return !IsWindow(comment); }));
    Photograph(game, L"e2e-game-window-edited");
    Command(game, ID_EDIT_HEADERS);
    HWND headers = WaitFor(program, [&] { return DialogWithControl(program.id, IDC_HEADER_MORE); });
    ASSERT_NE(headers, nullptr) << "no headers dialog";
    SetText(headers, IDC_HEADER_WHITE, L"Anna Test");
    SetText(headers, IDC_HEADER_EVENT, L"Club night");
    Command(headers, IDOK);
    EXPECT_TRUE(WaitUntil(program, [&] { return !IsWindow(headers); }));

    // Save as a new file, then read it back.
    const std::wstring saved = folder_ + L"\\edited.pgn";
    Command(game, ID_SAVE_AS);
    SaveIntoNewFile(program, saved);
    ASSERT_TRUE(WaitUntil(program, [&] { return !ReadBytes(saved).empty(); })) << "nothing saved";
    Send(game, WM_NULL, 0, 0);  // answered once the save's command has returned: the file is whole
    const std::string expected =
        "[Event \"Club night\"]\r\n[Site \"?\"]\r\n[Date \"????.??.??\"]\r\n[Round \"?\"]\r\n"
        "[White \"Anna Test\"]\r\n[Black \"Black\"]\r\n[Result \"*\"]\r\n\r\n"
        "1. e4 e5 2. Nc3!? $14 {A quieter try} *\r\n\r\n";
    EXPECT_EQ(ReadBytes(saved), expected);
    // Reading the game back ends at its first move glyph ("!?"), which drops what follows:
    // intended, glyph suffixes 1 to 6 end the move text when it is read.
    EXPECT_EQ(ReadBack(saved, 0), "Anna Test: e2e4 e7e5 b1c3");

    // A second game, appended through the recent-files choice.
    Command(game, ID_GAME_NEW_GAME);
    game = WaitFor(program, [&] {
        HWND next = GameWindowOf(program.id);
        return next != nullptr && NotationRows(next).size() == 1 ? next : nullptr;
    });
    ASSERT_NE(game, nullptr) << "no new game window";
    PlayByTaps(program, game, "d2", "d4", 2);
    Command(game, ID_SAVE);
    HWND target = WaitFor(program, [&] { return DialogWithControl(program.id, 1003); });
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(WindowText(GetDlgItem(target, 1004)), L"Append to edited.pgn");
    Command(target, 1004);
    ASSERT_TRUE(WaitUntil(program, [&] { return ReadBytes(saved).size() > expected.size(); }));
    Send(game, WM_NULL, 0, 0);
    EXPECT_EQ(ReadBytes(saved).substr(0, expected.size() + 2), expected + "\r\n")
        << "the first game changed, or the CR LF before the second is missing";
    EXPECT_EQ(ReadBack(saved, 1), "White: d2d4");
    Command(game, ID_CLOSE_GAME);
    EXPECT_TRUE(WaitUntil(program, [&] { return GameWindowOf(program.id) == nullptr; }));
    Close(program, main);
}

TEST_F(EditingEndToEnd, SavesInPlaceAmongOtherGamesAndNeverOverAnotherProgramsChange) {
    const std::string original = ReadBytes(pgnPath_);
    const size_t second = original.find("[White \"Dupont\"]");
    const size_t third = original.find("[Event \"Club Match\"]", second);
    ASSERT_NE(third, std::string::npos);

    Started program = Start(pgnPath_);
    ASSERT_NE(WaitForMainWindow(program, true), nullptr);
    HWND list = WaitFor(program, [&] { return GameListOf(program.id); });
    ASSERT_NE(list, nullptr) << "no game list";
    // A tap on the second row chooses the second game: rows are 13 to 20 pixels high.
    HWND rows = GetDlgItem(list, 1000);
    RECT headerRect{};
    GetWindowRect(reinterpret_cast<HWND>(Send(rows, LVM_GETHEADER, 0, 0)), &headerRect);
    ClickAt(headerRect.left + 30, headerRect.bottom + 24);
    HWND game = WaitFor(program, [&] { return GameWindowOf(program.id); });
    ASSERT_NE(game, nullptr) << "no game window for the second game";
    EXPECT_EQ(NotationRows(game).size(), 5u) << testing::PrintToString(NotationRows(game));

    Command(game, ID_LAST_MOVE);
    Command(game, ID_EVAL_WHITE_WINNING);
    Command(game, ID_SAVE);
    ASSERT_TRUE(WaitUntil(program, [&] { return ReadBytes(pgnPath_) != original; }));
    Send(game, WM_NULL, 0, 0);
    const std::string saved = ReadBytes(pgnPath_);
    EXPECT_EQ(saved.substr(0, second), original.substr(0, second)) << "the first game changed";
    EXPECT_TRUE(saved.ends_with(original.substr(third))) << "the third game changed";
    EXPECT_NE(saved.find("Qh4+ $16 0-1"), std::string::npos) << saved;
    EXPECT_EQ(GetFileAttributesW((pgnPath_ + L".bak").c_str()), INVALID_FILE_ATTRIBUTES)
        << "the backup is deleted once the file is complete";

    // Another program changes the second game; the next save must not splice over it.
    std::string changed = saved;
    changed.replace(changed.find("Dupont"), 6, "Dupond");
    std::ofstream(std::filesystem::path(pgnPath_), std::ios::binary) << changed;
    Command(game, ID_EVAL_BLACK_WINNING);
    Command(game, ID_SAVE);
    const std::wstring warning =
        Answer(program, L"The file has been changed", IDNO, L"e2e-file-changed");
    EXPECT_NE(warning.find(L"changed by another program"), std::wstring::npos)
        << testing::PrintToString(warning);
    EXPECT_EQ(ReadBytes(pgnPath_), changed) << "the file was written although it had changed";

    Command(game, ID_CLOSE_GAME);
    Answer(program, L"The game has been changed", IDNO);
    EXPECT_TRUE(WaitUntil(program, [&] { return GameWindowOf(program.id) == nullptr; }));
    Close(program, MainWindowOf(program.id));
}

}  // namespace
}  // namespace velmora::e2e
