#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <string>

namespace mainFaultsTests
{

/// What this program writes when it runs these tests of its own. @return its exit status, as pclose gives it
int RunOwnTests(const std::string& filter, std::string* output)
{
    std::array<char, 4096> program{};
    const auto length = readlink("/proc/self/exe", program.data(), program.size() - 1);
    EXPECT_GT(length, 0);
    FILE* const pipe = popen((std::string(program.data()) + " --gtest_filter=" + filter + " 2>&1").c_str(), "r");
    std::array<char, 256> piece{};
    while (fgets(piece.data(), piece.size(), pipe) != nullptr)
    {
        *output += piece.data();
    }
    return pclose(pipe);
}

TEST(main, FilterThatMatchesNoTestIsAFailure)
{
    std::string output;
    EXPECT_EQ(WEXITSTATUS(RunOwnTests("NoSuchSuite.*", &output)), 1);
    EXPECT_THAT(output, testing::HasSubstr("No test was run."));
}

TEST(main, FilterThatMatchesATestThatPassesIsNone)
{
    std::string output;
    EXPECT_EQ(RunOwnTests("AdapterCustomDeleter.DoesNothingForNull", &output), 0);
    EXPECT_THAT(output, testing::HasSubstr("[  PASSED  ] 1 test."));
}

} // namespace mainFaultsTests
