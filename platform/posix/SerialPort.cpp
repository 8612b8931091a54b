// POSIX serial ports: a terminal device (a real port or a pseudo-terminal) set up with termios,
// and a reader thread that a pipe wakes when the port is closed. Closing a descriptor under a
// blocked read() does not wake the reader on Linux, so the reader polls the device and the pipe
// together and ends when the pipe's writing end goes away.
#include "platform/SerialPort.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>

#include "platform/CodePage.h"
#include "platform/DebugOutput.h"
#include "platform/posix/TerminalSettings.h"

namespace velmora::platform {
namespace {

// What the reader thread tells the port about its end. Shared, because a reader that does not
// end within Close's wait is left to finish alone.
struct ReaderEnd {
    std::mutex mutex;
    std::condition_variable ended;
    bool running = true;
    unsigned long result = 0;
};

// Reads the device until the wake pipe closes (the port was closed: result 0) or the line
// fails: a read error, or the end of input a terminal reports once it is hung up (the other
// end of a pseudo-terminal went away), both given as the errno code (EIO for the end of input).
// Owns both descriptors and closes them.
void ReadLines(int device, int wake, SerialLineCutter cutter, std::shared_ptr<ReaderEnd> end) {
    unsigned long result = 0;
    for (;;) {
        pollfd watched[2] = {{wake, POLLIN, 0}, {device, POLLIN, 0}};
        if (poll(watched, 2, -1) < 0) {
            if (errno == EINTR) continue;
            result = static_cast<unsigned long>(errno);
            break;
        }
        if (watched[0].revents != 0) break;
        if (watched[1].revents & POLLNVAL) {
            result = EBADF;
            break;
        }
        unsigned char bytes[256];
        const ssize_t count = read(device, bytes, sizeof bytes);
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (count <= 0) {
            result = count < 0 ? static_cast<unsigned long>(errno) : EIO;
            break;
        }
        for (ssize_t at = 0; at < count; ++at)
            cutter.Add(bytes[at]);
    }
    close(device);
    close(wake);
    DebugTrace(u"Sortie thread de lecture\n");
    {
        std::lock_guard<std::mutex> lock(end->mutex);
        end->running = false;
        end->result = result;
    }
    end->ended.notify_all();
}

}  // namespace

class SerialPort::Impl {
  public:
    int device = -1;
    // The writing end of the reader's wake pipe: closing it stops the reader.
    int wake = -1;
    std::thread reader;
    std::shared_ptr<ReaderEnd> readerEnd;

    // Waits up to milliseconds for the reader thread; one that is still running then is left
    // to end alone.
    void WaitForReader(int milliseconds) {
        if (!reader.joinable()) return;
        std::unique_lock<std::mutex> lock(readerEnd->mutex);
        const bool ended = readerEnd->ended.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                                     [this] { return !readerEnd->running; });
        lock.unlock();
        if (ended)
            reader.join();
        else
            reader.detach();
    }
};

SerialPort::SerialPort() : impl_(std::make_unique<Impl>()) {}

SerialPort::~SerialPort() {
    Close(true);
}

// Opens the device, locks it against other opens (flock, and TIOCEXCL for programs that do not
// use flock), and puts it in raw mode at once so that nothing received is echoed back.
bool SerialPort::Open(const char16_t* name, unsigned long* error) {
    Close(true);
    const std::string path = WideToUtf8(name);
    const int device = open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (device < 0) {
        if (error) *error = static_cast<unsigned long>(errno);
        return false;
    }
    if (flock(device, LOCK_EX | LOCK_NB) != 0) {
        if (error) *error = static_cast<unsigned long>(errno);
        close(device);
        return false;
    }
    ioctl(device, TIOCEXCL);
    termios settings;
    if (tcgetattr(device, &settings) == 0) {
        posix::MakeRaw(&settings);
        tcsetattr(device, TCSANOW, &settings);
    }
    impl_->device = device;
    if (error) *error = 0;
    return true;
}

bool SerialPort::Configure(int baudRate, int byteSize, bool parityCheck, int stopBits, int parity,
                           int hardwareFlow) {
    termios settings;
    if (impl_->device < 0 || tcgetattr(impl_->device, &settings) != 0) return false;
    return posix::SetLineSettings(&settings, baudRate, byteSize, parityCheck, stopBits, parity,
                                  hardwareFlow) &&
           tcsetattr(impl_->device, TCSANOW, &settings) == 0;
}

bool SerialPort::Write(const char* text) {
    if (impl_->device < 0) return false;
    const std::size_t length = std::strlen(text);
    ssize_t written;
    do {
        written = write(impl_->device, text, length);
    } while (written < 0 && errno == EINTR);
    return written >= 0 && static_cast<std::size_t>(written) == length;
}

// Starts the reader on a descriptor of its own (a duplicate), which it closes when it ends: the
// port's descriptor can then be closed at any time without the reader ever reading a reused
// descriptor number. One reader per open port: false when one was started already.
bool SerialPort::StartReader(SerialLineCallback callback, void* context) {
    if (impl_->device < 0 || impl_->wake >= 0) return false;
    int wake[2];
    if (pipe2(wake, O_CLOEXEC) != 0) return false;
    const int device = fcntl(impl_->device, F_DUPFD_CLOEXEC, 0);
    if (device < 0) {
        close(wake[0]);
        close(wake[1]);
        return false;
    }
    // A reader of an earlier open has been waited for by Open; this only releases its thread.
    impl_->WaitForReader(0);
    impl_->readerEnd = std::make_shared<ReaderEnd>();
    impl_->wake = wake[1];
    impl_->reader = std::thread(ReadLines, device, wake[0], SerialLineCutter(callback, context),
                                impl_->readerEnd);
    return true;
}

// Closes the port at once (the lock goes with it, so the device can be opened again) and
// stops the reader through its wake pipe.
void SerialPort::Close(bool wait) {
    if (impl_->device >= 0) {
        ioctl(impl_->device, TIOCNXCL);
        flock(impl_->device, LOCK_UN);
        close(impl_->device);
        impl_->device = -1;
    }
    if (impl_->wake >= 0) {
        close(impl_->wake);
        impl_->wake = -1;
    }
    if (wait) impl_->WaitForReader(10000);
}

bool SerialPort::IsOpen() const {
    return impl_->device >= 0;
}

bool SerialPort::ReaderRunning() const {
    if (!impl_->readerEnd) return false;
    std::lock_guard<std::mutex> lock(impl_->readerEnd->mutex);
    return impl_->readerEnd->running;
}

unsigned long SerialPort::ReaderResult() const {
    if (!impl_->readerEnd) return 0;
    std::lock_guard<std::mutex> lock(impl_->readerEnd->mutex);
    return impl_->readerEnd->result;
}

std::vector<SerialPortEntry> ListSerialPorts() {
    return {};
}

}  // namespace velmora::platform
