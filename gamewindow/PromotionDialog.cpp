// The "Promotion in" dialog: four buttons, one per piece a pawn may become.
#include "gamewindow/PromotionDialog.h"

#include "resources/resource.h"

namespace velmora {

PromotionDialog::PromotionDialog() : DialogBase(IDD_PROMOTION, 0, 0) {}

BOOL PromotionDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case IDC_PROMOTE_QUEEN:
            piece_ = 5;
            break;
        case IDC_PROMOTE_ROOK:
            piece_ = 2;
            break;
        case IDC_PROMOTE_KNIGHT:
            piece_ = 3;
            break;
        case IDC_PROMOTE_BISHOP:
            piece_ = 4;
            break;
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
    EndDialog(window_, 1);
    return TRUE;
}

int ChoosePromotionPiece(void* context) {
    HWND window = static_cast<HWND>(context);
    if (window == nullptr || !IsWindow(window)) return 0;
    PromotionDialog dialog;
    if (dialog.DoModal(window) != 1) return 0;
    return dialog.Piece();
}

}  // namespace velmora
