// SimulatorLine: the pseudo-terminal a device simulator offers as its serial port, with every
// line sent and received printed on standard output.
#pragma once

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <deque>
#include <string>

namespace velmora::simulators {

// The link made by --link, removed when the program ends; and whether SIGINT, SIGTERM or
// SIGHUP asked it to end.
inline std::string gLinkPath;
inline volatile sig_atomic_t gStopSignal = 0;

inline void RemoveLink() {
    if (!gLinkPath.empty()) unlink(gLinkPath.c_str());
}

// Ends the program with code after removing the link; the pseudo-terminal closes with it, which
// is what the program on the other side sees of a board that vanishes.
[[noreturn]] inline void Exit(int code) {
    fflush(stdout);
    RemoveLink();
    _exit(code);
}

// Sets gStopSignal on SIGINT, SIGTERM and SIGHUP without restarting system calls, so that a
// waiting poll() returns and the main loop decides how to end.
inline void CatchStopSignals() {
    struct sigaction action = {};
    action.sa_handler = [](int signal) { gStopSignal = signal; };
    sigemptyset(&action.sa_mask);
    for (int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
}

inline long long NowMilliseconds() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

class SimulatorLine {
  public:
    // keepEmptyLines: whether an empty received line counts as a line (a chess computer is
    // asked for its next line by a bare line end).
    explicit SimulatorLine(bool keepEmptyLines) : keepEmpty_(keepEmptyLines) {}

    // Opens the pseudo-terminal and prints "pty: /dev/pts/N". The simulator opens the other
    // side once itself, in raw mode, and keeps it open: nothing is echoed or translated, and
    // reads here do not fail before the program under test opens the port. With linkPath, a
    // symbolic link of that name (replacing an existing link) points to the port.
    bool Open(const char* linkPath, const char* program) {
        master_ = posix_openpt(O_RDWR | O_NOCTTY);
        if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) {
            fprintf(stderr, "%s: no pseudo-terminal: %s\n", program, strerror(errno));
            return false;
        }
        const char* name = ptsname(master_);
        slave_ = name ? open(name, O_RDWR | O_NOCTTY) : -1;
        termios settings;
        if (slave_ < 0 || tcgetattr(slave_, &settings) != 0) {
            fprintf(stderr, "%s: cannot open %s: %s\n", program, name ? name : "?",
                    strerror(errno));
            return false;
        }
        cfmakeraw(&settings);
        tcsetattr(slave_, TCSANOW, &settings);
        if (!HoldAsControllingTerminal(program)) return false;
        if (linkPath) {
            struct stat existing;
            if (lstat(linkPath, &existing) == 0 && !S_ISLNK(existing.st_mode)) {
                fprintf(stderr, "%s: %s exists and is not a link\n", program, linkPath);
                return false;
            }
            unlink(linkPath);
            if (symlink(name, linkPath) != 0) {
                fprintf(stderr, "%s: cannot link %s: %s\n", program, linkPath, strerror(errno));
                return false;
            }
            gLinkPath = linkPath;
            atexit(RemoveLink);
        }
        printf("pty: %s\n", name);
        fflush(stdout);
        return true;
    }

    int Descriptor() const { return master_; }

    // Sends line with CR LF and prints "> line".
    void Send(const std::string& line) {
        const std::string bytes = line + "\r\n";
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            const ssize_t count = write(master_, bytes.data() + sent, bytes.size() - sent);
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) break;
            sent += static_cast<std::size_t>(count);
        }
        printf("> %s\n", line.c_str());
        fflush(stdout);
    }

    // Waits up to milliseconds (-1: no limit) for received bytes, or for an other descriptor
    // (-1: none) to be readable; adds each complete line to received and prints "< line".
    // Returns false when a stop signal came. CR, LF and CR LF each end one line.
    bool Wait(int milliseconds, std::deque<std::string>* received, int other = -1,
              bool* otherReady = nullptr) {
        if (otherReady) *otherReady = false;
        pollfd watched[2] = {{master_, POLLIN, 0}, {other, POLLIN, 0}};
        const int count = poll(watched, other >= 0 ? 2 : 1, milliseconds);
        if (gStopSignal) return false;
        if (count <= 0) return true;
        if (otherReady) *otherReady = other >= 0 && watched[1].revents != 0;
        if (watched[0].revents == 0) return true;
        char bytes[512];
        const ssize_t got = read(master_, bytes, sizeof bytes);
        for (ssize_t at = 0; at < got; ++at) {
            const char byte = bytes[at];
            if (byte == '\n' && afterCr_) {
                afterCr_ = false;
                continue;
            }
            afterCr_ = byte == '\r';
            if (byte != '\r' && byte != '\n') {
                pending_ += byte;
                continue;
            }
            if (pending_.empty() && !keepEmpty_) continue;
            printf("< %s\n", pending_.c_str());
            received->push_back(pending_);
            pending_.clear();
        }
        fflush(stdout);
        return true;
    }

    // Waits up to milliseconds, gathering what arrives.
    bool Pause(int milliseconds, std::deque<std::string>* received) {
        const long long end = NowMilliseconds() + milliseconds;
        for (long long left = milliseconds; left > 0; left = end - NowMilliseconds())
            if (!Wait(static_cast<int>(left), received)) return false;
        return true;
    }

  private:
    // Makes the port the controlling terminal of a helper process that lives as long as the
    // simulator. Wine's server opens a port without O_NOCTTY and, being a session leader
    // without one, would take the port as its own controlling terminal: when the simulator ends,
    // the hang-up would send it SIGHUP (and a Debian wineserver then dumps all its objects on
    // its error output). A terminal already controlling another session is never taken.
    bool HoldAsControllingTerminal(const char* program) {
        int ready[2];
        if (pipe(ready) != 0) return false;
        const pid_t parent = getpid();
        const pid_t helper = fork();
        if (helper < 0) {
            fprintf(stderr, "%s: cannot fork: %s\n", program, strerror(errno));
            return false;
        }
        if (helper == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            if (getppid() != parent) _exit(0);
            for (int signal : {SIGINT, SIGTERM, SIGHUP})
                ::signal(signal, SIG_DFL);
            const int nothing = open("/dev/null", O_RDWR);
            for (int standard = 0; standard < 3; ++standard)
                dup2(nothing, standard);
            close(master_);
            close(ready[0]);
            setsid();
            ioctl(slave_, TIOCSCTTY, 0);
            (void)!write(ready[1], "", 1);
            for (;;)
                pause();
        }
        close(ready[1]);
        char byte;
        const bool claimed = read(ready[0], &byte, 1) == 1;
        close(ready[0]);
        return claimed;
    }

    int master_ = -1;
    int slave_ = -1;
    bool keepEmpty_;
    bool afterCr_ = false;
    std::string pending_;
};

}  // namespace velmora::simulators
