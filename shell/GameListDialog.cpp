// The game list dialog: columns, check boxes, sorting by a tap on a header, one-tap choice.
#include "shell/GameListDialog.h"

#include <commctrl.h>

#include "game/GameIndex.h"
#include "game/GameListOrder.h"
#include "platform/win32/WideText.h"
#include "resources/resource.h"
#include "ui/Application.h"
#include "ui/DeviceFrame.h"
#include "ui/MenuBar.h"

namespace velmora {
namespace {

struct ColumnBox {
    int checkBox;
    int column;
    bool checked;
};
constexpr ColumnBox kColumnBoxes[] = {
    {IDC_SHOW_RESULT, kColumnResult, true}, {IDC_SHOW_DATE, kColumnDate, false},
    {IDC_SHOW_ECO, kColumnEco, false},      {IDC_SHOW_EVENT, kColumnEvent, false},
    {IDC_SHOW_ROUND, kColumnRound, false},  {IDC_SHOW_START, kColumnStart, false}};
const wchar_t* const kTitles[kGameListColumnCount] = {L"White", L"Black", L"Result", L"ECO",
                                                      L"Event", L"Round", L"Date",   L"Start"};

}  // namespace

GameListDialog::GameListDialog(GameIndex& index)
    : DialogBase(IDD_GAME_LIST, 0, pocketpc::kDoneButton), index_(index) {}

INT_PTR GameListDialog::Run(HWND parent, std::uint32_t* offsetOut, int* countOut) {
    offsetOut_ = offsetOut;
    countOut_ = countOut;
    return DoModal(parent);
}

BOOL GameListDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    list_ = GetDlgItem(window_, IDC_GAME_LIST);
    RECT listRect{};
    GetWindowRect(list_, &listRect);
    MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&listRect), 2);
    listTop_ = listRect.top;
    ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT | LVS_EX_ONECLICKACTIVATE);

    // The result column is as wide as "½½-½½" in the list's font; White and Black share the rest.
    HDC dc = GetDC(list_);
    HGDIOBJ font = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(list_, WM_GETFONT, 0, 0)));
    SIZE resultSize{};
    GetTextExtentPoint32W(dc, L"\u00BD\u00BD-\u00BD\u00BD", 5, &resultSize);
    SelectObject(dc, font);
    ReleaseDC(list_, dc);
    RECT client{};
    GetClientRect(window_, &client);
    int nameWidth = (client.right - GetSystemMetrics(SM_CXVSCROLL) - resultSize.cx) / 2 - 2;
    for (int column = 0; column < kGameListColumnCount; ++column) {
        LVCOLUMNW description{};
        description.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        description.fmt = LVCFMT_LEFT;
        description.cx = column < 2 ? nameWidth : column == 2 ? resultSize.cx : 0;
        description.pszText = const_cast<wchar_t*>(kTitles[column]);
        description.iSubItem = column;
        SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column),
                     reinterpret_cast<LPARAM>(&description));
    }
    Fill();
    CheckDlgButton(window_, IDC_SHOW_RESULT, BST_CHECKED);
    Layout();
    return TRUE;
}

// Rescans the file and lists its games in file order. The list holds no texts of its own: it
// asks for those of the rows it shows.
void GameListDialog::Fill() {
    SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
    ListView_DeleteAllItems(list_);
    ShowWaitCursor(true);
    index_.Load();
    ShowWaitCursor(false);
    rows_.resize(static_cast<std::size_t>(index_.Size()));
    for (int position = 0; position < index_.Size(); ++position)
        rows_[static_cast<std::size_t>(position)] = position;
    ListView_SetItemCountEx(list_, index_.Size(), 0);
    SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list_, nullptr, TRUE);
}

