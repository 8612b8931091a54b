// termios settings of a serial line.
#include "platform/posix/TerminalSettings.h"

namespace velmora::platform::posix {
namespace {

bool SpeedOf(int baudRate, speed_t* speed) {
    static const struct {
        int rate;
        speed_t code;
    } kSpeeds[] = {{50, B50},         {75, B75},         {110, B110},       {134, B134},
                   {150, B150},       {200, B200},       {300, B300},       {600, B600},
                   {1200, B1200},     {1800, B1800},     {2400, B2400},     {4800, B4800},
                   {9600, B9600},     {19200, B19200},   {38400, B38400},   {57600, B57600},
                   {115200, B115200}, {230400, B230400}, {460800, B460800}, {921600, B921600}};
    for (const auto& entry : kSpeeds) {
        if (entry.rate == baudRate) {
            *speed = entry.code;
            return true;
        }
    }
    return false;
}

}  // namespace

void MakeRaw(termios* settings) {
    settings->c_iflag &= ~static_cast<tcflag_t>(IGNBRK | BRKINT | PARMRK | ISTRIP | INLCR | IGNCR |
                                                ICRNL | IXON | IXOFF | IXANY);
    settings->c_oflag &= ~static_cast<tcflag_t>(OPOST);
    settings->c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
    settings->c_cflag |= CLOCAL | CREAD;
    settings->c_cc[VMIN] = 1;
    settings->c_cc[VTIME] = 0;
}

// Sets the line. Stop bits: 0 one, 1 one and a half, 2 two; terminals know no one and a half,
// which is sent as two. Parity: 0 none, 1 odd, 2 even, 3 mark, 4 space (mark and space need
// CMSPAR). The parity check turns on INPCK.
bool SetLineSettings(termios* settings, int baudRate, int byteSize, bool parityCheck, int stopBits,
                     int parity, int hardwareFlow) {
    speed_t speed;
    static const tcflag_t kSizes[] = {CS5, CS6, CS7, CS8};
    if (!SpeedOf(baudRate, &speed) || byteSize < 5 || byteSize > 8 || stopBits < 0 ||
        stopBits > 2 || parity < 0 || parity > 4)
        return false;
#ifndef CMSPAR
    if (parity >= 3) return false;
#endif
    MakeRaw(settings);
    cfsetispeed(settings, speed);
    cfsetospeed(settings, speed);
    settings->c_cflag &= ~static_cast<tcflag_t>(CSIZE | PARENB | PARODD | CSTOPB | CRTSCTS);
    settings->c_cflag |= kSizes[byteSize - 5];
    if (stopBits != 0) settings->c_cflag |= CSTOPB;
    if (parity == 1) settings->c_cflag |= PARENB | PARODD;
    if (parity == 2) settings->c_cflag |= PARENB;
#ifdef CMSPAR
    settings->c_cflag &= ~static_cast<tcflag_t>(CMSPAR);
    if (parity == 3) settings->c_cflag |= PARENB | PARODD | CMSPAR;
    if (parity == 4) settings->c_cflag |= PARENB | CMSPAR;
#endif
    if (parityCheck)
        settings->c_iflag |= INPCK;
    else
        settings->c_iflag &= ~static_cast<tcflag_t>(INPCK);
    if (hardwareFlow & 1) settings->c_cflag |= CRTSCTS;
    return true;
}

}  // namespace velmora::platform::posix
