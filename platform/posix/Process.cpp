// Child programs on POSIX systems: fork and exec, with socket pairs for standard input and
// output (a write to a program that has gone fails instead of raising SIGPIPE, and shutting
// down the reading end wakes the reader thread).
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <mutex>
#include <thread>

#include "platform/CodePage.h"
#include "platform/Process.h"

namespace velmora::platform {
namespace {

class PosixProcess final : public Process {
  public:
    PosixProcess(pid_t pid, int input, int output, const ProcessStart& start)
        : pid_(pid), input_(input), output_(output), onLine_(start.onLine), onEnd_(start.onEnd) {
        reader_ = std::thread([this] { ReadOutput(); });
    }

    ~PosixProcess() override {
        Kill();
        shutdown(output_, SHUT_RDWR);
        reader_.join();
        close(input_);
        close(output_);
    }

    bool WriteLine(std::string_view line) override {
        std::string bytes(line);
        bytes += '\n';
        std::lock_guard<std::mutex> lock(writing_);
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            const ssize_t count =
                send(input_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) return false;
            sent += static_cast<std::size_t>(count);
        }
        return true;
    }

    bool Running() override {
        std::lock_guard<std::mutex> lock(state_);
        return Poll();
    }

    bool WaitForExit(int milliseconds) override {
        const auto deadline =
            std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
        for (;;) {
            if (!Running()) return true;
            if (std::chrono::steady_clock::now() >= deadline) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    void Kill() override {
        std::lock_guard<std::mutex> lock(state_);
        if (!Poll()) return;
        kill(pid_, SIGKILL);
        while (waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) {
        }
        ended_ = true;
    }

  private:
    // Reaps the program when it has ended; returns whether it still runs. Call with state_ held.
    bool Poll() {
        if (ended_) return false;
        if (waitpid(pid_, nullptr, WNOHANG) == pid_) ended_ = true;
        return !ended_;
    }

    void ReadOutput() {
        OutputLines lines(onLine_);
        char buffer[4096];
        for (;;) {
            const ssize_t count = recv(output_, buffer, sizeof buffer, 0);
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) break;
            lines.Add(buffer, static_cast<std::size_t>(count));
        }
        lines.Finish();
        if (onEnd_) onEnd_();
    }

    const pid_t pid_;
    const int input_;
    const int output_;
    std::function<void(const std::string&)> onLine_;
    std::function<void()> onEnd_;
    std::thread reader_;
    std::mutex writing_;
    std::mutex state_;
    bool ended_ = false;
};

void CloseBoth(int pair[2]) {
    close(pair[0]);
    close(pair[1]);
}

}  // namespace

// Starts the program with its error output thrown away. A status pipe closed by a successful
// exec tells the parent whether the program could be started.
std::unique_ptr<Process> StartProcess(const ProcessStart& start, ErrorCode* error) {
    // Everything the child needs is prepared before fork: after it only system calls are safe.
    const std::string program = WideToUtf8(start.program);
    const std::string folder = WideToUtf8(start.folder);
    std::vector<std::string> words = {program};
    for (const std::u16string& word : SplitArguments(start.arguments))
        words.push_back(WideToUtf8(word));
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    int input[2], output[2], status[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, input) != 0) {
        *error = static_cast<ErrorCode>(errno);
        return nullptr;
    }
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, output) != 0) {
        *error = static_cast<ErrorCode>(errno);
        CloseBoth(input);
        return nullptr;
    }
    if (pipe2(status, O_CLOEXEC) != 0) {
        *error = static_cast<ErrorCode>(errno);
        CloseBoth(input);
        CloseBoth(output);
        return nullptr;
    }
    const pid_t pid = fork();
    if (pid == 0) {
        const int nothing = open("/dev/null", O_WRONLY);
        if (dup2(input[1], 0) < 0 || dup2(output[1], 1) < 0 || nothing < 0 ||
            dup2(nothing, 2) < 0 || (!folder.empty() && chdir(folder.c_str()) != 0)) {
            const int code = errno;
            (void)!write(status[1], &code, sizeof code);
            _exit(127);
        }
        execv(argv[0], argv.data());
        const int code = errno;
        (void)!write(status[1], &code, sizeof code);
        _exit(127);
    }
    close(input[1]);
    close(output[1]);
    close(status[1]);
    int code = pid < 0 ? errno : 0;
    if (pid > 0) {
        ssize_t count;
        while ((count = read(status[0], &code, sizeof code)) < 0 && errno == EINTR) {
        }
        if (count <= 0) code = 0;
        if (code != 0) {
            while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
            }
        }
    }
    close(status[0]);
    if (code != 0) {
        close(input[0]);
        close(output[0]);
        *error = static_cast<ErrorCode>(code);
        return nullptr;
    }
    *error = 0;
    return std::make_unique<PosixProcess>(pid, input[0], output[0], start);
}

}  // namespace velmora::platform
