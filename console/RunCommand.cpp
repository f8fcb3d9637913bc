#include "console/RunCommand.h"

#include <exception>
#include <new>
#include <ostream>

namespace velox::console
{

namespace
{

constexpr const char* ReportIt = "Run the command again with --verbose, and report what it prints.";

} // namespace

Outcome OutcomeOf(const CommandFailure& failure)
{
    Outcome outcome;
    outcome.exitCode = failure.exitCode;
    outcome.error = Problem{failure.what(), failure.fix};
    return outcome;
}

Outcome RunCommand(const Command& command, Context& context)
{
    try
    {
        return command(context);
    }
    catch (const CommandFailure& failure)
    {
        return OutcomeOf(failure);
    }
    catch (const std::bad_alloc&)
    {
        return OutcomeOf({ExitCode::LibraryFailure, "Memory ran out.", "Give fewer or shorter recordings."});
    }
    catch (const std::exception& error)
    {
        return OutcomeOf({ExitCode::LibraryFailure, std::string("Something unforeseen happened: ") + error.what(), ReportIt});
    }
    catch (...)
    {
        return OutcomeOf({ExitCode::LibraryFailure, "Something unforeseen happened.", ReportIt});
    }
}

void PrintOutcome(const Outcome& outcome, const Style& style, std::ostream& output, std::ostream& errors)
{
    output << outcome.text << std::flush;
    if (outcome.error)
    {
        errors << style.Bad("error:") << " " << outcome.error->message << "\n";
        if (!outcome.error->fix.empty())
        {
            errors << style.Heading("fix:") << "   " << outcome.error->fix << "\n";
        }
        errors << std::flush;
    }
    if (!outcome.verdict.empty())
    {
        const bool good = outcome.exitCode == ExitCode::Success;
        output << (good ? style.Good(outcome.verdict) : style.Bad(outcome.verdict)) << "\n" << std::flush;
    }
}

} // namespace velox::console
