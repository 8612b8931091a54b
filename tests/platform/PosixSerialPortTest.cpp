// The POSIX serial port on a pseudo-terminal held by the test, whose far end stands for the
// board: the raw bytes both ways, closing, and a board that goes away.
#ifndef _WIN32

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "platform/CodePage.h"
#include "platform/SerialPort.h"
#include "tests/platform/ReceivedLines.h"

namespace velmora::platform {
namespace {

using test::Clock;
using test::MillisecondsSince;
using test::ReceivedLines;

// A pseudo-terminal held by the test: the far end stands for the board, the port for the program.
class TestTerminal {
  public:
    TestTerminal() {
        far_ = posix_openpt(O_RDWR | O_NOCTTY);
        EXPECT_GE(far_, 0);
        EXPECT_EQ(grantpt(far_), 0);
        EXPECT_EQ(unlockpt(far_), 0);
        port_ = ptsname(far_);
    }
    ~TestTerminal() { Hangup(); }
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

  private:
    int far_ = -1;
    std::string port_;
};

// The board has gone: the reader ends with an error, and the port stays open until the program
// closes it, but nothing can be sent any more.
TEST(PosixSerialPort, ReaderEndsWhenTheBoardVanishesAndWritesFail) {
    TestTerminal terminal;
    SerialPort port;
    ReceivedLines received;
    ASSERT_TRUE(port.Open(terminal.Port().c_str()));
    ASSERT_TRUE(port.StartReader(ReceivedLines::Add, &received));
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
    ReceivedLines received;
    ASSERT_TRUE(port.Open(terminal.Port().c_str()));
    ASSERT_TRUE(port.StartReader(ReceivedLines::Add, &received));

    // Many lines in few writes, so that reads end in mid-line. A terminal that is not raw would
    // erase at DEL (\x7f), kill the line at ^U, stop its output at ^S and end input at ^D.
    std::string burst;
    std::vector<std::string> expected;
    for (int number = 0; number < 400; ++number) {
        expected.push_back("Move " + std::to_string(number));
        burst += expected.back() + (number % 2 ? "\r\n" : "\n");
    }
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

}  // namespace
}  // namespace velmora::platform

#endif
