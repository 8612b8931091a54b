// TerminalSettings: the termios settings of a serial line, apart from the port, so that they can
// be checked on any terminal (a pseudo-terminal forces 8 data bits and no parity).
#pragma once

#include <termios.h>

namespace velmora::platform::posix {

// Turns off everything a terminal does to the bytes: echo, line editing, signal characters, CR
// and NL translation, software flow control, output processing. read() returns as soon as one
// byte is there.
void MakeRaw(termios* settings);

// Sets speed, byte size, parity, stop bits and RTS/CTS flow as SerialPort::Configure takes them,
// and raw mode. False, with settings untouched, for values the line cannot take.
bool SetLineSettings(termios* settings, int baudRate, int byteSize, bool parityCheck, int stopBits,
                     int parity, int hardwareFlow);

}  // namespace velmora::platform::posix
