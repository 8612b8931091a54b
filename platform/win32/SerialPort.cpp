// Windows serial ports through the comm API: a non-overlapped handle, read timeouts that make
// every read return within kReadWaitMilliseconds, and a reader thread that waits for received
// characters and reads them one byte at a time. Closing the handle is what stops the reader.
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <string>

#include "platform/DebugOutput.h"
#include "platform/SerialPort.h"
#include "platform/win32/WideText.h"

namespace velmora::platform {
namespace {

// How long a read waits for a first byte when none is there. Under Wine 8 closing the handle
// does not end a pending ReadFile (nor do SetCommMask, PurgeComm or CancelIoEx): the read ends
// at this timeout and then fails with ERROR_INVALID_HANDLE, so this bounds how long Close waits
// for the reader there.
constexpr DWORD kReadWaitMilliseconds = 200;

// What the reader thread and the port object share.
constexpr DWORD kReaderWaitMilliseconds = 10000;

// Waits up to milliseconds for the reader thread to end. Messages that other threads send to
// this thread's windows are handled meanwhile: a reader handing over a line waits for this
// thread, which would otherwise wait for the reader until the time is up. Returns whether the
// thread ended.
bool WaitForReader(HANDLE thread, DWORD milliseconds) {
    const DWORD start = GetTickCount();
    for (;;) {
        const DWORD elapsed = GetTickCount() - start;
        if (elapsed >= milliseconds) break;
        const DWORD woken =
            MsgWaitForMultipleObjects(1, &thread, FALSE, milliseconds - elapsed, QS_SENDMESSAGE);
        if (woken == WAIT_OBJECT_0) return true;
        if (woken != WAIT_OBJECT_0 + 1) break;
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
    return WaitForSingleObject(thread, 0) == WAIT_OBJECT_0;
}

struct ReaderState {
    ReaderState(HANDLE port, SerialLineCallback callback, void* context)
        : port(port), cutter(callback, context) {}
    HANDLE port;
    SerialLineCutter cutter;
    // Set by Close before it closes the handle: whatever failure follows is the stop signal.
    std::atomic<bool> stopping{false};
};

// Reads the line until a call fails; returns the system's code of that failure.
DWORD ReadLines(ReaderState& state) {
    if (!SetCommMask(state.port, EV_RXCHAR)) return GetLastError();
    for (;;) {
        DWORD events = 0;
        if (!WaitCommEvent(state.port, &events, nullptr)) return GetLastError();
        // The mask is not looked at: under Wine, WaitCommEvent on a pseudo-terminal returns at
        // once with a mask of 0 even when characters are waiting. The reads below find them,
        // and their timeout keeps this loop from spinning when there are none.
        const DWORD start = GetTickCount();
        bool received = false;
        for (;;) {
            unsigned char byte = 0;
            DWORD count = 0;
            if (!ReadFile(state.port, &byte, 1, &count, nullptr)) return GetLastError();
            if (count == 0) break;
            received = true;
            state.cutter.Add(byte);
        }
        if (received) continue;
        // Nothing came: ask whether the line is still there. Under Wine a pseudo-terminal whose
        // other end has gone keeps giving empty reads, and only this call fails
        // (ERROR_NOT_READY).
        DWORD errors = 0;
        COMSTAT status;
        if (!ClearCommError(state.port, &errors, &status)) return GetLastError();
        // A driver that ignores the read timeout would make this loop spin.
        if (GetTickCount() - start < 20) Sleep(50);
    }
}

// Runs the reader. Ends with 0 when the port was closed under it (the handle became invalid),
// else with the system's code of the failure.
DWORD WINAPI ReaderMain(void* parameter) {
    std::shared_ptr<ReaderState>* shared = static_cast<std::shared_ptr<ReaderState>*>(parameter);
    const std::shared_ptr<ReaderState> state = *shared;
    delete shared;
    DWORD result = ReadLines(*state);
    if (result == ERROR_INVALID_HANDLE || state->stopping) result = 0;
    DebugTrace(u"Sortie thread de lecture\n");
    return result;
}

HANDLE OpenPort(const std::wstring& name) {
    return CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0,
                       nullptr);
}

}  // namespace

class SerialPort::Impl {
  public:
    HANDLE port = INVALID_HANDLE_VALUE;
    HANDLE thread = nullptr;
    std::shared_ptr<ReaderState> reader;
    // The exit code of the last reader whose thread handle was closed.
    DWORD lastResult = 0;
};

SerialPort::SerialPort() : impl_(std::make_unique<Impl>()) {}

SerialPort::~SerialPort() {
    Close(true);
}

// Opens the port and sets its read timeouts. "COMn:" opens only ports 1 to 9 on desktop
// Windows and Wine (the DOS device names); for any number the device form "\\.\COMn" is tried
// next, and its error is the one reported.
bool SerialPort::Open(const char16_t* name, unsigned long* error) {
    Close(true);
    HANDLE port = OpenPort(win32::ToWin32(name));
    DWORD code = port == INVALID_HANDLE_VALUE ? GetLastError() : 0;
    int number = 0;
    if (port == INVALID_HANDLE_VALUE && ReadComPortNumber(name, &number)) {
        port = OpenPort(L"\\\\.\\COM" + std::to_wstring(number));
        code = port == INVALID_HANDLE_VALUE ? GetLastError() : 0;
    }
    if (port == INVALID_HANDLE_VALUE) {
        if (error) *error = code;
        return false;
    }
    // A read returns at once with what is there, else waits up to kReadWaitMilliseconds for a
    // first byte. Without a bound a silent line would keep the reader from ever seeing Close.
    COMMTIMEOUTS timeouts = {};
    timeouts.ReadIntervalTimeout = MAXDWORD;
    timeouts.ReadTotalTimeoutMultiplier = MAXDWORD;
    timeouts.ReadTotalTimeoutConstant = kReadWaitMilliseconds;
    if (!SetCommTimeouts(port, &timeouts)) {
        code = GetLastError();
        CloseHandle(port);
        if (error) *error = code;
        return false;
    }
    impl_->port = port;
    if (error) *error = 0;
    return true;
}

bool SerialPort::Configure(int baudRate, int byteSize, bool parityCheck, int stopBits, int parity,
                           int hardwareFlow) {
    if (impl_->port == INVALID_HANDLE_VALUE) return false;
    DCB settings = {};
    settings.DCBlength = sizeof settings;
    if (!GetCommState(impl_->port, &settings)) return false;
    settings.BaudRate = static_cast<DWORD>(baudRate);
    settings.ByteSize = static_cast<BYTE>(byteSize);
    settings.fParity = parityCheck ? TRUE : FALSE;
    settings.fOutxCtsFlow = (hardwareFlow & 1) ? TRUE : FALSE;
    settings.fOutxDsrFlow = (hardwareFlow & 1) ? TRUE : FALSE;
    settings.Parity = static_cast<BYTE>(parity);
    settings.StopBits = static_cast<BYTE>(stopBits);
    return SetCommState(impl_->port, &settings) != FALSE;
}

bool SerialPort::Write(const char* text) {
    if (impl_->port == INVALID_HANDLE_VALUE) return false;
    const DWORD length = static_cast<DWORD>(std::strlen(text));
    DWORD written = 0;
    return WriteFile(impl_->port, text, length, &written, nullptr) && written == length;
}

// Starts the reader thread. One reader per open port: false when one was started already.
bool SerialPort::StartReader(SerialLineCallback callback, void* context) {
    if (impl_->port == INVALID_HANDLE_VALUE || impl_->thread) return false;
    auto state = std::make_shared<ReaderState>(impl_->port, callback, context);
    auto* parameter = new std::shared_ptr<ReaderState>(state);
    HANDLE thread = CreateThread(nullptr, 0, ReaderMain, parameter, 0, nullptr);
    if (!thread) {
        delete parameter;
        return false;
    }
    impl_->reader = state;
    impl_->thread = thread;
    return true;
}

// Closes the handle, which ends the reader's pending wait or read with ERROR_INVALID_HANDLE
// (under Wine at the end of the read timeout), then with wait gives the reader up to 10 s.
void SerialPort::Close(bool wait) {
    if (impl_->port != INVALID_HANDLE_VALUE) {
        if (impl_->reader) impl_->reader->stopping = true;
        CloseHandle(impl_->port);
        impl_->port = INVALID_HANDLE_VALUE;
    }
    if (wait && impl_->thread) {
        WaitForReader(impl_->thread, kReaderWaitMilliseconds);
        DWORD code = 0;
        if (GetExitCodeThread(impl_->thread, &code) && code != STILL_ACTIVE)
            impl_->lastResult = code;
        CloseHandle(impl_->thread);
        impl_->thread = nullptr;
        impl_->reader.reset();
    }
}

bool SerialPort::IsOpen() const {
    return impl_->port != INVALID_HANDLE_VALUE;
}

bool SerialPort::ReaderRunning() const {
    return impl_->thread && WaitForSingleObject(impl_->thread, 0) == WAIT_TIMEOUT;
}

unsigned long SerialPort::ReaderResult() const {
    DWORD code = 0;
    if (impl_->thread && GetExitCodeThread(impl_->thread, &code) && code != STILL_ACTIVE)
        return code;
    return impl_->thread ? 0 : impl_->lastResult;
}

namespace {

// Reads a string value of at most capacity characters. False when it is missing, longer, or
// not a string.
bool ReadText(HKEY key, const wchar_t* name, DWORD capacity, std::u16string* text) {
    std::wstring buffer(capacity + 1, L'\0');
    DWORD type = 0;
    DWORD size = (capacity + 1) * sizeof(wchar_t);
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()),
                         &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ))
        return false;
    buffer.resize(std::wcslen(buffer.c_str()));
    *text = win32::FromWin32(buffer);
    return true;
}

