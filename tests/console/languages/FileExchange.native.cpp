#include "console/languages/FileExchange.h"

#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/ptrace.h>
#include <sys/wait.h>

#include <csignal>
#include <unistd.h>

namespace FileExchangeFaultsTests
{

using namespace velox::console;

/// Files of an exchange, one of them in another folder, as each was before and is afterwards; empty for none.
struct ExchangedFile
{
    const char* name;
    const char* before;
    const char* after;
};
constexpr ExchangedFile Exchanged[]{
    {"models/a", "old a", "new a"}, {"models/b", "", "new b"}, {"models/c", "old c", "new c"}, {"config", "old", "new"}};

std::filesystem::path Path(const TemporaryFolder& folder, const std::string& name)
{
    return PathFromUtf8(folder.Path()) / name;
}

void MakeOldFiles(const TemporaryFolder& folder)
{
    std::filesystem::create_directories(Path(folder, "models"));
    for (const ExchangedFile& file : Exchanged)
    {
        if (*file.before != '\0')
        {
            WriteWholeFile(Utf8(Path(folder, file.name)), file.before);
        }
    }
}

void Exchange(const TemporaryFolder& folder, bool keep)
{
    FileExchange exchange(Path(folder, "models"));
    for (const ExchangedFile& file : Exchanged)
    {
        const std::string_view after = file.after;
        exchange.Add(Path(folder, file.name), {after.begin(), after.end()});
    }
    exchange.PutInPlace();
    if (keep)
    {
        exchange.Keep();
    }
}

/// Does it in a process that is killed before its system call of this number. @return whether it was killed
bool ExchangeKilledBefore(int systemCall, const TemporaryFolder& folder, bool keep)
{
    const pid_t process = fork();
    if (process == 0)
    {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
        Exchange(folder, keep);
        _exit(0);
    }
    int status = 0;
    waitpid(process, &status, 0);
    // Every call stops twice: before it, and after.
    for (int stop = 0; WIFSTOPPED(status); ++stop)
    {
        if (stop == 2 * systemCall + 1)
        {
            kill(process, SIGKILL);
            waitpid(process, &status, 0);
            return true;
        }
        ptrace(PTRACE_SYSCALL, process, nullptr, nullptr);
        waitpid(process, &status, 0);
    }
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    return false;
}

std::string StateOf(const TemporaryFolder& folder)
{
    std::string state;
    for (const ExchangedFile& file : Exchanged)
    {
        const std::filesystem::path path = Path(folder, file.name);
        const std::string content = std::filesystem::exists(path) ? ReadWholeFile(Utf8(path)) : "";
        state += content == file.before ? 'o' : content == file.after ? 'n' : '?';
    }
    return state;
}

std::ptrdiff_t FilesIn(const TemporaryFolder& folder)
{
    return std::distance(std::filesystem::recursive_directory_iterator(PathFromUtf8(folder.Path())), {});
}

/// Kills the exchange before each of its system calls in turn.
/// @return what was found then, each state once
std::string KillEverywhere(bool keep)
{
    std::string states;
    for (int systemCall = 0;; ++systemCall)
    {
        SCOPED_TRACE(systemCall);
        const TemporaryFolder folder;
        MakeOldFiles(folder);
        const bool killed = ExchangeKilledBefore(systemCall, folder, keep);
        // Each file is whole at every moment.
        EXPECT_EQ(StateOf(folder).find('?'), std::string::npos);
        {
            const FileExchange next(Path(folder, "models"));
        }
        const std::string state = StateOf(folder);
        EXPECT_EQ(FilesIn(folder), state == "nnnn" ? 5 : 4);
        if (states.find(state) == std::string::npos)
        {
            states += state + " ";
        }
        if (!killed)
        {
            return states;
        }
    }
}

TEST(FileExchangeFaults, KilledAnywhereItIsFinishedOrUndoneByTheNext)
{
    EXPECT_EQ(KillEverywhere(true), "oooo nnnn ");
}

TEST(FileExchangeFaults, KilledAnywhereWhileItIsUndoneItIsUndoneByTheNext)
{
    EXPECT_EQ(KillEverywhere(false), "oooo ");
}

} // namespace FileExchangeFaultsTests
