// The dialog framework: templates by orientation, the shared dialog procedure and the
// re-layout of a dialog's controls when the screen turns.
#include "ui/DialogBase.h"

#include "ui/Application.h"
#include "ui/DeviceFrame.h"
#include "ui/MenuBar.h"
#include "ui/MessageBoxes.h"

namespace velmora {
namespace {

constexpr int kNeverMovedControl = 1108;

// Reads a template field that is an ordinal (0xFFFF, id), an empty string or a string, and
// returns the word after it; the string itself goes to text when asked.
const WORD* SkipSzOrOrdinal(const WORD* at, const wchar_t** text = nullptr,
                            WORD* ordinal = nullptr) {
    if (*at == 0xFFFF) {
        if (ordinal != nullptr) *ordinal = at[1];
        return at + 2;
    }
    if (text != nullptr) *text = reinterpret_cast<const wchar_t*>(at);
    while (*at != 0)
        ++at;
    return at + 1;
}

const WORD* AlignDword(const WORD* at) {
    auto address = reinterpret_cast<ULONG_PTR>(at);
    return reinterpret_cast<const WORD*>((address + 3) & ~static_cast<ULONG_PTR>(3));
}

}  // namespace

DialogBase::DialogBase(int portraitTemplate, int landscapeTemplate, int menuBarId, DWORD extraFlags)
    : portraitTemplate_(portraitTemplate),
      landscapeTemplate_(landscapeTemplate),
      menuBarId_(menuBarId),
      extraFlags_(extraFlags),
      portrait_(false) {}

DialogBase::DialogBase(int templateId, int menuBarId, DWORD extraFlags)
    : portraitTemplate_(templateId),
      landscapeTemplate_(templateId),
      menuBarId_(menuBarId),
      extraFlags_(extraFlags),
      portrait_(true) {}

DialogBase::~DialogBase() {
    if (window_ != nullptr && IsWindow(window_)) DestroyWindow(window_);
}

INT_PTR DialogBase::DoModal(HWND owner) {
    int templateId = pocketpc::ScreenIsPortrait() ? portraitTemplate_ : landscapeTemplate_;
    HINSTANCE module = App().resourceInstance;
    HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(templateId), RT_DIALOG);
    HGLOBAL loaded = resource != nullptr ? LoadResource(module, resource) : nullptr;
    INT_PTR result = -1;
    if (loaded != nullptr) {
        result = DialogBoxIndirectParamW(module, static_cast<LPCDLGTEMPLATEW>(LockResource(loaded)),
                                         owner, SharedProc, reinterpret_cast<LPARAM>(this));
    } else {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    }
    if (result == -1) {
        SystemErrorBox(GetLastError(), L"DialogBoxParam", window_);
        return -1;
    }
    pocketpc::ForgetDialog(window_);
    window_ = nullptr;
    menuBar_ = nullptr;
    return result;
}

INT_PTR CALLBACK DialogBase::SharedProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DialogBase* dialog = nullptr;
    if (message == WM_INITDIALOG) {
        dialog = reinterpret_cast<DialogBase*>(lParam);
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        if (dialog != nullptr) dialog->window_ = window;
    } else {
        dialog = reinterpret_cast<DialogBase*>(GetWindowLongPtrW(window, DWLP_USER));
    }
    if (dialog == nullptr) return 0;
    return dialog->DialogProc(message, wParam, lParam);
}

INT_PTR DialogBase::DialogProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            previousOwner_ = SwapCurrentOwner(window_);
            return OnInitDialog();
        case WM_SIZE: {
            RECT client{};
            GetClientRect(window_, &client);
            bool portrait = client.bottom > client.right;
            if (portrait != portrait_ && portraitTemplate_ != landscapeTemplate_) {
                portrait_ = portrait;
                LayoutFromTemplate(App().resourceInstance, window_,
                                   portrait ? portraitTemplate_ : landscapeTemplate_);
            }
            portrait_ = portrait;
            pocketpc::PlaceMenuBar(menuBar_);
            return 1;
        }
        case WM_COMMAND:
            return OnCommand(wParam, lParam);
        case WM_LBUTTONDOWN:
            pocketpc::HideInputPanel();
            return 1;
        case WM_CLOSE:
            SwapCurrentOwner(previousOwner_);
            EndDialog(window_, 2);
            return 1;
        default:
            return 0;
    }
}