// Returns the label of an active driver: the FriendlyName of the driver's own key (named by the
// "Key" value) when it has one, else the driver name and its "Dll" in brackets (the name alone
// when the driver's key cannot be read).
std::u16string DriverLabel(HKEY active, const std::u16string& name) {
    std::u16string label = name;
    std::u16string keyPath;
    HKEY driver;
    if (!ReadText(active, L"Key", MAX_PATH, &keyPath) ||
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, win32::ToWin32(keyPath).c_str(), 0, KEY_READ, &driver) !=
            ERROR_SUCCESS)
        return label;
    std::u16string friendly, dll;
    if (ReadText(driver, L"FriendlyName", 128, &friendly))
        label = friendly;
    else if (ReadText(driver, L"Dll", 128, &dll))
        label = name + u" (" + dll + u")";
    RegCloseKey(driver);
    return label;
}

// Adds the serial drivers of a handheld: the sub-keys of HKLM "Drivers\Active" (names of at
// most 16 characters) whose "Name" is "COMn:".
void AddActiveDrivers(std::vector<SerialPortEntry>* ports) {
    HKEY drivers;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Drivers\\Active", 0, KEY_READ, &drivers) !=
        ERROR_SUCCESS)
        return;
    for (DWORD index = 0;; ++index) {
        wchar_t subName[17];
        DWORD length = 17;
        const LONG found =
            RegEnumKeyExW(drivers, index, subName, &length, nullptr, nullptr, nullptr, nullptr);
        if (found == ERROR_NO_MORE_ITEMS) break;
        HKEY active;
        if (found != ERROR_SUCCESS ||
            RegOpenKeyExW(drivers, subName, 0, KEY_READ, &active) != ERROR_SUCCESS)
            continue;
        std::u16string name;
        int number = 0;
        if (ReadText(active, L"Name", 128, &name) && ReadComPortNumber(name, &number))
            ports->push_back({DriverLabel(active, name), number});
        RegCloseKey(active);
    }
    RegCloseKey(drivers);
}

