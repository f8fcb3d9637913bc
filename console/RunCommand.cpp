#include "console/RunCommand.h"

#include "console/pages/ReportPage.h"
#include "console/pages/ReportText.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <exception>
#include <new>
#include <ostream>

namespace velox::console
{

namespace
{

constexpr const char* ReportIt = "Run the command again with --verbose, and report what it prints.";

Report Run(const Command& command, Context& context)
{
    try
    {
        return command(context);
    }
    catch (const CommandFailure& failure)
    {
        return ReportOf(failure);
    }
    catch (const std::bad_alloc&)
    {
        return ReportOf({ExitCode::LibraryFailure, "Memory ran out.", "Give fewer or shorter recordings."});
    }
    catch (const std::exception& error)
    {
        return ReportOf({ExitCode::LibraryFailure, std::string("Something unforeseen happened: ") + error.what(), ReportIt});
    }
    catch (...)
    {
        return ReportOf({ExitCode::LibraryFailure, "Something unforeseen happened.", ReportIt});
    }
}

/// A command that ended before it had anything to show has no page.
bool HasSomethingToShow(const Report& report)
{
    return !report.results.empty() || !report.facts.empty();
}

void WritePage(std::string_view name, const std::filesystem::path& page, Report* report)
{
    try
    {
        WriteWhole(page, ReportPage(name, *report));
        report->facts.push_back({"page", Utf8(page), "page", Utf8(page)});
    }
    catch (const CommandFailure& failure)
    {
        report->remarks.push_back({Tone::Bad, "PageNotWritten", failure.what(), failure.fix});
        if (report->exitCode == ExitCode::Success)
        {
            report->exitCode = failure.exitCode;
        }
    }
}

} // namespace

Report ReportOf(const CommandFailure& failure)
{
    Report report;
    report.exitCode = failure.exitCode;
    report.error = Problem{failure.what(), failure.fix};
    return report;
}

Report RunCommand(std::string_view name, const Command& command, Context& context)
{
    Report report = Run(command, context);
    if (!context.page.empty() && HasSomethingToShow(report))
    {
        WritePage(name, context.page, &report);
    }
    return report;
}

bool WantsColour(bool terminalTakesIt, const char* noColour)
{
    return terminalTakesIt && (noColour == nullptr || *noColour == '\0');
}

void PrintReport(const Report& report, bool coloured, bool everything, std::ostream& output, std::ostream& errors)
{
    output << ReportText(report, coloured, everything) << std::flush;
    if (report.error)
    {
        errors << Coloured(Tone::Bad, "error:", coloured) << " " << report.error->message << "\n";
        if (!report.error->fix.empty())
        {
            errors << "fix:   " << report.error->fix << "\n";
        }
        errors << std::flush;
    }
    if (!report.verdict.empty())
    {
        const Tone tone = report.exitCode == ExitCode::Success ? Tone::Good : Tone::Bad;
        output << Coloured(tone, report.verdict, coloured) << "\n" << std::flush;
    }
}

} // namespace velox::console
