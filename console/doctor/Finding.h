#pragma once

#include "console/report/Report.h"

#include <initializer_list>

namespace velox::console
{

/// The library's operations, as far as they depend on different things.
enum class Operation
{
    Capabilities,
    Verification,
    Training,
    Arming, ///< without a user model
    Parsing,
};

using Operations = std::initializer_list<Operation>;

inline constexpr Operations EveryOperation{Operation::Capabilities, Operation::Verification, Operation::Training,
                                           Operation::Arming, Operation::Parsing};

/// An operation that will not succeed.
struct Failure
{
    Operation operation = Operation::Capabilities;
    std::optional<uint16_t> language; ///< nothing: for every language

    bool operator==(const Failure&) const = default;
};

/// Failures of several operations for one language.
std::vector<Failure> FailuresOf(Operations operations, std::optional<uint16_t> language);

/// What doctor has to say about one thing.
struct Finding
{
    /// Good: a check that found nothing wrong. Note: as it should be, but worth knowing. Warning: works, but not as its author
    /// may have meant. Bad: an operation fails, or never or always detects.
    Tone tone = Tone::Good;
    std::string file{}; ///< where to look: a file, a registry key; may be empty
    int line = 0;       ///< in the file; 0 when there is none
    std::string message{};
    std::string effect{}; ///< what the library makes of it
    std::string fix{};
    std::vector<Failure> failures{};
};

using Findings = std::vector<Finding>;

/// What is looked at, and where its findings go.
struct Subject
{
    std::string file;
    Findings* findings;
    std::optional<uint16_t> language{}; ///< begins each message, and is the one that fails

    void Add(Tone tone, int line, std::string_view message, std::string_view effect = {}, std::string_view fix = {},
             Operations fails = {}) const;
};

/// The findings as results, the worst first, with a verdict: "2 errors and 1 warning."; then what fails for which of the
/// languages. An error refuses.
Report ReportOf(Findings findings, const std::vector<uint16_t>& languages);

} // namespace velox::console
