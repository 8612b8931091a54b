// Velmora20.exe itself, started as a separate process: the ".pgn" association question, the
// hand-over from a second copy to the running one, and the French texts.
#include "win32/ProgramDriver.h"

namespace velmora::e2e {
namespace {

// Runs only in the CTest entry velmora_win32_tests_french, whose Wine reports French.
class EndToEndFrench : public EndToEnd {
  protected:
    void SetUp() override {
        if (GetSystemDefaultLangID() != kFrench) {
            GTEST_SKIP() << "needs French as the system language (CTest entry "
                            "velmora_win32_tests_french)";
        }
        EndToEnd::SetUp();
    }
};

// No writes nothing and the question comes back; Yes registers the program, so that a second
// copy started then asks nothing: it brings the running one to the front and ends.
TEST_F(EndToEnd, AssociationQuestionThenASecondCopyHandsOverToTheFirst) {
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L".pgn");
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L"pgnfile");
    Started first;
    HWND main = nullptr;
    for (const int answer : {IDNO, IDYES}) {
        SCOPED_TRACE(answer == IDNO ? "answered No" : "answered Yes");
        first = Start();
        HWND box = WaitFor(first, [&] { return QuestionBoxOf(first.id); });
        ASSERT_NE(box, nullptr) << "no question box";
        EXPECT_EQ(MessageText(box), kQuestion);
        EXPECT_EQ(MainWindowOf(first.id), nullptr) << "the question comes before the main window";
        if (answer == IDYES) Photograph(box, L"e2e-association-question");
        PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(answer), 0);
        main = WaitForMainWindow(first, false);
        ASSERT_NE(main, nullptr) << "no main window after the answer";
        if (answer == IDNO) Close(first, main);
    }

    // Another window in front, so that the hand-over has something to undo.
    struct TestWindow {
        HWND handle = CreateWindowExW(0, L"Static", L"Velmora end-to-end test",
                                      WS_OVERLAPPEDWINDOW | WS_VISIBLE, 500, 300, 300, 200, nullptr,
                                      nullptr, GetModuleHandleW(nullptr), nullptr);
        ~TestWindow() {
            if (handle != nullptr) DestroyWindow(handle);
        }
    } other;
    ASSERT_NE(other.handle, nullptr);
    ASSERT_TRUE(HoldInFront(other.handle)) << "the test window does not stay in front";

    Started second = Start();
    bool secondHasMainWindow = false;
    bool secondAsked = false;
    for (DWORD waited = 0;
         waited < kExitWaitMs && WaitForSingleObject(second.handle, 0) == WAIT_TIMEOUT;
         waited += kStepMs) {
        secondHasMainWindow |= !TopLevelWindows(kMain, second.id).empty();
        if (HWND box = QuestionBoxOf(second.id); box != nullptr) {
            secondAsked = true;
            PostMessageW(box, WM_COMMAND, IDNO, 0);
        }
        Step();
    }
    EXPECT_EQ(ExitCode(second, 0), 0u) << "the second copy did not end with 0 by itself";
    EXPECT_FALSE(secondHasMainWindow) << "the second copy opened a main window";
    EXPECT_FALSE(secondAsked) << "the question came again although the program is registered";
    ASSERT_TRUE(IsWindow(main)) << "the first copy's main window is gone";

    auto inFront = [&] {
        HWND front = GetForegroundWindow();
        return front != nullptr && (front == main || front == GetLastActivePopup(main));
    };
    for (int i = 0; i < 10 && !inFront(); ++i)
        Step();
    EXPECT_TRUE(inFront()) << "foreground window: "
                           << testing::PrintToString(WindowText(GetForegroundWindow()));
    Close(first, main);
}

TEST_F(EndToEndFrench, FileOnTheCommandLineOpensTheFrenchGameList) {
    Started program = Start(pgnPath_);
    HWND main = WaitForMainWindow(program, true);
    ASSERT_NE(main, nullptr) << "no main window";
    HWND list = WaitFor(program, [&] { return GameListOf(program.id); });
    ASSERT_NE(list, nullptr) << "no game list for the file on the command line";

    const std::pair<int, const wchar_t*> kBoxes[] = {
        {1001, L"R\u00E9sultat"}, {1003, L"Tournoi"}, {1004, L"Ronde"}, {1056, L"D\u00E9but"}};
    for (const auto& [id, text] : kBoxes) {
        wchar_t shown[64] = {};
        GetDlgItemTextW(list, id, shown, 64);
        EXPECT_EQ(std::wstring(shown), text) << "check box " << id;
    }
    Photograph(list, L"e2e-game-list-french");

    PostMessageW(list, WM_COMMAND, IDOK, 0);  // the list's OK chooses nothing
    ASSERT_NE(WaitFor(program, [&] { return GameListOf(program.id) == nullptr ? main : nullptr; }),
              nullptr)
        << "the game list did not close";
    // A text from the string table: the document list's first folder choice.
    HWND chooser = FindWindowExW(GetDlgItem(main, kDocListId), nullptr, L"ComboBox", nullptr);
    wchar_t first[256] = {};
    DWORD_PTR length = 0;
    SendMessageTimeoutW(chooser, CB_GETLBTEXT, 0, reinterpret_cast<LPARAM>(first), SMTO_ABORTIFHUNG,
                        5000, &length);
    EXPECT_STREQ(first, L"Tous les dossiers");
    Close(program, main);
}

}  // namespace
}  // namespace velmora::e2e
