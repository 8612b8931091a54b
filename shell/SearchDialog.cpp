// The game search dialog: moves the criteria from the controls to GameSearch, keeps the
// window alive while it runs, and offers what it found in the game list.
#include "shell/SearchDialog.h"

#include <commctrl.h>

#include "game/Game.h"
#include "gamewindow/SetupBoardDialog.h"
#include "models/Settings.h"
#include "platform/win32/WideText.h"
#include "resources/resource.h"
#include "shell/GameListDialog.h"
#include "shell/SearchMaterialDialog.h"
#include "ui/Application.h"
#include "ui/DeviceFrame.h"
#include "ui/MenuBar.h"

namespace velmora {
namespace {

using platform::win32::ToWin32;

// The controls a running search disables.
constexpr int kCriteriaControls[] = {IDC_SEARCH_WHITE,    IDC_SEARCH_BLACK,  IDC_IGNORE_COLORS,
                                     IDC_SEARCH_RESULT,   IDC_SEARCH_ECO,    IDC_ECO_WARNING,
                                     IDC_SEARCH_POSITION, IDC_EDIT_POSITION, IDC_SEARCH_MATERIAL,
                                     IDC_EDIT_MATERIAL};
constexpr int kProgressControls[] = {IDC_FILES_PROGRESS, IDC_FILE_NAME, IDC_FILE_PROGRESS};
// How often a running search looks at its messages, in milliseconds.
constexpr DWORD kPumpInterval = 30;

const wchar_t* StopText() {
    return App().french ? L"Arr\u00EAter" : L"Stop";
}

void FillWithRecentPlayers(HWND combo) {
    const Settings* settings = App().settings;
    if (settings == nullptr) return;
    // Newest first.
    for (int i = settings->recentPlayers.Count() - 1; i >= 0; --i) {
        std::wstring name = ToWin32(settings->recentPlayers.At(i));
        SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
    }
}

}  // namespace

SearchDialog::SearchDialog(std::vector<std::u16string> paths)
    : DialogBase(IDD_SEARCH, IDD_SEARCH_LANDSCAPE, 0, pocketpc::kDoneButton),
      paths_(std::move(paths)) {}

SearchDialog::~SearchDialog() = default;

INT_PTR SearchDialog::Run(HWND parent) {
    chosenPath_.clear();
    chosenOffset_ = 0;
    return DoModal(parent) == 1 ? 1 : 0;
}

BOOL SearchDialog::OnInitDialog() {
    // The button's word in the template's language, given back when a search ends; read
    // before the dialog is sized to the screen, which already lays it out again.
    wchar_t word[64] = {};
    GetDlgItemTextW(window_, IDC_SEARCH_RUN, word, 64);
    searchWord_ = word;
    if (!DialogBase::OnInitDialog()) return FALSE;
    ShowProgress(false);
    SetDlgItemTextW(window_, IDC_FILES_TO_PARSE,
                    Wide(FilesToParseText(static_cast<int>(paths_.size())).c_str()));
    HWND result = GetDlgItem(window_, IDC_SEARCH_RESULT);
    for (const char16_t* choice : kSearchResultChoices)
        SendMessageW(result, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(choice)));
    SendMessageW(result, CB_SETCURSEL, 0, 0);
    for (int id : {IDC_SEARCH_WHITE, IDC_SEARCH_BLACK}) {
        SendDlgItemMessageW(window_, id, CB_LIMITTEXT, SearchCriteria::kNameLength, 0);
        FillWithRecentPlayers(GetDlgItem(window_, id));
    }
    SendDlgItemMessageW(window_, IDC_SEARCH_ECO, EM_LIMITTEXT, SearchCriteria::kEcoLength, 0);
    return TRUE;
}

SearchFormFields SearchDialog::ReadFields() const {
    SearchFormFields fields;
    fields.white = ControlText(window_, IDC_SEARCH_WHITE);
    fields.black = ControlText(window_, IDC_SEARCH_BLACK);
    fields.ignoreColors = IsDlgButtonChecked(window_, IDC_IGNORE_COLORS) == BST_CHECKED;
    fields.resultChoice =
        static_cast<int>(SendDlgItemMessageW(window_, IDC_SEARCH_RESULT, CB_GETCURSEL, 0, 0));
    fields.eco = ControlText(window_, IDC_SEARCH_ECO);
    fields.positionOn = IsDlgButtonChecked(window_, IDC_SEARCH_POSITION) == BST_CHECKED;
    fields.position = position_;
    fields.materialOn = IsDlgButtonChecked(window_, IDC_SEARCH_MATERIAL) == BST_CHECKED;
    fields.material = material_;
    return fields;
}

void SearchDialog::SetCriteriaEnabled(bool enabled) {
    for (int id : kCriteriaControls)
        EnableWindow(GetDlgItem(window_, id), enabled);
}

void SearchDialog::ShowProgress(bool shown) {
    for (int id : kProgressControls)
        ShowWindow(GetDlgItem(window_, id), shown ? SW_SHOW : SW_HIDE);
}

void SearchDialog::RunSearch() {
    const SearchCriteria criteria = CriteriaFromForm(ReadFields());
    if (!criteria.IsUsable()) {
        MessageBoxW(window_, Wide(GameSearch::kNoCriteriaText), Wide(GameSearch::kCaption),
                    MB_OK | MB_ICONEXCLAMATION);
        return;
    }
    SetCriteriaEnabled(false);
    SetDlgItemTextW(window_, IDC_SEARCH_RUN, StopText());
    ShowProgress(true);
    SendDlgItemMessageW(window_, IDC_FILES_PROGRESS, PBM_SETRANGE32, 0,
                        static_cast<LPARAM>(paths_.size()));
    SendDlgItemMessageW(window_, IDC_FILES_PROGRESS, PBM_SETPOS, 0, 0);
    results_.reset();
    GameSearch search(criteria);
    search_ = &search;
    lastPump_ = GetTickCount() - kPumpInterval;
    results_ = search.Run(paths_, this);
    search_ = nullptr;
    SetCriteriaEnabled(true);
    ShowProgress(false);
    if (closeAsked_) {
        EndDialog(window_, 0);
        return;
    }
    OfferResults();
    if (IsWindow(window_)) SetDlgItemTextW(window_, IDC_SEARCH_RUN, searchWord_.c_str());
}

