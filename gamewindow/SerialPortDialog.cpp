// "Select serial port": the ports the system lists in an editable drop-down list, so that a port
// the system does not list (a link made by hand under Wine, say) can still be typed in.
#include "gamewindow/SerialPortDialog.h"

#include <string>

#include "models/SerialPortChoice.h"
#include "platform/SerialPort.h"
#include "resources/resource.h"
#include "ui/Application.h"

namespace velmora {

int FillSerialPortList(HWND combo) {
    SendMessageW(combo, CB_RESETCONTENT, 0, 0);
    int count = 0;
    for (const platform::SerialPortEntry& port : platform::ListSerialPorts()) {
        const LRESULT row = SendMessageW(combo, CB_ADDSTRING, 0,
                                         reinterpret_cast<LPARAM>(Wide(port.label.c_str())));
        if (row == CB_ERR || row == CB_ERRSPACE) continue;
        SendMessageW(combo, CB_SETITEMDATA, static_cast<WPARAM>(row),
                     static_cast<LPARAM>(port.number));
        ++count;
    }
    if (count > 0) SendMessageW(combo, CB_SETCURSEL, 0, 0);
    return count;
}

// The box's text decides: when it is still the selected item's label the item's number is
// taken, otherwise the text is read as a port the user typed.
int ChosenSerialPort(HWND combo) {
    wchar_t text[128] = {};
    GetWindowTextW(combo, text, static_cast<int>(std::size(text)));
    const LRESULT row = SendMessageW(combo, CB_GETCURSEL, 0, 0);
    if (row != CB_ERR) {
        wchar_t label[128] = {};
        const LRESULT length = SendMessageW(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(row), 0);
        if (length >= 0 && length < static_cast<LRESULT>(std::size(label))) {
            SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(row),
                         reinterpret_cast<LPARAM>(label));
            if (std::wstring(label) == text) {
                return static_cast<int>(
                    SendMessageW(combo, CB_GETITEMDATA, static_cast<WPARAM>(row), 0));
            }
        }
    }
    return PortNumberFromText(Utf16(text));
}

SerialPortDialog::SerialPortDialog() : DialogBase(IDD_SELECT_PORT, 0, 0) {}

BOOL SerialPortDialog::OnInitDialog() {
    if (!DialogBase::OnInitDialog()) return FALSE;
    FillSerialPortList(GetDlgItem(window_, IDC_PORT_LIST));
    return TRUE;
}

BOOL SerialPortDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case IDOK: {
            const int number = ChosenSerialPort(GetDlgItem(window_, IDC_PORT_LIST));
            if (number < 0) {
                // The dialog stays open so the user can correct the text.
                MessageBoxW(window_, L"Please choose a port, or type its number (COM5 or 5)",
                            L"Select serial port", MB_OK | MB_ICONEXCLAMATION);
                SetFocus(GetDlgItem(window_, IDC_PORT_LIST));
                return TRUE;
            }
            chosen_ = number;
            EndDialog(window_, 1);
            return TRUE;
        }
        case IDCANCEL:
            EndDialog(window_, 2);
            return TRUE;
        default:
            return DialogBase::OnCommand(wParam, lParam);
    }
}

bool SelectSerialPort(HWND owner, int* number) {
    SerialPortDialog dialog;
    if (dialog.DoModal(owner) != 1) return false;
    *number = dialog.Chosen();
    return true;
}

}  // namespace velmora
