#include "console/ConsoleSetup.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace ConsoleSetupOnRealTests
{

using velox::console::ConsoleSetup;

/// While it lives, a standard stream of the process is a file.
class Redirected
{
public:
    Redirected(DWORD whichStream, const std::string& path) : stream(whichStream), former(GetStdHandle(whichStream))
    {
        file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        SetStdHandle(stream, file);
    }
    Redirected(const Redirected&) = delete;
    Redirected& operator=(const Redirected&) = delete;
    ~Redirected()
    {
        SetStdHandle(stream, former);
        CloseHandle(file);
    }

private:
    DWORD stream;
    HANDLE former;
    HANDLE file;
};

TEST(ConsoleSetup, AFileIsNoTerminal)
{
    const TemporaryFolder folder;
    const Redirected output(STD_OUTPUT_HANDLE, folder.Path() + "\\output");
    const Redirected errors(STD_ERROR_HANDLE, folder.Path() + "\\errors");
    const ConsoleSetup setup;
    EXPECT_FALSE(setup.OutputTakesColours());
    EXPECT_FALSE(setup.ErrorsAreTerminal());
}

TEST(ConsoleSetup, TheFormerCodePageComesBack)
{
    const UINT former = GetConsoleOutputCP();
    {
        const ConsoleSetup setup;
        EXPECT_EQ(GetConsoleOutputCP(), former == 0 ? 0U : UINT{CP_UTF8}); // 0: the process has no console
    }
    EXPECT_EQ(GetConsoleOutputCP(), former);
}

} // namespace ConsoleSetupOnRealTests
