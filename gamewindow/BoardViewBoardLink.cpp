// The game window's link to a UCB electronic chessboard: connecting over a serial port, the
// lines the board sends (which arrive from the reader thread as a sent message), and each move
// played in the program sent on to the board.
#include <windows.h>

#include <string>

#include "devices/UcbLink.h"
#include "gamewindow/BoardView.h"
#include "gamewindow/CommentPane.h"
#include "gamewindow/SerialPortDialog.h"
#include "models/SerialPortChoice.h"
#include "resources/resource.h"
#include "ui/Application.h"
#include "ui/MenuBar.h"

namespace velmora {
namespace {

// The UCB board's line: 9600 baud, 8 data bits, no parity, one stop bit, no flow control.
constexpr int kBoardBaudRate = 9600;
constexpr int kBoardByteSize = 8;

}  // namespace

// Runs on the serial reader thread: hands the line to the window and waits until it is
// handled, because the reader reuses its buffer as soon as this returns.
void BoardView::BoardLineArrived(const char* line, void* context) {
    SendMessageW(static_cast<HWND>(context), kBoardLineMessage, 0, reinterpret_cast<LPARAM>(line));
}

// Asks for the port, opens and sets it up, and starts listening to the board; the clock
// starts with the link.
void BoardView::ConnectUcb() {
    int number = 0;
    if (!SelectSerialPort(window_, &number)) return;
    const std::u16string name = PortOpenName(number);
    // Lines of an earlier link are not for the new one.
    chessboardConnected_ = false;
    ShowWaitCursor(true);
    const bool opened = serialLink_.Open(name.c_str()) &&
                        serialLink_.Configure(kBoardBaudRate, kBoardByteSize, false, 0, 0, 0) &&
                        serialLink_.StartReader(&BoardLineArrived, window_);
    ShowWaitCursor(false);
    if (!opened) {
        serialLink_.Close(true);
        MessageBoxW(window_, L"Unable to open port", L"Unable to connect UCB", MB_OK | MB_ICONSTOP);
        return;
    }
    UcbLinkHost& host = *this;
    ucbLink_ = std::make_unique<UcbLink>(game_, this, host, window_);
    chessboardConnected_ = true;
    if (HMENU menu = pocketpc::MenuBarMenu(menuBar_)) {
        CheckMenuItem(menu, ID_CONNECT_UCB, MF_BYCOMMAND | MF_CHECKED);
    }
    StartClock();
}

void BoardView::OnBoardLine(const char* line) {
    // Lines still arriving after the link was dropped are not acted on.
    if (!chessboardConnected_ || ucbLink_ == nullptr || line == nullptr) return;
    ucbLink_->OnBoardLine(line);
}

// Sends a move played in the program to the board. A failed write means the board is gone:
// the link is dropped and the game goes on without it.
void BoardView::SendMoveToBoard(const MoveNode& node) {
    if (!chessboardConnected_) return;
    if (serialLink_.Write(UcbLink::MoveLine(node).c_str())) return;
    chessboardConnected_ = false;
    MessageBoxW(window_, L"Unable to send move to Chessboard", L"Communication error",
                MB_OK | MB_ICONSTOP);
    CloseBoardLink();
}

void BoardView::CloseBoardLink() {
    chessboardConnected_ = false;
    serialLink_.Close(true);
    if (HMENU menu = pocketpc::MenuBarMenu(menuBar_)) {
        CheckMenuItem(menu, ID_CONNECT_UCB, MF_BYCOMMAND | MF_UNCHECKED);
    }
}

bool BoardView::SendToBoard(const char* text) {
    return serialLink_.Write(text);
}

void BoardView::ShowBoardLine(const char16_t* text) {
    SetCommentText(comment_, Wide(text));
}

void BoardView::RedrawBoard() {
    InvalidateRect(window_, nullptr, FALSE);
}

}  // namespace velmora