void GameListDialog::ProvideText(NMLVDISPINFOW& request) {
    LVITEMW& item = request.item;
    if (item.iItem < 0 || item.iItem >= static_cast<int>(rows_.size())) return;
    if ((item.mask & LVIF_PARAM) != 0) item.lParam = rows_[static_cast<std::size_t>(item.iItem)];
    if ((item.mask & LVIF_TEXT) == 0 || item.pszText == nullptr || item.cchTextMax <= 0) return;
    const GameRow game = index_.At(rows_[static_cast<std::size_t>(item.iItem)]);
    std::wstring text;
    // A game without an ECO tag leaves its cell empty.
    if (item.iSubItem != kColumnEco || game.Has(RowField::Eco)) {
        text = platform::win32::ToWin32(CellText(game, item.iSubItem));
    }
    lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
}

// Sorts by column: a new column sorts ascending, the same column again flips the order. Games
// that compare equal keep the order they had.
void GameListDialog::SortBy(int column) {
    const int key = sort_.TapColumn(column);
    std::vector<GameRow> games;
    games.reserve(rows_.size());
    for (int position : rows_)
        games.push_back(index_.At(position));
    SortRows(games, key);
    for (std::size_t i = 0; i < games.size(); ++i)
        rows_[i] = games[i].Position();
    InvalidateRect(list_, nullptr, TRUE);
}

void GameListDialog::Choose(int item) {
    if (item < 0 || item >= static_cast<int>(rows_.size())) return;
    const GameRow game = index_.At(rows_[static_cast<std::size_t>(item)]);
    if (!game) return;
    chosen_ = game.Position();
    if (offsetOut_ != nullptr) *offsetOut_ = game.Offset();
    if (countOut_ != nullptr) *countOut_ = index_.Count();
    EndDialog(window_, 1);
}

// The list keeps its top edge and fills the rest of the dialog above the menu bar.
void GameListDialog::Layout() {
    if (list_ == nullptr) return;
    RECT client{};
    GetClientRect(window_, &client);
    int width = client.right;
    if (client.right > client.bottom) width -= GetSystemMetrics(SM_CXVSCROLL) + 2;
    int bottom = client.bottom - 3 - pocketpc::MenuBarHeight(menuBar_);
    RECT listRect{};
    GetWindowRect(list_, &listRect);
    MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&listRect), 2);
    MoveWindow(list_, listRect.left, listTop_, width - listRect.left, bottom - listTop_, TRUE);
}

INT_PTR GameListDialog::DialogProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_NOTIFY: {
            auto* header = reinterpret_cast<NMHDR*>(lParam);
            if (header->idFrom != IDC_GAME_LIST) break;
            if (header->code == LVN_COLUMNCLICK) {
                SortBy(reinterpret_cast<NMLISTVIEW*>(lParam)->iSubItem);
                return TRUE;
            }
            if (header->code == LVN_GETDISPINFOW) {
                ProvideText(*reinterpret_cast<NMLVDISPINFOW*>(lParam));
                return TRUE;
            }
            if (header->code == LVN_ITEMACTIVATE) {
                Choose(reinterpret_cast<NMITEMACTIVATE*>(lParam)->iItem);
                return TRUE;
            }
            break;
        }
        case WM_SIZE: {
            INT_PTR result = DialogBase::DialogProc(message, wParam, lParam);
            Layout();
            return result;
        }
        case WM_ACTIVATE:
            pocketpc::HandleActivate(window_, wParam, lParam);
            return 0;
        default:
            break;
    }
    return DialogBase::DialogProc(message, wParam, lParam);
}

BOOL GameListDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    int id = LOWORD(wParam);
    if (id == IDOK || id == ID_CLOSE_GAME) {
        EndDialog(window_, 2);
        return TRUE;
    }
    for (const ColumnBox& box : kColumnBoxes) {
        if (id == box.checkBox && HIWORD(wParam) == BN_CLICKED) {
            bool checked = IsDlgButtonChecked(window_, box.checkBox) == BST_CHECKED;
            ListView_SetColumnWidth(list_, box.column, checked ? LVSCW_AUTOSIZE : 0);
            return TRUE;
        }
    }
    return DialogBase::OnCommand(wParam, lParam);
}

}  // namespace velmora
