#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velox::console
{

enum class Severity
{
    Good,    ///< a check that found nothing wrong
    Note,    ///< as it should be, but worth knowing
    Warning, ///< works, but not as its author may have meant
    Error,   ///< an operation fails, or never or always detects
};

std::string_view SeverityName(Severity severity);

/// The library's operations, as far as they depend on different things.
enum class Operation
{
    Capabilities,
    Verification,
    Training,
    Arming, ///< without a user model
    Parsing,
};

std::string_view OperationName(Operation operation);

/// An operation that will not succeed.
struct Failure
{
    Operation operation = Operation::Capabilities;
    std::optional<uint16_t> language; ///< nothing: for every language

    bool operator==(const Failure&) const = default;
};

/// What doctor has to say about one thing.
struct Finding
{
    Severity severity = Severity::Good;
    std::string file; ///< where to look: a file, a registry key; may be empty
    int line = 0;     ///< in the file; 0 when there is none
    std::string message;
    std::string effect; ///< what the library makes of it
    std::string fix;
    std::vector<Failure> failures;
};

using Findings = std::vector<Finding>;

/// Failures of several operations for one language.
std::vector<Failure> FailuresOf(std::initializer_list<Operation> operations, std::optional<uint16_t> language);

/// Every operation, for every language.
std::vector<Failure> EveryOperation();

/// "Verification and training fail."
std::string FailureSentence(const std::vector<Failure>& failures);

} // namespace velox::console
