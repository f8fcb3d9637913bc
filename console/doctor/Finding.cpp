#include "console/doctor/Finding.h"

#include "console/text/LanguageName.h"
#include "console/text/Wording.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

constexpr std::initializer_list<Operation> AllOperations{Operation::Capabilities, Operation::Verification, Operation::Training,
                                                         Operation::Arming, Operation::Parsing};
constexpr std::string_view OperationNames[]{"capabilities", "verification", "training", "arming", "parsing"};

std::string OperationName(Operation operation)
{
    return std::string(OperationNames[static_cast<std::size_t>(operation)]);
}

/// "verification 1033, training 1033"; without a number for every language.
std::string FailureList(const std::vector<Failure>& failures)
{
    std::vector<std::string> texts;
    for (const Failure& failure : failures)
    {
        texts.push_back(OperationName(failure.operation) + (failure.language ? fmt::format(" {}", *failure.language) : ""));
    }
    return Joined(texts);
}

std::string_view FindingStatus(Tone tone)
{
    return tone == Tone::Bad ? "error" : tone == Tone::Warning ? "warning" : tone == Tone::Note ? "note" : "good";
}

Entry FindingEntry(Finding finding)
{
    Entry entry{std::move(finding.message), std::string(FindingStatus(finding.tone)), finding.tone};
    const std::string place = finding.line > 0 ? fmt::format("{}, line {}", finding.file, finding.line) : finding.file;
    const std::string fails = FailureList(finding.failures);
    entry.facts = {
        {"file", finding.file, "", place}, {"line", finding.line > 0 ? Value(finding.line) : Value()}, {"fails", fails}};
    const std::string effect = fails.empty() || finding.effect.starts_with("Nothing works") ? finding.effect
                               : finding.effect.empty()                                     ? fmt::format("Fails: {}.", fails)
                                                        : fmt::format("{} Fails: {}.", finding.effect, fails);
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
    if (std::ranges::all_of(AllOperations, [&](Operation own) { return Fails(findings, own, {}); }))
    {
        return " Nothing works: every operation fails.";
    }
    std::string text = Fails(findings, Operation::Capabilities, {}) ? " Capabilities fail." : "";
    for (const uint16_t language : languages)
    {
        std::vector<std::string> failing;
        for (const Operation operation : AllOperations)
        {
            if (operation != Operation::Capabilities && Fails(findings, operation, language))
            {
                failing.push_back(OperationName(operation));
            }
        }
        text += failing.empty() ? "" : fmt::format(" Fails for {}: {}.", LanguageText(language), Joined(failing));
    }
    return text;
}

} // namespace

std::vector<Failure> FailuresOf(std::initializer_list<Operation> operations, std::optional<uint16_t> language)
{
    std::vector<Failure> failures;
    for (const Operation operation : operations)
    {
        failures.push_back({operation, language});
    }
    return failures;
}

std::vector<Failure> EveryOperation()
{
    return FailuresOf(AllOperations, {});
}

Report ReportOf(Findings findings, const std::vector<uint16_t>& languages)
{
    const auto count = [&](Tone tone) {
        return static_cast<std::size_t>(std::ranges::count(findings, tone, &Finding::tone));
    };
    const std::string errors = Counted(count(Tone::Bad), "error");
    const std::string warnings = Counted(count(Tone::Warning), "warning");
    const bool hasErrors = count(Tone::Bad) > 0;
    const bool hasWarnings = count(Tone::Warning) > 0;
    Report report{hasErrors ? ExitCode::Refused : ExitCode::Success};
    report.verdict = hasErrors ? fmt::format("{}{}{}.", errors, hasWarnings ? " and " : "", hasWarnings ? warnings : "") +
                                     WhatFails(findings, languages)
                     : hasWarnings ? fmt::format("No error, but {}.", warnings)
                                   : fmt::format("Nothing is wrong: {}, {}.", Counted(languages.size(), "language"),
                                                 Counted(findings.size(), "check"));
    std::ranges::stable_sort(findings, std::greater(), &Finding::tone);
    std::ranges::transform(findings, std::back_inserter(report.results),
                           [](Finding& own) { return FindingEntry(std::move(own)); });
    return report;
}

} // namespace velox::console
