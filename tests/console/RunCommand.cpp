#include "console/RunCommand.h"

#include "console/text/CommandFailure.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace velox::console;

namespace
{

Outcome OutcomeFor(const Command& command)
{
    const velox::console::Style style(false);
    velox::console::Progress progress(nullptr);
    const LogOptions log;
    Context context{style, progress, log};
    return RunCommand(command, context);
}

} // namespace

TEST(RunCommand, HandsTheOutcomeOn)
{
    const Outcome outcome = OutcomeFor([](Context&) { return Outcome{ExitCode::Refused, "No.", "text\n"}; });
    EXPECT_EQ(outcome.exitCode, ExitCode::Refused);
    EXPECT_EQ(outcome.verdict, "No.");
    EXPECT_FALSE(outcome.error.has_value());
}

TEST(RunCommand, AFailureBecomesAnOutcomeWithAnError)
{
    const Outcome outcome = OutcomeFor([](Context&) -> Outcome { throw CommandFailure(ExitCode::BadInput, "Bad.", "Mend it."); });
    EXPECT_EQ(outcome.exitCode, ExitCode::BadInput);
    ASSERT_TRUE(outcome.error.has_value());
    EXPECT_EQ(outcome.error->message, "Bad.");
    EXPECT_EQ(outcome.error->fix, "Mend it.");
}

TEST(RunCommand, UnknownExceptionsBecomeClearErrors)
{
    const Outcome standard = OutcomeFor([](Context&) -> Outcome { throw std::out_of_range("somewhere"); });
    EXPECT_EQ(standard.exitCode, ExitCode::LibraryFailure);
    EXPECT_EQ(standard.error.value().message, "Something unforeseen happened: somewhere");
    const Outcome other = OutcomeFor([](Context&) -> Outcome { throw 1; });
    EXPECT_EQ(other.exitCode, ExitCode::LibraryFailure);
    EXPECT_FALSE(other.error.value().fix.empty());
    const Outcome memory = OutcomeFor([](Context&) -> Outcome { throw std::bad_alloc(); });
    EXPECT_EQ(memory.error.value().message, "Memory ran out.");
}

TEST(RunCommand, TheVerdictIsPrintedLastAndErrorsGoToTheirStream)
{
    Outcome outcome{ExitCode::Success, "All is well.", "first\n"};
    std::ostringstream output;
    std::ostringstream errors;
    const velox::console::Style plain(false);
    PrintOutcome(outcome, plain, output, errors);
    EXPECT_EQ(output.str(), "first\nAll is well.\n");
    EXPECT_EQ(errors.str(), "");

    output.str("");
    PrintOutcome(OutcomeOf({ExitCode::BadInput, "Bad.", "Mend it."}), plain, output, errors);
    EXPECT_EQ(output.str(), "");
    EXPECT_EQ(errors.str(), "error: Bad.\nfix:   Mend it.\n");
}
