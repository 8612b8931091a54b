// The POSIX serial port on a pseudo-terminal held by the test, whose far end stands for the
// board: the raw bytes both ways, the terminal settings, closing and a board that goes away.
#ifndef _WIN32

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/CodePage.h"
#include "platform/SerialPort.h"
#include "platform/posix/TerminalSettings.h"

namespace velmora::platform {
namespace {

using Clock = std::chrono::steady_clock;

long long MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

// Lines handed on by a reader, for the test thread to wait for.
class Lines {
  public:
    static void Add(const char* line, void* context) { static_cast<Lines*>(context)->Push(line); }
    void Push(const std::string& line) {
        std::lock_guard<std::mutex> lock(mutex_);
        lines_.push_back(line);
        changed_.notify_all();
    }
    // Waits up to milliseconds until there are count lines; returns all there are.
    std::vector<std::string> WaitFor(std::size_t count, int milliseconds = 10000) {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait_for(lock, std::chrono::milliseconds(milliseconds),
                          [&] { return lines_.size() >= count; });
        return lines_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> lines_;
};

// A pseudo-terminal held by the test: the far end stands for the board, the port for the
// program. The test keeps the port side open as well, to read its settings.
class TestTerminal {
  public:
    TestTerminal() {
        far_ = posix_openpt(O_RDWR | O_NOCTTY);
        EXPECT_GE(far_, 0);
        EXPECT_EQ(grantpt(far_), 0);
        EXPECT_EQ(unlockpt(far_), 0);
        port_ = ptsname(far_);
        near_ = open(port_.c_str(), O_RDWR | O_NOCTTY);
        EXPECT_GE(near_, 0);
    }
    ~TestTerminal() {
        close(near_);
        Hangup();
    }
    // The board goes away: the far end closes.
    void Hangup() {
        if (far_ >= 0) close(far_);
        far_ = -1;
    }
    std::u16string Port() const { return Utf8ToWide(port_); }
    void Send(const std::string& bytes) {
        ASSERT_EQ(write(far_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    // Reads what the port sent within milliseconds.
    std::string Received(int milliseconds) {
        std::string bytes;
        pollfd watched = {far_, POLLIN, 0};
        while (poll(&watched, 1, milliseconds) > 0) {
            char buffer[256];
            const ssize_t count = read(far_, buffer, sizeof buffer);
            if (count <= 0) break;
            bytes.append(buffer, static_cast<std::size_t>(count));
        }
        return bytes;
    }
    // The settings of the port's side.
    termios PortSettings() {
        termios settings = {};
        EXPECT_EQ(tcgetattr(near_, &settings), 0);
        return settings;
    }

  private:
    int far_ = -1;
    int near_ = -1;
    std::string port_;
};

// The board has gone: the reader ends with an error, and the port stays open until the program
// closes it, but nothing can be sent any more.
TEST(PosixSerialPort, ReaderEndsWhenTheBoardVanishesAndWritesFail) {
    TestTerminal terminal;
    SerialPort port;
    Lines received;
    ASSERT_TRUE(port.Open(terminal.Port().c_str()));
    ASSERT_TRUE(port.StartReader(Lines::Add, &received));
    terminal.Hangup();
    const auto start = Clock::now();
    while (port.ReaderRunning() && MillisecondsSince(start) < 5000)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_FALSE(port.ReaderRunning());
    EXPECT_NE(port.ReaderResult(), 0u);
    EXPECT_TRUE(port.IsOpen());
    EXPECT_FALSE(port.Write("Me7-e5\r\n"));
    port.Close(true);
    EXPECT_FALSE(port.IsOpen());
}

TEST(PosixSerialPort, HandsOnEveryLineInOrderAndTouchesNoByte) {
    TestTerminal terminal;
    SerialPort port;
    Lines received;
    ASSERT_TRUE(port.Open(terminal.Port().c_str()));
    ASSERT_TRUE(port.StartReader(Lines::Add, &received));

    // Many lines in few writes, so that reads end in the middle of lines; a long line is cut
    // into pieces of 255. A terminal that is not raw would erase at DEL (\x7f), kill the line
    // at ^U, stop its output at ^S and end input at ^D.
    std::string burst;
    std::vector<std::string> expected;
    for (int number = 0; number < 400; ++number) {
        expected.push_back("Move " + std::to_string(number));
        burst += expected.back() + (number % 2 ? "\r\n" : "\n");
    }
    const std::string longLine(600, 'x');
    burst += longLine + "\r\n";
    expected.insert(expected.end(),
                    {std::string(255, 'x'), std::string(255, 'x'), std::string(90, 'x')});
    burst +=
        "ab\x7f"
        "c\x15\x13\x04"
        "d\r";
    expected.push_back(
        "ab\x7f"
        "cd");
    for (std::size_t at = 0; at < burst.size(); at += 1000)
        terminal.Send(burst.substr(at, 1000));
    EXPECT_EQ(received.WaitFor(expected.size()), expected);
    // Nothing received is echoed back to the board.
    EXPECT_EQ(terminal.Received(200), "");
    ASSERT_TRUE(port.Write("Velmora 2.1\r\n"));
    EXPECT_EQ(terminal.Received(200), "Velmora 2.1\r\n");

    // The board is silent now: the reader waits, and Close must end it at once.
    ASSERT_TRUE(port.ReaderRunning());
    const auto start = Clock::now();
    port.Close(true);
    EXPECT_LT(MillisecondsSince(start), 1000);
    EXPECT_FALSE(port.ReaderRunning());
    EXPECT_EQ(port.ReaderResult(), 0u);
    EXPECT_FALSE(port.Write("late\r\n"));
}

TEST(PosixSerialPort, SetsTerminalSettingsFromTheLineArguments) {
    struct Case {
        int baudRate, byteSize;
        bool parityCheck;
        int stopBits, parity, hardwareFlow;
        speed_t speed;
        tcflag_t controlBits;  // among CSIZE, PARENB, PARODD, CSTOPB, CMSPAR and CRTSCTS
    };
    const Case kCases[] = {
        {9600, 8, false, 0, 0, 0, B9600, CS8},
        {19200, 7, true, 2, 2, 0, B19200, CS7 | CSTOPB | PARENB},
        {1200, 7, true, 0, 1, 1, B1200, CS7 | PARENB | PARODD | CRTSCTS},
        {115200, 5, false, 1, 0, 3, B115200, CS5 | CSTOPB | CRTSCTS},
        {300, 7, true, 0, 3, 0, B300, CS7 | PARENB | PARODD | CMSPAR},
        {57600, 8, false, 2, 4, 0, B57600, CS8 | PARENB | CMSPAR | CSTOPB},
    };
    const tcflag_t kControl = CSIZE | PARENB | PARODD | CSTOPB | CMSPAR | CRTSCTS;
    for (const Case& test : kCases) {
        SCOPED_TRACE(testing::Message() << test.baudRate << " " << test.byteSize << " "
                                        << test.parity << " " << test.stopBits);
        // Every flag set, as a terminal left in the oddest state would have it.
        termios settings;
        std::memset(&settings, 0xff, sizeof settings);
        ASSERT_TRUE(posix::SetLineSettings(&settings, test.baudRate, test.byteSize,
                                           test.parityCheck, test.stopBits, test.parity,
                                           test.hardwareFlow));
        EXPECT_EQ(cfgetispeed(&settings), test.speed);
        EXPECT_EQ(cfgetospeed(&settings), test.speed);
        EXPECT_EQ(settings.c_cflag & kControl, test.controlBits);
        EXPECT_EQ((settings.c_iflag & INPCK) != 0, test.parityCheck);
        // Raw mode itself shows in the bytes passed through on a real terminal, below.
        EXPECT_EQ(settings.c_cflag & (CREAD | CLOCAL), CREAD | CLOCAL);
    }
    // Values the line cannot take leave the settings as they were.
    const int kRefused[][6] = {{12345, 8, 0, 0, 0, 0},
                               {9600, 9, 0, 0, 0, 0},
                               {9600, 4, 0, 0, 0, 0},
                               {9600, 8, 0, 3, 0, 0},
                               {9600, 8, 0, 0, 5, 0}};
    for (const auto& refused : kRefused) {
        termios settings, before;
        std::memset(&settings, 0x5a, sizeof settings);
        before = settings;
        EXPECT_FALSE(posix::SetLineSettings(&settings, refused[0], refused[1], refused[2],
                                            refused[3], refused[4], refused[5]))
            << refused[0] << " " << refused[1] << " " << refused[3] << " " << refused[4];
        EXPECT_EQ(std::memcmp(&settings, &before, sizeof settings), 0);
    }
}

TEST(PosixSerialPort, ConfigureReachesTheTerminal) {
    TestTerminal terminal;
    SerialPort port;
    ASSERT_TRUE(port.Open(terminal.Port().c_str()));
    // Raw from the start: nothing received is echoed even before Configure.
    EXPECT_EQ(terminal.PortSettings().c_lflag & (ICANON | ECHO), 0u);
    // A pseudo-terminal keeps what it can of the line: speed, stop bits, odd parity, flow
    // control and the parity check (it forces 8 data bits and clears PARENB). A line it cannot
    // take leaves it as it was.
    ASSERT_TRUE(port.Configure(19200, 7, true, 2, 1, 1));
    EXPECT_FALSE(port.Configure(12345, 8, false, 0, 0, 0));
    const termios settings = terminal.PortSettings();
    EXPECT_EQ(cfgetospeed(&settings), B19200);
    EXPECT_EQ(settings.c_cflag & (CSTOPB | PARODD | CRTSCTS), CSTOPB | PARODD | CRTSCTS);
    EXPECT_NE(settings.c_iflag & INPCK, 0u);
}

TEST(PosixSerialPort, OpensOnePortOnceAndRefusesWorkWhenClosed) {
    TestTerminal terminal;
    SerialPort first, second;
    ASSERT_TRUE(first.Open(terminal.Port().c_str()));
    unsigned long error = 0;
    EXPECT_FALSE(second.Open(terminal.Port().c_str(), &error));
    // The lock refuses it; TIOCEXCL already does for a user without CAP_SYS_ADMIN.
    EXPECT_TRUE(error == EWOULDBLOCK || error == EBUSY) << error;
    Lines received;
    ASSERT_TRUE(first.StartReader(Lines::Add, &received));
    EXPECT_FALSE(first.StartReader(Lines::Add, &received));
    first.Close(true);
    first.Close(true);
    EXPECT_TRUE(second.Open(terminal.Port().c_str(), &error));
    EXPECT_EQ(error, 0u);

    EXPECT_FALSE(first.Open(u"/nonexistent/port", &error));
    EXPECT_EQ(error, static_cast<unsigned long>(ENOENT));
    EXPECT_FALSE(first.IsOpen());
    EXPECT_FALSE(first.Configure(9600, 8, false, 0, 0, 0));
    EXPECT_FALSE(first.Write("Me2-e4\r\n"));
    EXPECT_FALSE(first.StartReader(Lines::Add, &received));
    EXPECT_TRUE(ListSerialPorts().empty());
}

}  // namespace
}  // namespace velmora::platform

#endif
