// The About box: full screen with an "OK" bar, laid out again from the other template when
// the screen turns.
#include "ui/AboutDialog.h"

#include "resources/resource.h"
#include "ui/Application.h"
#include "ui/DeviceFrame.h"
#include "ui/DialogBase.h"
#include "ui/DrawingResources.h"
#include "ui/MenuBar.h"

namespace velmora {
namespace {

INT_PTR CALLBACK AboutProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            pocketpc::InitDialog(dialog, pocketpc::kDoneButton | pocketpc::kSipDown |
                                             pocketpc::kFullScreenNoMenuBar | pocketpc::kEmptyMenu);
            // Marks the dialog as set up: only later sizes re-lay it out.
            SetWindowLongPtrW(dialog, DWLP_USER, 1);
            // The French module carries no icon: the icon and the bold title come from here.
            SendDlgItemMessageW(dialog, IDC_ABOUT_ICON, STM_SETICON,
                                reinterpret_cast<WPARAM>(LoadIconW(App().programInstance,
                                                                   MAKEINTRESOURCEW(IDI_VELMORA))),
                                0);
            if (App().drawing != nullptr) {
                SendDlgItemMessageW(dialog, IDC_ABOUT_TITLE, WM_SETFONT,
                                    reinterpret_cast<WPARAM>(App().drawing->boldFont), TRUE);
            }
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) EndDialog(dialog, 1);
            return TRUE;
        case WM_SIZE:
            if (GetWindowLongPtrW(dialog, DWLP_USER) != 0) {
                LayoutFromTemplate(
                    App().resourceInstance, dialog,
                    HIWORD(lParam) >= LOWORD(lParam) ? IDD_ABOUT : IDD_ABOUT_LANDSCAPE);
                pocketpc::PlaceMenuBar(pocketpc::FindMenuBar(dialog));
            }
            return TRUE;
        case WM_DESTROY:
            pocketpc::ForgetDialog(dialog);
            return FALSE;
        default:
            return FALSE;
    }
}

}  // namespace

void ShowAboutDialog(HWND owner) {
    int templateId = pocketpc::ScreenIsPortrait() ? IDD_ABOUT : IDD_ABOUT_LANDSCAPE;
    HRSRC resource = FindResourceW(App().resourceInstance, MAKEINTRESOURCEW(templateId), RT_DIALOG);
    HGLOBAL loaded = resource != nullptr ? LoadResource(App().resourceInstance, resource) : nullptr;
    if (loaded == nullptr) return;
    DialogBoxIndirectParamW(App().resourceInstance,
                            static_cast<LPCDLGTEMPLATEW>(LockResource(loaded)), owner, AboutProc,
                            0);
}

}  // namespace velmora
