// SerialPort: a serial line to an electronic chessboard or chess computer, with a reader thread
// that hands each received line to a callback.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::platform {

// Called on the reader thread with each received line: zero-terminated ASCII without its line
// end. The buffer is reused as soon as the call returns, so the callee hands the line over
// synchronously (the windows send themselves a message and wait for it).
using SerialLineCallback = void (*)(const char* line, void* context);

// Cuts received bytes into lines. CR and LF end a line; an empty line gives no call, so CR LF,
// LF CR and blank lines give one call or none. Bytes below 32 other than CR and LF are dropped.
// A line reaching kMaxLine characters is handed on at once and the rest starts a new line, so no
// byte is lost however long the line.
class SerialLineCutter {
  public:
    static constexpr std::size_t kMaxLine = 255;
    SerialLineCutter(SerialLineCallback callback, void* context)
        : callback_(callback), context_(context) {}
    void Add(unsigned char byte);

  private:
    SerialLineCallback callback_;
    void* context_;
    char line_[kMaxLine + 1] = {};
    std::size_t length_ = 0;
};

class SerialPort {
  public:
    SerialPort();
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;
    // Closes the port and waits for the reader thread.
    virtual ~SerialPort();

    // Closes any open port (waiting for its reader), then opens name for reading and writing,
    // not shared. name is "COM5:" on Windows (the desktop form "\\.\COM5" is tried as well),
    // or a device path such as a pseudo-terminal's on POSIX. Returns false when it cannot be
    // opened; *error (when given) gets the system's code.
    bool Open(const char16_t* name, unsigned long* error = nullptr);
    // Sets the line: baud rate, byte size, parity check, stop-bit code (0 one, 1 one and a half,
    // 2 two), parity scheme (0 none, 1 odd, 2 even, 3 mark, 4 space), hardware flow control
    // (bit 0: CTS and DSR); everything else stays as the port had it. False when the port is
    // closed or the settings cannot be read or written.
    bool Configure(int baudRate, int byteSize, bool parityCheck, int stopBits, int parity,
                   int hardwareFlow);
    // Writes text (without its terminator) in one write. False when the port is closed or the
    // write fails.
    bool Write(const char* text);
    // Starts the reader thread, which calls callback with context for every line. False when
    // the port is closed or the thread cannot be made.
    bool StartReader(SerialLineCallback callback, void* context);
    // Closes the port; with wait, then waits up to 10 s for the reader thread to end. Closing a
    // closed port does nothing.
    void Close(bool wait);
    bool IsOpen() const;
    // Whether a reader thread was started and has not ended yet. The reader ends when the port
    // is closed, or by itself when the line fails (the board was unplugged or vanished).
    bool ReaderRunning() const;
    // How the last reader ended: 0 when it was stopped by Close, else the system's code of the
    // failure that ended it. Meaningful once ReaderRunning() is false.
    unsigned long ReaderResult() const;

    class Impl;

  private:
    std::unique_ptr<Impl> impl_;
};

// A serial port the system has, for the port chooser: what the list shows and the number that
// "COM%d:" opens.
struct SerialPortEntry {
    std::u16string label;
    int number = 0;
};

// Lists the serial ports present. Windows: the drivers under HKLM "Drivers\Active" (a handheld)
// and the values of HKLM "HARDWARE\DEVICEMAP\SERIALCOMM" (a desktop, and Wine); each port once,
// in that order. POSIX: none.
std::vector<SerialPortEntry> ListSerialPorts();

// Reads the port number of a driver name "COMn:" ("COM" in any letter case, at least five
// characters, a digit after "COM", a colon at the end). False for any other name.
bool ReadComPortNumber(std::u16string_view name, int* number);

}  // namespace velmora::platform