// Shows the games found in the game list; a game chosen there ends the search with it.
void SearchDialog::OfferResults() {
    if (results_ == nullptr || results_->Size() == 0) {
        MessageBoxW(window_, Wide(kNoGameFoundText), Wide(kNoGameFoundCaption), MB_OK);
        return;
    }
    std::uint32_t offset = 0;
    int count = 0;
    GameListDialog list(*results_);
    if (list.Run(window_, &offset, &count) != 1) return;
    const GameRow chosen = results_->At(list.Chosen());
    if (!chosen) return;
    chosenPath_ = chosen.FilePath();
    chosenOffset_ = chosen.Offset();
    EndDialog(window_, 1);
}

void SearchDialog::FileStarted(int index, const std::u16string& path, std::int64_t size,
                               platform::ErrorCode) {
    SendDlgItemMessageW(window_, IDC_FILES_PROGRESS, PBM_SETPOS, static_cast<WPARAM>(index), 0);
    SetDlgItemTextW(window_, IDC_FILE_NAME, Wide(FileNameShown(path).c_str()));
    // The in-file bar counts bytes; PBM_SETRANGE32 keeps files over 64 KB right.
    SendDlgItemMessageW(window_, IDC_FILE_PROGRESS, PBM_SETRANGE32, 0,
                        static_cast<LPARAM>(size > 0 ? size : 0));
    SendDlgItemMessageW(window_, IDC_FILE_PROGRESS, PBM_SETPOS, 0, 0);
    PumpMessages();
}

void SearchDialog::Progress(int, std::uint32_t filePosition) {
    const DWORD now = GetTickCount();
    if (now - lastPump_ < kPumpInterval) return;
    SendDlgItemMessageW(window_, IDC_FILE_PROGRESS, PBM_SETPOS, static_cast<WPARAM>(filePosition),
                        0);
    PumpMessages();
}

void SearchDialog::PumpMessages() {
    lastPump_ = GetTickCount();
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            // Leaves the quit for the message loop that owns it, and ends the search.
            PostQuitMessage(static_cast<int>(message.wParam));
            closeAsked_ = true;
            if (search_ != nullptr) search_->Stop();
            return;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void SearchDialog::EditPosition() {
    Game game;
    game.StartPosition().Value() = position_;
    SetupBoardDialog setup(game, nullptr, false);
    if (setup.DoModal(window_) != 1) return;
    position_ = game.StartPosition().Value();
    CheckDlgButton(window_, IDC_SEARCH_POSITION, BST_CHECKED);
    CheckDlgButton(window_, IDC_SEARCH_MATERIAL, BST_UNCHECKED);
}

void SearchDialog::EditMaterial() {
    SearchMaterialDialog editor(material_);
    if (editor.DoModal(window_) != 1) return;
    CheckDlgButton(window_, IDC_SEARCH_MATERIAL, BST_CHECKED);
    CheckDlgButton(window_, IDC_SEARCH_POSITION, BST_UNCHECKED);
}

INT_PTR SearchDialog::DialogProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE: {
            // Turning the screen lays the controls out from the other template, which also
            // brings back its texts: the count of files and the button's current word stay.
            INT_PTR result = DialogBase::DialogProc(message, wParam, lParam);
            SetDlgItemTextW(window_, IDC_FILES_TO_PARSE,
                            Wide(FilesToParseText(static_cast<int>(paths_.size())).c_str()));
            SetDlgItemTextW(window_, IDC_SEARCH_RUN, Running() ? StopText() : searchWord_.c_str());
            return result;
        }
        case WM_CLOSE:
            if (Running()) {
                closeAsked_ = true;
                search_->Stop();
                return TRUE;
            }
            break;
        default:
            break;
    }
    return DialogBase::DialogProc(message, wParam, lParam);
}

BOOL SearchDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    const int id = LOWORD(wParam);
    switch (id) {
        case IDC_SEARCH_RUN:
            if (Running()) {
                search_->Stop();
            } else {
                RunSearch();
            }
            return TRUE;
        case IDC_ECO_WARNING:
            MessageBoxW(window_, Wide(kEcoWarningText), Wide(kEcoWarningCaption),
                        MB_OK | MB_ICONINFORMATION);
            return TRUE;
        case IDC_EDIT_POSITION:
            EditPosition();
            return TRUE;
        case IDC_EDIT_MATERIAL:
            EditMaterial();
            return TRUE;
        case IDC_SEARCH_POSITION:
        case IDC_SEARCH_MATERIAL:
            // A search looks for a position or for a material balance, not both.
            if (HIWORD(wParam) == BN_CLICKED && IsDlgButtonChecked(window_, id) == BST_CHECKED) {
                CheckDlgButton(
                    window_, id == IDC_SEARCH_POSITION ? IDC_SEARCH_MATERIAL : IDC_SEARCH_POSITION,
                    BST_UNCHECKED);
            }
            return TRUE;
        case IDOK:
        case IDCANCEL:
            if (Running()) {
                closeAsked_ = true;
                search_->Stop();
                return TRUE;
            }
            EndDialog(window_, 0);
            return TRUE;
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
}

}  // namespace velmora
