// The Star Diamond import dialog: the port and "Connect", "Import", and the list of every line
// the chess computer sends. The protocol itself is StarDiamondImport's; this window moves lines,
// timers and messages between it and the controls.
#include "shell/StarDiamondDialog.h"

#include <string>

#include "game/Game.h"
#include "gamewindow/SerialPortDialog.h"
#include "models/SerialPortChoice.h"
#include "resources/resource.h"
#include "ui/Application.h"
#include "ui/DeviceFrame.h"
#include "ui/MenuBar.h"

namespace velmora {
namespace {

// The chess computer's line: 57600 baud, 8 data bits, no parity, one stop bit, no flow control.
constexpr int kComputerBaudRate = 57600;
constexpr int kComputerByteSize = 8;
// Space left under the messages list.
constexpr int kBottomMargin = 3;

}  // namespace

StarDiamondDialog::StarDiamondDialog()
    : DialogBase(IDD_STAR_DIAMOND, 0, pocketpc::kDoneButton), import_(*this) {}

StarDiamondDialog::~StarDiamondDialog() {
    closing_ = true;
    port_.Close(true);
}

// Runs on the serial reader thread: the line is handled on the dialog's thread before the
// reader goes on, since its buffer is reused at once.
void StarDiamondDialog::LineArrived(const char* line, void* context) {
    SendMessageW(static_cast<HWND>(context), kLineMessage, 0, reinterpret_cast<LPARAM>(line));
}

BOOL StarDiamondDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    FillSerialPortList(GetDlgItem(window_, IDC_PORT_LIST));
    StretchMessages();
    return TRUE;
}

INT_PTR StarDiamondDialog::DialogProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case kLineMessage:
            if (lParam != 0 && !closing_) import_.OnLine(reinterpret_cast<const char*>(lParam));
            return TRUE;
        case WM_TIMER: {
            const int id = static_cast<int>(wParam);
            if (id != StarDiamondImport::kRequestTimer && id != StarDiamondImport::kWatchdogTimer) {
                break;
            }
            // Each request is armed again by the line that answers the last one.
            ::KillTimer(window_, wParam);
            import_.OnTimer(id);
            return TRUE;
        }
        case WM_SIZE:
            DialogBase::DialogProc(message, wParam, lParam);
            StretchMessages();
            return TRUE;
        case WM_CLOSE:
            Close();
            return TRUE;
        default:
            break;
    }
    return DialogBase::DialogProc(message, wParam, lParam);
}

BOOL StarDiamondDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case IDC_STAR_DIAMOND_CONNECT:
            Connect();
            return TRUE;
        case IDC_STAR_DIAMOND_IMPORT:
            StartImport();
            return TRUE;
        case IDOK:
        case IDCANCEL:
            Close();
            return TRUE;
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
}

// Opens the chosen port, unless it is the one already open, and makes "Import" the next step.
void StarDiamondDialog::Connect() {
    HWND combo = GetDlgItem(window_, IDC_PORT_LIST);
    const int number = ChosenSerialPort(combo);
    if (number != openPort_) {
        ShowWaitCursor(true);
        SendDlgItemMessageW(window_, IDC_STAR_DIAMOND_MESSAGES, LB_RESETCONTENT, 0, 0);
        const bool opened = number > 0 && port_.Open(PortOpenName(number).c_str()) &&
                            port_.Configure(kComputerBaudRate, kComputerByteSize, false, 0, 0, 0) &&
                            port_.StartReader(&LineArrived, window_);
        ShowWaitCursor(false);
        if (!opened) {
            port_.Close(true);
            openPort_ = -1;
            MessageBoxW(window_, L"Unable to open COM port", L"Unable to import game",
                        MB_OK | MB_ICONSTOP);
            return;
        }
        openPort_ = number;
    }
    EnableWindow(GetDlgItem(window_, IDC_STAR_DIAMOND_IMPORT), TRUE);
    EnableWindow(GetDlgItem(window_, IDC_STAR_DIAMOND_CONNECT), FALSE);
    EnableWindow(combo, FALSE);
}

// The wait cursor stays until the import ends, however it ends.
void StarDiamondDialog::StartImport() {
    savedCursor_ = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    EnableWindow(GetDlgItem(window_, IDC_STAR_DIAMOND_IMPORT), FALSE);
    import_.Start();
}

// Ends the dialog: with 1 when there is a game to hand over, else with 2. A running import's
// port is closed first so that no line arrives after the window is gone.
void StarDiamondDialog::Close() {
    closing_ = true;
    if (import_.Importing()) {
        port_.Close(true);
        openPort_ = -1;
    }
    EndDialog(window_, import_.CurrentGame() != nullptr ? 1 : 2);
}

// Stretches the messages list to the dialog's width, less its left margin on both sides, and
// down to just above the bar at the bottom.
void StarDiamondDialog::StretchMessages() {
    HWND list = GetDlgItem(window_, IDC_STAR_DIAMOND_MESSAGES);
    if (list == nullptr) return;
    RECT client{};
    GetClientRect(window_, &client);
    RECT box{};
    GetWindowRect(list, &box);
    MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&box), 2);
    // The bar with "OK" lies along the bottom of the dialog.
    const int bottom = client.bottom - pocketpc::MenuBarHeight(menuBar_) - kBottomMargin;
    const int width = client.right - 2 * box.left;
    MoveWindow(list, box.left, box.top, width > 0 ? width : 0,
               bottom > box.top ? bottom - box.top : 0, TRUE);
}

bool StarDiamondDialog::SendToComputer(const char* text) {
    return port_.Write(text);
}

void StarDiamondDialog::SetTimer(int id, int milliseconds) {
    ::SetTimer(window_, static_cast<UINT_PTR>(id), static_cast<UINT>(milliseconds), nullptr);
}

void StarDiamondDialog::KillTimer(int id) {
    ::KillTimer(window_, static_cast<UINT_PTR>(id));
}

// Appends a line and keeps the newest one in sight.
void StarDiamondDialog::AppendMessage(const char16_t* text) {
    HWND list = GetDlgItem(window_, IDC_STAR_DIAMOND_MESSAGES);
    const LRESULT row = SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(text)));
    if (row >= 0) SendMessageW(list, LB_SETTOPINDEX, static_cast<WPARAM>(row), 0);
}

void StarDiamondDialog::ShowMessage(const char16_t* text, const char16_t* caption, bool error) {
    MessageBoxW(window_, Wide(text), Wide(caption),
                MB_OK | (error ? MB_ICONSTOP : MB_ICONINFORMATION));
}

void StarDiamondDialog::ImportStopped() {
    EnableWindow(GetDlgItem(window_, IDC_STAR_DIAMOND_IMPORT), TRUE);
    SetCursor(savedCursor_ != nullptr ? savedCursor_ : LoadCursorW(nullptr, IDC_ARROW));
    savedCursor_ = nullptr;
}

bool RunStarDiamondImport(HWND owner, std::unique_ptr<Game>* game) {
    StarDiamondDialog dialog;
    if (dialog.DoModal(owner) != 1) return false;
    *game = dialog.TakeGame();
    return *game != nullptr;
}

}  // namespace velmora
