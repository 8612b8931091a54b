// SerialPortChoice: the COM port a person picked in a port list or typed in its box.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

// Reads a typed port: "5", "COM5", "com5:" or "COM5: (serial.dll)" all name port 5. Blanks
// around the text are ignored. Returns -1 when the text names no port (empty, no digits, 0,
// above 255, letters other than COM before the number, or anything but a label in parentheses
// after it).
int PortNumberFromText(std::u16string_view text);

// The name the port is opened by: "COM5:".
std::u16string PortOpenName(int number);

}  // namespace velmora
