#include "console/doctor/Finding.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace velox::console
{

namespace
{

constexpr std::array<std::string_view, 4> SeverityNames{"good", "note", "warning", "error"};
constexpr std::array<std::string_view, 5> OperationNames{"capabilities", "verification", "training", "arming", "parsing"};

} // namespace

std::string_view SeverityName(Severity severity)
{
    return SeverityNames[static_cast<std::size_t>(severity)];
}

std::string_view OperationName(Operation operation)
{
    return OperationNames[static_cast<std::size_t>(operation)];
}

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
    return FailuresOf(
        {Operation::Capabilities, Operation::Verification, Operation::Training, Operation::Arming, Operation::Parsing}, {});
}

std::string FailureSentence(const std::vector<Failure>& failures)
{
    std::vector<Operation> operations;
    for (const Failure& failure : failures)
    {
        if (std::find(operations.begin(), operations.end(), failure.operation) == operations.end())
        {
            operations.push_back(failure.operation);
        }
    }
    if (operations.empty())
    {
        return {};
    }
    std::string sentence;
    for (std::size_t i = 0; i < operations.size(); ++i)
    {
        const bool last = i + 1 == operations.size();
        sentence += i == 0 ? "" : last ? " and " : ", ";
        sentence += OperationName(operations[i]);
    }
    sentence.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(sentence.front())));
    const bool many = operations.size() > 1 || operations.front() == Operation::Capabilities;
    return sentence + (many ? " fail." : " fails.");
}

} // namespace velox::console
