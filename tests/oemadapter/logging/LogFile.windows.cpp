#include "oemadapter/logging/LogFile.h"

#include "tests/oemadapter/support/LogText.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <regex>

namespace LogFileOnRealTests
{

using velox::oemadapter::LogFile;

class LogFileOnRealWindows : public testing::Test
{
protected:
    LogText log;
    LogFile file;
};

TEST_F(LogFileOnRealWindows, StampsALineWithTimeProcessAndThread)
{
    file.Open(log.Path());
    file.Write("some line");
    const std::string text = log.Read();
    std::smatch found;
    ASSERT_TRUE(std::regex_match(
        text, found, std::regex("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z +(\\d+) +(\\d+) some line\r\n")));
    EXPECT_EQ(std::stoul(found[1]), GetCurrentProcessId());
    EXPECT_EQ(std::stoul(found[2]), GetCurrentThreadId());
}

TEST_F(LogFileOnRealWindows, MakesItsFolder)
{
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(log.Path()).parent_path()));
    file.Open(log.Path());
    EXPECT_TRUE(std::filesystem::exists(log.Path()));
}

TEST_F(LogFileOnRealWindows, AppendsToWhatIsThereAlsoFromTwoSides)
{
    LogFile other;
    file.Open(log.Path());
    other.Open(log.Path());
    file.Write("one");
    other.Write("two");
    file.Write("three");
    const std::string text = log.Read();
    EXPECT_LT(text.find(" one\r\n"), text.find(" two\r\n"));
    EXPECT_LT(text.find(" two\r\n"), text.find(" three\r\n"));
    EXPECT_EQ(std::ranges::count(text, '\n'), 3);
}

TEST_F(LogFileOnRealWindows, MayBeMovedAwayWhileItIsOpen)
{
    file.Open(log.Path());
    std::filesystem::rename(log.Path(), log.Path() + u".old");
    file.Write("after");
    EXPECT_EQ(log.Read(), "");
    file.Open(log.Path());
    file.Write("new");
    EXPECT_TRUE(log.Read().ends_with(" new\r\n"));
}

TEST_F(LogFileOnRealWindows, WithoutAFileNothingIsWrittenAndNothingFails)
{
    file.Write("to the debugger");
    file.Open(u"?:\\no such drive\\adapter.log");
    file.Write("to the debugger");
    file.Open(log.Path());
    file.Close();
    file.Write("to the debugger");
    EXPECT_EQ(log.Read(), "");
}

TEST_F(LogFileOnRealWindows, CutsALineThatIsTooLong)
{
    file.Open(log.Path());
    file.Write(std::string(5000, 'x'));
    EXPECT_EQ(log.Read().size(), 2048U);
    EXPECT_TRUE(log.Read().ends_with("x\r\n"));
}

} // namespace LogFileOnRealTests
