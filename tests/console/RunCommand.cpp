#include "console/RunCommand.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace RunCommandTests
{

using namespace velox::console;

Report ReportFor(const Command& command)
{
    velox::console::Progress progress(nullptr);
    const LogOptions log;
    Context context{progress, log};
    return RunCommand("test", command, context);
}

TEST(RunCommand, HandsTheReportOn)
{
    const Report outcome = ReportFor([](Context&) { return Report{ExitCode::Refused, "No."}; });
    EXPECT_EQ(outcome.exitCode, ExitCode::Refused);
    EXPECT_EQ(outcome.verdict, "No.");
    EXPECT_FALSE(outcome.error.has_value());
}

TEST(RunCommand, AFailureBecomesAReportWithAnError)
{
    const Report outcome = ReportFor([](Context&) -> Report { throw CommandFailure(ExitCode::BadInput, "Bad.", "Mend it."); });
    EXPECT_EQ(outcome.exitCode, ExitCode::BadInput);
    ASSERT_TRUE(outcome.error.has_value());
    EXPECT_EQ(outcome.error->message, "Bad.");
    EXPECT_EQ(outcome.error->fix, "Mend it.");
}

TEST(RunCommand, UnknownExceptionsBecomeClearErrors)
{
    const Report standard = ReportFor([](Context&) -> Report { throw std::out_of_range("somewhere"); });
    EXPECT_EQ(standard.exitCode, ExitCode::LibraryFailure);
    EXPECT_EQ(standard.error.value().message, "Something unforeseen happened: somewhere");
    const Report other = ReportFor([](Context&) -> Report { throw 1; });
    EXPECT_EQ(other.exitCode, ExitCode::LibraryFailure);
    EXPECT_FALSE(other.error.value().fix.empty());
    const Report memory = ReportFor([](Context&) -> Report { throw std::bad_alloc(); });
    EXPECT_EQ(memory.error.value().message, "Memory ran out.");
}

TEST(RunCommand, TheVerdictIsPrintedLastAndErrorsGoToTheirStream)
{
    Report outcome{ExitCode::Success, "All is well."};
    outcome.results = {{"first"}};
    std::ostringstream output;
    std::ostringstream errors;
    PrintReport(outcome, false, false, output, errors);
    EXPECT_EQ(output.str(), "first\nAll is well.\n");
    EXPECT_EQ(errors.str(), "");

    output.str("");
    PrintReport(ReportOf({ExitCode::BadInput, "Bad.", "Mend it."}), false, false, output, errors);
    EXPECT_EQ(output.str(), "");
    EXPECT_EQ(errors.str(), "error: Bad.\nfix:   Mend it.\n");
}

TEST(RunCommand, APageThatCannotBeWrittenLosesNothing)
{
    const TemporaryFolder folder;
    const auto run = [](std::filesystem::path page) {
        velox::console::Progress progress(nullptr);
        const LogOptions log;
        Context context{progress, log, std::move(page)};
        return RunCommand(
            "test",
            [](Context&) {
                return Report{ExitCode::Success, "Done.", {{"model", "m", "model", "m"}}};
            },
            context);
    };
    const Report written = run(PathFromUtf8(folder.Path() + "/page.html"));
    EXPECT_EQ(written.exitCode, ExitCode::Success);
    EXPECT_EQ(written.facts.back().key, "page");
    const Report lost = run(PathFromUtf8(folder.Path() + "/none/page.html"));
    EXPECT_EQ(lost.exitCode, ExitCode::WriteFailed);
    EXPECT_EQ(lost.verdict, "Done.");
    EXPECT_EQ(lost.facts.size(), 1U);
    EXPECT_EQ(lost.remarks.front().code, "PageNotWritten");
}

TEST(RunCommand, ACommandWithNothingToShowHasNoPage)
{
    const TemporaryFolder folder;
    velox::console::Progress progress(nullptr);
    const LogOptions log;
    Context context{progress, log, PathFromUtf8(folder.Path() + "/page.html")};
    RunCommand(
        "test", [](Context&) -> Report { throw CommandFailure(ExitCode::BadInput, "Bad.", ""); }, context);
    EXPECT_FALSE(std::filesystem::exists(context.page));
}

TEST(RunCommand, NoColourIsWantedWhereTheEnvironmentSaysSo)
{
    EXPECT_TRUE(WantsColour(true, nullptr));
    EXPECT_TRUE(WantsColour(true, ""));
    EXPECT_FALSE(WantsColour(true, "1"));
    EXPECT_FALSE(WantsColour(false, nullptr));
}

} // namespace RunCommandTests
