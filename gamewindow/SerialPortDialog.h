// SerialPortDialog: "Select serial port", the COM port of an electronic chessboard; and the port
// list that the Star Diamond import shares with it.
#pragma once

#include <windows.h>

#include "ui/DialogBase.h"

namespace velmora {

// Fills a combo box with the serial ports the system lists, each item's data its port number,
// and selects the first. Returns the number of ports listed.
int FillSerialPortList(HWND combo);
// The port the combo box names: the selected item's number, or the number typed in its box
// ("5", "COM5"); -1 when neither names one.
int ChosenSerialPort(HWND combo);

class SerialPortDialog : public DialogBase {
  public:
    SerialPortDialog();

    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

    // The port chosen with OK.
    int Chosen() const { return chosen_; }

  private:
    int chosen_ = -1;
};

// Runs "Select serial port" over owner. Returns true with *number set when the user chose a port
// and pressed OK; false on Cancel.
bool SelectSerialPort(HWND owner, int* number);

}  // namespace velmora
