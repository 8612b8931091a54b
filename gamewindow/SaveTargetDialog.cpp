// The save-target dialog: its buttons named from the recent files and stacked without gaps,
// and the file pickers behind "Create new file" and "Append to another file".
#include "gamewindow/SaveTargetDialog.h"

#include <commdlg.h>

#include <vector>

#include "game/PgnSave.h"
#include "models/SaveTargets.h"
#include "models/Settings.h"
#include "resources/resource.h"
#include "ui/Application.h"
#include "ui/DeviceFrame.h"

namespace velmora {
namespace {

constexpr int kStacked[] = {IDC_TARGET_NEW_FILE,   1004,    1005, 1006, 1007, 1008,
                            IDC_TARGET_OTHER_FILE, IDCANCEL};
// The picker's filter, in English in every language.
constexpr wchar_t kFilter[] = L"PGN files\0*.pgn\0All files\0*.*\0";
constexpr int kPathLength = 260;

}  // namespace

SaveTargetDialog::SaveTargetDialog() : DialogBase(IDD_SAVE_TARGET, 0, pocketpc::kDoneButton) {}

bool SaveTargetDialog::Run(HWND owner, std::u16string* path) {
    path_ = path;
    return DoModal(owner) == 1;
}

BOOL SaveTargetDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    const Settings* settings = App().settings;
    std::vector<std::u16string> labels;
    if (settings != nullptr) labels = AppendLabels(settings->recentFiles);
    recentCount_ = static_cast<int>(labels.size());
    for (int k = 0; k < kRecentTargetButtons; ++k) {
        HWND button = GetDlgItem(window_, IDC_TARGET_RECENT_FIRST + k);
        if (k < recentCount_) {
            SetWindowTextW(button, reinterpret_cast<const wchar_t*>(labels[k].c_str()));
        } else {
            ShowWindow(button, SW_HIDE);
        }
    }
    Stack();
    return TRUE;
}

// Centres the visible buttons, the first 3 pixels from the top and each 2 below the last.
void SaveTargetDialog::Stack() {
    RECT client{};
    GetClientRect(window_, &client);
    std::vector<HWND> shown;
    std::vector<ButtonBox> sizes;
    for (int id : kStacked) {
        HWND button = GetDlgItem(window_, id);
        // The style, not IsWindowVisible: the dialog itself is not shown yet at its start.
        if (button == nullptr || (GetWindowLongW(button, GWL_STYLE) & WS_VISIBLE) == 0) continue;
        RECT rect{};
        GetWindowRect(button, &rect);
        shown.push_back(button);
        sizes.push_back(ButtonBox{0, 0, rect.right - rect.left, rect.bottom - rect.top});
    }
    const std::vector<ButtonBox> placed = StackButtons(sizes, client.right);
    for (std::size_t i = 0; i < shown.size(); ++i) {
        MoveWindow(shown[i], placed[i].left, placed[i].top, placed[i].width, placed[i].height,
                   TRUE);
    }
}

bool SaveTargetDialog::PickFile(bool forSaving, std::u16string* path) {
    wchar_t file[kPathLength] = {};
    OPENFILENAMEW request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = window_;
    request.lpstrFilter = kFilter;
    request.nFilterIndex = 1;
    request.lpstrFile = file;
    request.nMaxFile = kPathLength;
    request.Flags = OFN_HIDEREADONLY;
    // The other file is looked for where the document list was last.
    const Settings* settings = App().settings;
    if (!forSaving && settings != nullptr && settings->openIn.Get() != nullptr) {
        request.lpstrInitialDir = reinterpret_cast<const wchar_t*>(settings->openIn.Get());
    }
    const BOOL chosen = forSaving ? GetSaveFileNameW(&request) : GetOpenFileNameW(&request);
    if (chosen != TRUE) return false;
    *path = reinterpret_cast<const char16_t*>(file);
    return true;
}

// Ends the dialog with path; a path picked from the disk becomes the newest recent file.
void SaveTargetDialog::Choose(const std::u16string& path, bool remember) {
    if (path_ != nullptr) *path_ = path;
    if (remember && App().settings != nullptr) App().settings->recentFiles.Add(path);
    EndDialog(window_, 1);
}

INT_PTR SaveTargetDialog::DialogProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SIZE) {
        DialogBase::DialogProc(message, wParam, lParam);
        if (GetDlgItem(window_, IDC_TARGET_NEW_FILE) != nullptr) Stack();
        return TRUE;
    }
    return DialogBase::DialogProc(message, wParam, lParam);
}

BOOL SaveTargetDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    const int id = LOWORD(wParam);
    if (id >= IDC_TARGET_RECENT_FIRST && id <= IDC_TARGET_RECENT_LAST) {
        const Settings* settings = App().settings;
        if (settings == nullptr) return TRUE;
        const std::u16string path =
            RecentTargetPath(settings->recentFiles, id - IDC_TARGET_RECENT_FIRST);
        if (!path.empty()) Choose(path, false);
        return TRUE;
    }
    std::u16string path;
    switch (id) {
        case IDC_TARGET_NEW_FILE:
            if (PickFile(true, &path)) Choose(WithoutDoubleBackslash(path), true);
            return TRUE;
        case IDC_TARGET_OTHER_FILE:
            if (PickFile(false, &path)) Choose(path, true);
            return TRUE;
        case IDOK:
        case IDCANCEL:
            EndDialog(window_, 2);
            return TRUE;
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
}

}  // namespace velmora
