// The "Start game" dialog: the engine names in a drop-down list whose item data is each name's
// index, the Play / Analyze choice and the engine's colour.
#include "gamewindow/StartGameDialog.h"

#include "resources/resource.h"

namespace velmora {

StartGameDialog::StartGameDialog(StartGameChoice& choice)
    : DialogBase(IDD_START_GAME, 0, 0), choice_(choice) {}

// Fills the list; an engine already loaded is selected and cannot be changed for another.
BOOL StartGameDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    HWND list = GetDlgItem(window_, IDC_START_ENGINE);
    for (std::size_t i = 0; i < choice_.names.size(); ++i) {
        const LRESULT row =
            SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(choice_.names[i].c_str()));
        SendMessageW(list, CB_SETITEMDATA, static_cast<WPARAM>(row), static_cast<LPARAM>(i));
    }
    const bool loaded =
        choice_.loadedIndex >= 0 && choice_.loadedIndex < static_cast<int>(choice_.names.size());
    SendMessageW(list, CB_SETCURSEL, loaded ? static_cast<WPARAM>(choice_.loadedIndex) : 0, 0);
    EnableWindow(list, loaded ? FALSE : TRUE);
    CheckRadioButton(window_, IDC_START_PLAY, IDC_START_ANALYZE, IDC_START_PLAY);
    CheckDlgButton(window_, IDC_ENGINE_PLAYS_BLACK, BST_CHECKED);
    FollowMode();
    return TRUE;
}

void StartGameDialog::FollowMode() {
    const bool play = IsDlgButtonChecked(window_, IDC_START_PLAY) == BST_CHECKED;
    EnableWindow(GetDlgItem(window_, IDC_ENGINE_PLAYS_BLACK), play ? TRUE : FALSE);
}

BOOL StartGameDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case IDC_START_PLAY:
        case IDC_START_ANALYZE:
            FollowMode();
            return TRUE;
        case IDC_START_BUTTON: {
            HWND list = GetDlgItem(window_, IDC_START_ENGINE);
            const LRESULT row = SendMessageW(list, CB_GETCURSEL, 0, 0);
            choice_.chosen = row == CB_ERR
                                 ? -1
                                 : static_cast<int>(SendMessageW(list, CB_GETITEMDATA,
                                                                 static_cast<WPARAM>(row), 0));
            choice_.play = IsDlgButtonChecked(window_, IDC_START_PLAY) == BST_CHECKED;
            choice_.enginePlaysBlack =
                IsDlgButtonChecked(window_, IDC_ENGINE_PLAYS_BLACK) == BST_CHECKED;
            EndDialog(window_, 1);
            return TRUE;
        }
        case IDC_START_CANCEL:
            EndDialog(window_, 2);
            return TRUE;
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
}

int RunStartGameDialog(HWND parent, StartGameChoice& choice) {
    StartGameDialog dialog(choice);
    return static_cast<int>(dialog.DoModal(parent));
}

}  // namespace velmora
