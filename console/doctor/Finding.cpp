#include "console/doctor/Finding.h"

#include "console/text/LanguageName.h"
#include "console/text/Wording.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

std::string_view OperationName(Operation operation)
{
    constexpr std::string_view Names[]{"capabilities", "verification", "training", "arming", "parsing"};
    return Names[static_cast<std::size_t>(operation)];
}

/// "verification 1033, training 1033"; without a number for every language.
std::string FailureList(const std::vector<Failure>& failures)
{
    std::vector<std::string> texts;
    for (const Failure& failure : failures)
    {
        const std::string language = failure.language ? fmt::format(" {}", *failure.language) : "";
        texts.push_back(fmt::format("{}{}", OperationName(failure.operation), language));
    }
    return Joined(texts);
}

Entry FindingEntry(Finding finding)
{
    constexpr const char* Statuses[]{"", "good", "note", "warning", "error"};
    Entry entry{std::move(finding.message), Statuses[static_cast<std::size_t>(finding.tone)], finding.tone};
    const std::string place = finding.line > 0 ? fmt::format("{}, line {}", finding.file, finding.line) : finding.file;
    const std::string fails = FailureList(finding.failures);
    entry.facts = {
        {"file", finding.file, "", place}, {"line", finding.line > 0 ? Value(finding.line) : Value()}, {"fails", fails}};
    std::string effect = finding.effect;
    if (!fails.empty() && !effect.starts_with("Nothing works"))
    {
        effect += fmt::format("{}Fails: {}.", effect.empty() ? "" : " ", fails);
    }
    if (!effect.empty() || !finding.fix.empty())
    {
        entry.remarks = {{finding.tone, "", effect, std::move(finding.fix)}};
    }
    entry.detail = finding.tone == Tone::Good;
    return entry;
}

bool Fails(const Findings& findings, Operation operation, std::optional<uint16_t> language)
{
    return std::ranges::any_of(findings, [&](const Finding& finding) {
        return std::ranges::any_of(finding.failures, [&](const Failure& failure) {
            return failure.operation == operation && (!failure.language || failure.language == language);
        });
    });
}

/// " Fails for 1033 (en-US): verification, training."
std::string WhatFails(const Findings& findings, const std::vector<uint16_t>& languages)
{
    if (std::ranges::all_of(EveryOperation, [&](Operation own) { return Fails(findings, own, {}); }))
    {
        return " Nothing works: every operation fails.";
    }
    std::string text = Fails(findings, Operation::Capabilities, {}) ? " Capabilities fail." : "";
    for (const uint16_t language : languages)
    {
        std::vector<std::string> failing;
        for (const Operation operation : EveryOperation)
        {
            if (operation != Operation::Capabilities && Fails(findings, operation, language))
            {
                failing.emplace_back(OperationName(operation));
            }
        }
        text += failing.empty() ? "" : fmt::format(" Fails for {}: {}.", LanguageText(language), Joined(failing));
    }
    return text;
}

} // namespace

std::vector<Failure> FailuresOf(Operations operations, std::optional<uint16_t> language)
{
    std::vector<Failure> failures;
    std::ranges::transform(operations, std::back_inserter(failures), [&](Operation own) { return Failure{own, language}; });
    return failures;
}

void Subject::Add(Tone tone, int line, std::string_view message, std::string_view effect, std::string_view fix,
                  Operations fails) const
{
    std::string about = language ? fmt::format("Language {}: ", *language) : "";
    findings->push_back(
        {tone, file, line, about.append(message), std::string(effect), std::string(fix), FailuresOf(fails, language)});
}

Report ReportOf(Findings findings, const std::vector<uint16_t>& languages)
{
    const auto count = [&](Tone tone) {
        return static_cast<std::size_t>(std::ranges::count(findings, tone, &Finding::tone));
    };
    const std::size_t errors = count(Tone::Bad);
    const std::size_t warnings = count(Tone::Warning);
    const std::string warned = Counted(warnings, "warning");
    Report report{errors > 0 ? ExitCode::Refused : ExitCode::Success};
    report.verdict = errors > 0     ? fmt::format("{}{}.{}", Counted(errors, "error"), warnings > 0 ? " and " + warned : "",
                                                  WhatFails(findings, languages))
                     : warnings > 0 ? fmt::format("No error, but {}.", warned)
                                    : fmt::format("Nothing is wrong: {}, {}.", Counted(languages.size(), "language"),
                                                  Counted(findings.size(), "check"));
    std::ranges::stable_sort(findings, std::greater(), &Finding::tone);
    std::ranges::transform(findings, std::back_inserter(report.results),
                           [](Finding& own) { return FindingEntry(std::move(own)); });
    return report;
}

} // namespace velox::console
