// The material balance: two boxes, each with a row of white and a row of black pieces.
#include "gamewindow/MaterialDialog.h"

#include <string>

#include "gamewindow/BoardRenderer.h"
#include "models/Settings.h"
#include "resources/resource.h"
#include "ui/Application.h"
#include "ui/DeviceFrame.h"
#include "ui/DrawingResources.h"

namespace velmora {
namespace {

constexpr int kImage = DrawingResources::kSmallSquare;
// Queen, rook, bishop, knight, pawn: the king is always there and never taken.
constexpr int kShownTypes[] = {5, 2, 4, 3, 1};

}  // namespace

MaterialDialog::MaterialDialog(const PositionValue& position)
    : DialogBase(IDD_MATERIAL, 0, pocketpc::kDoneButton), balance_(CountMaterial(position)) {}

void MaterialDialog::DrawRow(HDC dc, const PieceCounts& counts, Colour colour, int x, int y) {
    const Settings* settings = App().settings;
    HIMAGELIST pieces = App().drawing != nullptr
                            ? App().drawing->Pieces(settings ? settings->bitmapIndex : 0, kImage)
                            : nullptr;
    const COLORREF background = GetSysColor(COLOR_BTNFACE);
    bool any = false;
    for (int type : kShownTypes) {
        if (counts[type] == 0) continue;
        any = true;
        BoardRenderer::DrawPieceAt(static_cast<PieceCode>(colour + type), x, y, kImage, pieces, dc,
                                   background);
        const std::wstring number = std::to_wstring(counts[type]);
        TextOutW(dc, x + kImage + 1, y + 3, number.c_str(), static_cast<int>(number.size()));
        x += kImage + 4 + 7 * static_cast<int>(number.size());
    }
    if (!any) TextOutW(dc, x, y + 3, L"-", 1);
}

void MaterialDialog::Paint() {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window_, &paint);
    HGDIOBJ font =
        SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(window_, WM_GETFONT, 0, 0)));
    SetBkMode(dc, TRANSPARENT);
    const int boxes[2] = {IDC_MATERIAL_ON_BOARD, IDC_MATERIAL_TAKEN};
    for (int box = 0; box < 2; ++box) {
        RECT rect{};
        HWND group = GetDlgItem(window_, boxes[box]);
        GetWindowRect(group, &rect);
        MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&rect), 2);
        const PieceCounts* counts = box == 0 ? balance_.onBoard : balance_.taken;
        DrawRow(dc, counts[0], kWhite, rect.left + 8, rect.top + 18);
        DrawRow(dc, counts[1], kBlack, rect.left + 8, rect.top + 18 + kImage + 6);
    }
    SelectObject(dc, font);
    EndPaint(window_, &paint);
}

INT_PTR MaterialDialog::DialogProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_PAINT) {
        Paint();
        return TRUE;
    }
    return DialogBase::DialogProc(message, wParam, lParam);
}

BOOL MaterialDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    if (LOWORD(wParam) == IDOK) {
        EndDialog(window_, 1);
        return TRUE;
    }
    return DialogBase::OnCommand(wParam, lParam);
}

}  // namespace velmora