BOOL DialogBase::OnInitDialog() {
    DWORD flags;
    if (menuBarId_ != 0) {
        flags = pocketpc::kSizeFullScreen;
    } else {
        flags = (extraFlags_ & pocketpc::kEmptyMenu) != 0 ? pocketpc::kSizeFullScreen
                                                          : pocketpc::kFullScreenNoMenuBar;
    }
    flags |= extraFlags_;
    if (!pocketpc::InitDialog(window_, flags)) {
        SystemErrorBox(GetLastError(), L"SHInitDialog", window_);
        EndDialog(window_, 2);
        return FALSE;
    }
    if (menuBarId_ != 0) {
        menuBar_ = pocketpc::CreateMenuBar(window_, App().resourceInstance, menuBarId_);
        if (menuBar_ == nullptr) {
            SystemErrorBox(GetLastError(), L"SHCreateMenuBar", window_);
            EndDialog(window_, 2);
            return FALSE;
        }
        ShowWindow(menuBar_, SW_SHOW);
    } else {
        menuBar_ = pocketpc::FindMenuBar(window_);
    }
    return TRUE;
}

BOOL DialogBase::OnCommand(WPARAM wParam, LPARAM) {
    if (LOWORD(wParam) == IDCANCEL) EndDialog(window_, 2);
    return 0;
}

void LayoutFromTemplate(HINSTANCE module, HWND dialog, int templateId) {
    HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(templateId), RT_DIALOG);
    if (resource == nullptr) return;
    HGLOBAL loaded = LoadResource(module, resource);
    if (loaded == nullptr) return;
    const auto* header = static_cast<const DLGTEMPLATE*>(LockResource(loaded));
    if (header == nullptr || HIWORD(header->style) == 0xFFFF) return;  // not a classic template
    const WORD* at = reinterpret_cast<const WORD*>(header + 1);
    at = SkipSzOrOrdinal(at);  // menu
    at = SkipSzOrOrdinal(at);  // class
    at = SkipSzOrOrdinal(at);  // title
    if ((header->style & DS_SETFONT) != 0) {
        ++at;  // point size
        at = SkipSzOrOrdinal(at);
    }
    HDWP positions = BeginDeferWindowPos(header->cdit);
    for (int i = 0; i < header->cdit && positions != nullptr; ++i) {
        at = AlignDword(at);
        const auto* item = reinterpret_cast<const DLGITEMTEMPLATE*>(at);
        at = reinterpret_cast<const WORD*>(item + 1);
        WORD classOrdinal = 0;
        const wchar_t* title = nullptr;
        WORD titleOrdinal = 0;
        at = SkipSzOrOrdinal(at, nullptr, &classOrdinal);
        at = SkipSzOrOrdinal(at, &title, &titleOrdinal);
        WORD extra = *at;
        at = reinterpret_cast<const WORD*>(reinterpret_cast<const BYTE*>(at) +
                                           (extra == 0 ? 2 : extra));
        if (item->id == kNeverMovedControl) continue;
        HWND control = GetDlgItem(dialog, item->id);
        if (control == nullptr) continue;
        RECT rect{item->x, item->y, item->x + item->cx, item->y + item->cy};
        MapDialogRect(dialog, &rect);
        positions = DeferWindowPos(positions, control, nullptr, rect.left, rect.top,
                                   rect.right - rect.left, rect.bottom - rect.top, SWP_NOZORDER);
        // Buttons (0x0080) and static texts (0x0082) take the template's wording too.
        if ((classOrdinal == 0x0080 || classOrdinal == 0x0082) && title != nullptr) {
            SetWindowTextW(control, title);
        }
    }
    if (positions != nullptr) EndDeferWindowPos(positions);
}

std::u16string ControlText(HWND dialog, int id) {
    HWND control = GetDlgItem(dialog, id);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(control, text.data(), static_cast<int>(text.size()))));
    return std::u16string(text.begin(), text.end());
}

void ShowWaitCursor(bool on) {
    static HCURSOR wait = LoadCursorW(nullptr, IDC_WAIT);
    SetCursor(on ? wait : nullptr);
}

}  // namespace velmora
