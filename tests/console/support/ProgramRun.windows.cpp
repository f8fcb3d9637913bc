#include "tests/console/support/ProgramRun.h"

#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>

namespace
{

using velox::console::PathFromUtf8;

/// A file that a process writes to.
class OutputFile
{
public:
    explicit OutputFile(std::string file) : path(std::move(file))
    {
        SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        handle = CreateFileW(PathFromUtf8(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
        EXPECT_NE(handle, INVALID_HANDLE_VALUE);
    }
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile()
    {
        CloseHandle(handle);
    }

    std::string path;
    HANDLE handle;
};

std::wstring ProgramPath()
{
    std::wstring self(MAX_PATH, L'\0');
    self.resize(GetModuleFileNameW(nullptr, self.data(), MAX_PATH));
    return (std::filesystem::path(self).parent_path() / "velox-kws.exe").wstring();
}

} // namespace

struct RunningVeloxKws::State
{
    TemporaryFolder folder;
    OutputFile output{folder.Path() + "\\output"};
    OutputFile errors{folder.Path() + "\\errors"};
    PROCESS_INFORMATION process{};
};

RunningVeloxKws::RunningVeloxKws(const std::vector<std::string>& arguments) : state(std::make_unique<State>())
{
    std::wstring line = L"\"" + ProgramPath() + L"\"";
    for (const std::string& argument : arguments)
    {
        line += L" \"" + PathFromUtf8(argument).wstring() + L"\"";
    }
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = state->output.handle;
    start.hStdError = state->errors.handle;
    // Under load Wine once could not start it; the start is not what is tested.
    constexpr int Attempts = 3;
    bool started = false;
    for (int i = 0; i < Attempts && !started; ++i)
    {
        started =
            CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &state->process) != FALSE;
    }
    EXPECT_TRUE(started) << "error " << GetLastError();
}

RunningVeloxKws::~RunningVeloxKws()
{
    TerminateProcess(state->process.hProcess, 1); // does nothing when it has ended
    CloseHandle(state->process.hThread);
    CloseHandle(state->process.hProcess);
}

std::string RunningVeloxKws::Output() const
{
    return ReadWholeFile(state->output.path);
}

ProgramRun RunningVeloxKws::Wait()
{
    WaitForSingleObject(state->process.hProcess, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(state->process.hProcess, &exitCode);
    return {static_cast<int>(exitCode), Output(), ReadWholeFile(state->errors.path)};
}

ProgramRun RunVeloxKws(const std::vector<std::string>& arguments)
{
    return RunningVeloxKws(arguments).Wait();
}