// Adds the ports of a desktop system (and Wine): the values of HKLM
// "HARDWARE\DEVICEMAP\SERIALCOMM", whose data name the port ("COM5"), labelled the way the
// port is opened ("COM5:"). A port listed already is skipped.
void AddDeviceMapPorts(std::vector<SerialPortEntry>* ports) {
    HKEY map;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &map) !=
        ERROR_SUCCESS)
        return;
    for (DWORD index = 0;; ++index) {
        wchar_t valueName[256];
        DWORD nameLength = 256;
        wchar_t data[64] = {};
        DWORD size = sizeof data - sizeof(wchar_t);
        DWORD type = 0;
        const LONG found = RegEnumValueW(map, index, valueName, &nameLength, nullptr, &type,
                                         reinterpret_cast<BYTE*>(data), &size);
        if (found == ERROR_NO_MORE_ITEMS) break;
        if (found != ERROR_SUCCESS || type != REG_SZ) continue;
        const std::u16string label = win32::FromWin32(data) + u":";
        int number = 0;
        if (!ReadComPortNumber(label, &number)) continue;
        const bool listed = std::any_of(ports->begin(), ports->end(), [number](const auto& port) {
            return port.number == number;
        });
        if (!listed) ports->push_back({label, number});
    }
    RegCloseKey(map);
}

}  // namespace

std::vector<SerialPortEntry> ListSerialPorts() {
    std::vector<SerialPortEntry> ports;
    AddActiveDrivers(&ports);
    AddDeviceMapPorts(&ports);
    return ports;
}

}  // namespace velmora::platform
