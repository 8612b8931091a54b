// Child programs on Windows: CreateProcessW with anonymous pipes for standard input and output,
// no console window, and the error output sent to NUL.
#include <windows.h>

#include <mutex>
#include <thread>

#include "platform/Process.h"
#include "platform/win32/WideText.h"

namespace velmora::platform {
namespace {

class Win32Process final : public Process {
  public:
    Win32Process(HANDLE process, HANDLE input, HANDLE output, const ProcessStart& start)
        : process_(process),
          input_(input),
          output_(output),
          onLine_(start.onLine),
          onEnd_(start.onEnd) {
        reader_ = std::thread([this] { ReadOutput(); });
    }

    ~Win32Process() override {
        Kill();
        // The program's end closed its side of the output pipe, which ends the reader.
        reader_.join();
        CloseHandle(input_);
        CloseHandle(output_);
        CloseHandle(process_);
    }

    bool WriteLine(std::string_view line) override {
        std::string bytes(line);
        bytes += '\n';
        std::lock_guard<std::mutex> lock(writing_);
        DWORD written = 0;
        return WriteFile(input_, bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                         nullptr) &&
               written == bytes.size();
    }

    bool Running() override { return WaitForSingleObject(process_, 0) == WAIT_TIMEOUT; }

    bool WaitForExit(int milliseconds) override {
        return WaitForSingleObject(process_, static_cast<DWORD>(milliseconds)) == WAIT_OBJECT_0;
    }

    void Kill() override {
        if (!Running()) return;
        TerminateProcess(process_, 1);
        WaitForSingleObject(process_, INFINITE);
    }

  private:
    void ReadOutput() {
        OutputLines lines(onLine_);
        char buffer[4096];
        DWORD count = 0;
        while (ReadFile(output_, buffer, sizeof buffer, &count, nullptr) && count > 0)
            lines.Add(buffer, count);
        lines.Finish();
        if (onEnd_) onEnd_();
    }

    HANDLE process_;
    HANDLE input_;
    HANDLE output_;
    std::function<void(const std::string&)> onLine_;
    std::function<void()> onEnd_;
    std::thread reader_;
    std::mutex writing_;
};

// Writes the command line: the program in quotes, then the arguments as given.
std::wstring CommandLine(const ProcessStart& start) {
    std::wstring line = L"\"" + win32::ToWin32(start.program) + L"\"";
    if (!start.arguments.empty()) line += L" " + win32::ToWin32(start.arguments);
    return line;
}

}  // namespace

// Creates both pipes with only the child's ends inheritable, starts the program, and closes
// the child's ends here so that the program's end breaks the output pipe.
std::unique_ptr<Process> StartProcess(const ProcessStart& start, ErrorCode* error) {
    SECURITY_ATTRIBUTES inherit = {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE childInput = nullptr, input = nullptr, output = nullptr, childOutput = nullptr;
    if (!CreatePipe(&childInput, &input, &inherit, 0)) {
        *error = GetLastError();
        return nullptr;
    }
    if (!CreatePipe(&output, &childOutput, &inherit, 0)) {
        *error = GetLastError();
        CloseHandle(childInput);
        CloseHandle(input);
        return nullptr;
    }
    SetHandleInformation(input, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(output, HANDLE_FLAG_INHERIT, 0);
    HANDLE nothing = CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                 &inherit, OPEN_EXISTING, 0, nullptr);

    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = childInput;
    startup.hStdOutput = childOutput;
    startup.hStdError = nothing != INVALID_HANDLE_VALUE ? nothing : nullptr;
    PROCESS_INFORMATION created = {};
    std::wstring commandLine = CommandLine(start);
    const std::wstring program = win32::ToWin32(start.program);
    const std::wstring folder = win32::ToWin32(start.folder);
    const BOOL started = CreateProcessW(
        program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
        folder.empty() ? nullptr : folder.c_str(), &startup, &created);
    const DWORD code = started ? 0 : GetLastError();
    CloseHandle(childInput);
    CloseHandle(childOutput);
    if (nothing != INVALID_HANDLE_VALUE) CloseHandle(nothing);
    if (!started) {
        CloseHandle(input);
        CloseHandle(output);
        *error = code;
        return nullptr;
    }
    CloseHandle(created.hThread);
    *error = 0;
    return std::make_unique<Win32Process>(created.hProcess, input, output, start);
}

}  // namespace velmora::platform
