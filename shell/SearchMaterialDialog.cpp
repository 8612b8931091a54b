// The material editor of the search dialog: ten number boxes with spin buttons.
#include "shell/SearchMaterialDialog.h"

#include <commctrl.h>

#include "resources/resource.h"

namespace velmora {
namespace {

// The box of a side's count of a piece type (1 pawn .. 5 queen), and its spin button.
int BoxOf(bool white, int type) {
    return IDC_WANTED_FIRST + (white ? 0 : 5) + type - 1;
}
int SpinOf(bool white, int type) {
    return IDC_WANTED_SPIN_FIRST + (white ? 0 : 5) + type - 1;
}

}  // namespace

SearchMaterialDialog::SearchMaterialDialog(MaterialWanted& wanted)
    : DialogBase(IDD_SEARCH_MATERIAL, 0, 0), wanted_(wanted) {}

BOOL SearchMaterialDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    for (bool white : {true, false}) {
        const auto& counts = white ? wanted_.white : wanted_.black;
        for (int type = 1; type <= 5; ++type) {
            SendDlgItemMessageW(window_, SpinOf(white, type), UDM_SETRANGE32, 0,
                                MaterialWanted::MostOf(type));
            SetDlgItemInt(window_, BoxOf(white, type), counts[type], FALSE);
        }
    }
    return TRUE;
}

BOOL SearchMaterialDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case IDOK:
            for (bool white : {true, false}) {
                for (int type = 1; type <= 5; ++type) {
                    wanted_.Set(white, type,
                                static_cast<int>(
                                    GetDlgItemInt(window_, BoxOf(white, type), nullptr, FALSE)));
                }
            }
            EndDialog(window_, 1);
            return TRUE;
        case IDCANCEL:
            EndDialog(window_, 0);
            return TRUE;
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
}

}  // namespace velmora
