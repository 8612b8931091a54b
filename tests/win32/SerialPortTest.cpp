// The Windows serial port under Wine, against the board simulators that the CTest entry
// velmora_win32_devices links to COM ports (with-simulators.sh; without it these tests skip).
#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/SerialPort.h"
#include "tests/platform/ReceivedLines.h"

namespace velmora::platform {
namespace {

using test::Clock;
using test::MillisecondsSince;
using test::ReceivedLines;

// The COM number with-simulators.sh gave a simulator, or 0 without simulators.
int SimulatorPort(const char* variable) {
    const char* value = std::getenv(variable);
    return value ? std::atoi(value) : 0;
}

std::u16string PortName(int number) {
    const std::string name = "COM" + std::to_string(number) + ":";
    return std::u16string(name.begin(), name.end());
}

// Returns the processor time this program used while it slept for milliseconds.
double CpuSecondsDuring(DWORD milliseconds) {
    const auto seconds = [] {
        FILETIME created, ended, kernel, user;
        GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
        const auto value = [](const FILETIME& time) {
            return (static_cast<ULONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime) / 1e7;
        };
        return value(kernel) + value(user);
    };
    const double before = seconds();
    Sleep(milliseconds);
    return seconds() - before;
}

// Opens the port and answers the simulator's "I" requests with the program's hello.
void Connect(SerialPort& port, int number, ReceivedLines& received) {
    unsigned long error = 1;
    ASSERT_TRUE(port.Open(PortName(number).c_str(), &error)) << "COM" << number << ": " << error;
    EXPECT_EQ(error, 0u);
    EXPECT_TRUE(port.Configure(9600, 8, false, 0, 0, 0));
    ASSERT_TRUE(port.StartReader(ReceivedLines::Add, &received));
    ASSERT_TRUE(port.Write("Velmora 2.1\r\n"));
}

TEST(SerialPortWine, ExchangesLinesWithTheBoardThenClosesPromptly) {
    const int number = SimulatorPort("VELMORA_SIM_UCB_COM");
    if (number == 0)
        GTEST_SKIP() << "needs the board simulator (CTest entry velmora_win32_devices)";
    SerialPort port;
    ReceivedLines received("I");  // the simulator's "I" requests are left out
    Connect(port, number, received);
    EXPECT_EQ(received.WaitFor(3), (std::vector<std::string>{"Me2e4", "Me7e8/Q", "X"}));
    // The board answers only once it has read this line whole.
    ASSERT_TRUE(port.Write("Me7-e5\r\n"));
    EXPECT_EQ(received.WaitFor(4), (std::vector<std::string>{"Me2e4", "Me7e8/Q", "X", "done"}));

    // The board is silent now. Under Wine the reader's wait for characters returns at once:
    // it must wait in its reads instead of spinning.
    EXPECT_LT(CpuSecondsDuring(1000), 0.2) << "seconds of processor time in 1 s";
    // Close must end the waiting reader promptly.
    ASSERT_TRUE(port.ReaderRunning());
    const auto start = Clock::now();
    port.Close(true);
    EXPECT_LT(MillisecondsSince(start), 1000) << "ms to close";
    EXPECT_FALSE(port.ReaderRunning());
    EXPECT_FALSE(port.IsOpen());
    EXPECT_FALSE(port.Write("late\r\n"));

    // The port can be opened again at once; the board ends its script on this line.
    ASSERT_TRUE(port.Open(PortName(number).c_str()));
    EXPECT_TRUE(port.Write("reopened\r\n"));
    port.Close(true);
}

TEST(SerialPortWine, ReaderEndsWhenTheBoardVanishesAndWritesFail) {
    const int number = SimulatorPort("VELMORA_SIM_VANISH_COM");
    if (number == 0)
        GTEST_SKIP() << "needs the board simulator (CTest entry velmora_win32_devices)";
    SerialPort port;
    ReceivedLines received("I");  // the simulator's "I" requests are left out
    Connect(port, number, received);
    EXPECT_EQ(received.WaitFor(1), std::vector<std::string>{"bye"});
    ASSERT_TRUE(port.Write("ack\r\n"));

    const auto start = Clock::now();
    while (port.ReaderRunning() && MillisecondsSince(start) < 5000)
        Sleep(10);
    EXPECT_FALSE(port.ReaderRunning());
    EXPECT_NE(port.ReaderResult(), 0u);
    EXPECT_TRUE(port.IsOpen());
    EXPECT_FALSE(port.Write("Me7-e5\r\n"));
    port.Close(true);
    EXPECT_FALSE(port.IsOpen());
}

}  // namespace
}  // namespace velmora::platform
