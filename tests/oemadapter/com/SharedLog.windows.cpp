// One log file, written by two processes at once.
#include "tests/oemadapter/com/ComHost.h"

#include <gmock/gmock.h>

#include <map>
#include <regex>
#include <sstream>

namespace SharedLogOnRealTests
{

constexpr int Objects = 100;

class SharedLog : public ComHost
{
protected:
    /// Starts this program again, to write the log. @return its process, which the caller closes
    static HANDLE StartWriter()
    {
        std::wstring program(MAX_PATH, L'\0');
        program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
        std::wstring command =
            L"\"" + program + L"\" --gtest_brief=1 --gtest_also_run_disabled_tests --gtest_filter=SharedLogWriter.*";
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        PROCESS_INFORMATION process{};
        EXPECT_TRUE(
            CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process));
        CloseHandle(process.hThread);
        return process.hProcess;
    }

    static DWORD ExitCode(HANDLE process)
    {
        WaitForSingleObject(process, INFINITE);
        DWORD code = 0;
        GetExitCodeProcess(process, &code);
        CloseHandle(process);
        return code;
    }
};

/// What the other processes do, with the settings of the test that starts them.
TEST(SharedLogWriter, DISABLED_Writes)
{
    const Apartment apartment(COINIT_MULTITHREADED);
    for (int i = 0; i < Objects; ++i)
    {
        EXPECT_EQ(CreateUseAndRelease(), S_OK);
    }
}

TEST_F(SharedLog, HasWholeLinesOfBothProcesses)
{
    WriteNumber(HKEY_LOCAL_MACHINE, LibraryKey, u"LoggerLevel", 5);
    WriteNumber(HKEY_LOCAL_MACHINE, LibraryKey, u"LogToFile", 1);
    WriteNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage", 1033);
    const HANDLE first = StartWriter();
    const HANDLE second = StartWriter();
    EXPECT_EQ(ExitCode(first), 0U);
    EXPECT_EQ(ExitCode(second), 0U);

    const std::regex pattern(
        "\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z +(\\d+) +\\d+ [1-5] (library|internals|adapter) "
        "I[A-Za-z]+::[A-Za-z]+ [^\r\n]+\r");
    std::map<std::string, int> linesByProcess;
    int changes = 0;
    std::string last;
    std::istringstream text(ReadWholeFile(logFile.string()));
    for (std::string line; std::getline(text, line);)
    {
        std::smatch found;
        ASSERT_TRUE(std::regex_match(line, found, pattern)) << line;
        ++linesByProcess[found[1]];
        changes += found[1] != last ? 1 : 0;
        last = found[1];
    }
    ASSERT_EQ(linesByProcess.size(), 2U);
    EXPECT_EQ(linesByProcess.begin()->second, linesByProcess.rbegin()->second);
    EXPECT_GT(linesByProcess.begin()->second, Objects);
    EXPECT_GT(changes, 2); // They did write at once.
}

TEST_F(SharedLog, IsNotThereWithoutBeingAskedFor)
{
    const Apartment apartment(COINIT_MULTITHREADED);
    WriteNumber(HKEY_LOCAL_MACHINE, LibraryKey, u"LoggerLevel", 5);
    WriteNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage", 1033);
    EXPECT_EQ(CreateUseAndRelease(), S_OK);
    EXPECT_FALSE(std::filesystem::exists(logFile));
}

TEST_F(SharedLog, TellsAConfigurationThatTheLibraryCannotOpen)
{
    const Apartment apartment(COINIT_MULTITHREADED);
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"ConfigurationFile", std::u16string(u"C:\\") + char16_t{0xD800});
    EXPECT_EQ(CreateUseAndRelease(), HRESULT_FROM_WIN32(ERROR_NO_UNICODE_TRANSLATION));
    EXPECT_THAT(ReadWholeFile(logFile.string()), testing::HasSubstr("The configuration file cannot be opened"));
}

} // namespace SharedLogOnRealTests
