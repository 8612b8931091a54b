// The game headers dialog: moves the game's headers into the controls and back through the
// headers form, which holds the rules.
#include "gamewindow/GameHeadersDialog.h"

#include <commctrl.h>

#include <string>

#include "game/Game.h"
#include "gamewindow/TagsDialog.h"
#include "models/GameHeadersForm.h"
#include "models/Settings.h"
#include "resources/resource.h"
#include "ui/Application.h"
#include "ui/DeviceFrame.h"

namespace velmora {
namespace {

// The result buttons in the order of the result codes 0..3.
constexpr int kResultButtons[4] = {IDC_RESULT_WHITE_WINS, IDC_RESULT_DRAW, IDC_RESULT_BLACK_WINS,
                                   IDC_RESULT_LINE};

// Fills a name box with the recent names, newest first (the box sorts them), and the game's.
void FillNameBox(HWND dialog, int id, const RecentList* recent, const std::u16string& value) {
    HWND box = GetDlgItem(dialog, id);
    SendMessageW(box, CB_RESETCONTENT, 0, 0);
    for (int i = recent != nullptr ? recent->Count() - 1 : -1; i >= 0; --i) {
        SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(recent->At(i).c_str()));
    }
    SetWindowTextW(box, reinterpret_cast<const wchar_t*>(value.c_str()));
}

}  // namespace

GameHeadersDialog::GameHeadersDialog(Game& game)
    : DialogBase(IDD_HEADERS, IDD_HEADERS_LANDSCAPE, 0,
                 pocketpc::kDoneButton | pocketpc::kEmptyMenu),
      game_(game) {}

BOOL GameHeadersDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    const HeaderFields fields = ReadHeaderFields(game_);
    Settings* settings = App().settings;
    FillNameBox(window_, IDC_HEADER_WHITE, settings ? &settings->recentPlayers : nullptr,
                fields.white);
    FillNameBox(window_, IDC_HEADER_BLACK, settings ? &settings->recentPlayers : nullptr,
                fields.black);
    FillNameBox(window_, IDC_HEADER_SITE, settings ? &settings->recentSites : nullptr, fields.site);
    FillNameBox(window_, IDC_HEADER_EVENT, settings ? &settings->recentEvents : nullptr,
                fields.event);
    SetDlgItemTextW(window_, IDC_HEADER_ROUND,
                    reinterpret_cast<const wchar_t*>(fields.round.c_str()));
    for (int code = 0; code < 4; ++code) {
        CheckDlgButton(window_, kResultButtons[code],
                       code == fields.result ? BST_CHECKED : BST_UNCHECKED);
    }
    HWND picker = GetDlgItem(window_, IDC_HEADER_DATE);
    if (fields.date) {
        SYSTEMTIME time{};
        time.wYear = static_cast<WORD>(fields.date->year);
        time.wMonth = static_cast<WORD>(fields.date->month);
        time.wDay = static_cast<WORD>(fields.date->day);
        SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&time));
    } else {
        SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_NONE, 0);
    }
    return TRUE;
}

void GameHeadersDialog::Store() {
    HeaderFields fields;
    fields.white = ControlText(window_, IDC_HEADER_WHITE);
    fields.black = ControlText(window_, IDC_HEADER_BLACK);
    fields.site = ControlText(window_, IDC_HEADER_SITE);
    fields.event = ControlText(window_, IDC_HEADER_EVENT);
    fields.round = ControlText(window_, IDC_HEADER_ROUND);
    SYSTEMTIME time{};
    if (SendDlgItemMessageW(window_, IDC_HEADER_DATE, DTM_GETSYSTEMTIME, 0,
                            reinterpret_cast<LPARAM>(&time)) == GDT_VALID) {
        fields.date = CalendarDate{time.wYear, time.wMonth, time.wDay};
    }
    for (int code = 0; code < 4 && fields.result < 0; ++code) {
        if (IsDlgButtonChecked(window_, kResultButtons[code]) == BST_CHECKED) fields.result = code;
    }
    StoreHeaderFields(game_, fields, App().settings);
}

BOOL GameHeadersDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case IDOK:
            Store();
            EndDialog(window_, 1);
            return TRUE;
        case IDC_HEADER_MORE: {
            TagsDialog tags(game_);
            tags.DoModal(window_);
            return TRUE;
        }
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
}

}  // namespace velmora
