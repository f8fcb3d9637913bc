#include "console/doctor/FindingText.h"

#include "console/text/LanguageName.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace velox::console
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr Operation Operations[]{Operation::Capabilities, Operation::Verification, Operation::Training, Operation::Arming,
                                 Operation::Parsing};

std::string Place(const Finding& finding)
{
    return finding.line > 0 ? fmt::format("{}, line {}", finding.file, finding.line) : finding.file;
}

/// The effect and which operations fail.
std::string WholeEffect(const Finding& finding)
{
    const std::string fails = FailureSentence(finding.failures);
    const bool saidAlready = finding.effect.starts_with("Nothing works");
    return saidAlready || fails.empty() ? finding.effect : finding.effect.empty() ? fails : finding.effect + " " + fails;
}

std::string Coloured(const Finding& finding, std::string_view text, const Style& style)
{
    switch (finding.severity)
    {
    case Severity::Error:
    case Severity::Warning:
        return style.Bad(text);
    case Severity::Good:
        return style.Good(text);
    default:
        return style.Dim(text);
    }
}

std::string FindingText(const Finding& finding, const Style& style)
{
    const std::string place = Place(finding);
    std::string text = fmt::format("{}: {}{}\n", Coloured(finding, SeverityName(finding.severity), style), finding.message,
                                   place.empty() ? "" : " [" + place + "]");
    if (const std::string effect = WholeEffect(finding); !effect.empty())
    {
        text += fmt::format("  {}\n", effect);
    }
    if (!finding.fix.empty())
    {
        text += fmt::format("  fix: {}\n", finding.fix);
    }
    return text;
}

bool Fails(const Findings& findings, Operation operation, std::optional<uint16_t> language)
{
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
        return std::any_of(finding.failures.begin(), finding.failures.end(), [&](const Failure& failure) {
            return failure.operation == operation && (!failure.language || failure.language == language);
        });
    });
}

/// "verification, training" for what fails for the language.
std::string FailingOperations(const Findings& findings, uint16_t language)
{
    std::vector<std::string_view> failing;
    for (const Operation operation : Operations)
    {
        if (operation != Operation::Capabilities && Fails(findings, operation, language))
        {
            failing.push_back(OperationName(operation));
        }
    }
    return fmt::format("{}", fmt::join(failing, ", "));
}

std::string Counted(std::size_t number, std::string_view what)
{
    return fmt::format("{} {}{}", number, what, number == 1 ? "" : "s");
}

} // namespace

std::size_t CountOf(const Findings& findings, Severity severity)
{
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(), [&](const Finding& finding) { return finding.severity == severity; }));
}

std::string FindingsText(const Findings& findings, bool everything, const Style& style)
{
    std::string text;
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note, Severity::Good})
    {
        for (const Finding& finding : findings)
        {
            if (finding.severity == severity && (severity != Severity::Good || everything))
            {
                text += FindingText(finding, style);
            }
        }
    }
    return text;
}

Results FindingsJson(const Findings& findings)
{
    Results results;
    for (const Finding& finding : findings)
    {
        Json failures = Json::array();
        for (const Failure& failure : finding.failures)
        {
            failures.push_back({{"operation", OperationName(failure.operation)},
                                {"language", failure.language ? Json(*failure.language) : Json(nullptr)}});
        }
        Json json;
        json["severity"] = SeverityName(finding.severity);
        json["file"] = finding.file;
        json["line"] = finding.line > 0 ? Json(finding.line) : Json(nullptr);
        json["message"] = finding.message;
        json["effect"] = finding.effect;
        json["fix"] = finding.fix;
        json["failures"] = std::move(failures);
        results.Add(std::move(json));
    }
    return results;
}

std::string FindingsVerdict(const Findings& findings, const std::vector<uint16_t>& languages)
{
    const std::size_t errors = CountOf(findings, Severity::Error);
    const std::size_t warnings = CountOf(findings, Severity::Warning);
    if (errors == 0 && warnings == 0)
    {
        return fmt::format("Nothing is wrong: {}, {} checks.", Counted(languages.size(), "language"), findings.size());
    }
    std::string verdict = errors == 0     ? "No error, but " + Counted(warnings, "warning") + "."
                          : warnings == 0 ? Counted(errors, "error") + "."
                                          : Counted(errors, "error") + " and " + Counted(warnings, "warning") + ".";
    if (std::all_of(std::begin(Operations), std::end(Operations), [&](Operation own) { return Fails(findings, own, {}); }))
    {
        return verdict + " Nothing works: every operation fails.";
    }
    if (Fails(findings, Operation::Capabilities, {}))
    {
        verdict += " Capabilities fail.";
    }
    for (const uint16_t language : languages)
    {
        if (const std::string failing = FailingOperations(findings, language); !failing.empty())
        {
            verdict += fmt::format(" Fails for {}: {}.", LanguageText(language), failing);
        }
    }
    return verdict;
}

} // namespace velox::console
