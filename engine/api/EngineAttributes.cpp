#include "engine/api/EngineAttributes.h"

#include <charconv>
#include <cstdio>

namespace velox::engine
{

namespace
{

std::string_view Trim(std::string_view text)
{
    constexpr std::string_view Blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(Blanks);
    return first == std::string_view::npos ? std::string_view() : text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

template <typename Number>
bool Parse(std::string_view text, Number* number)
{
    Number parsed{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (error != std::errc() || end != text.data() + text.size())
    {
        return false;
    }
    *number = parsed;
    return true;
}

} // namespace

void EngineAttributes::SetConstraints(std::string_view text)
{
    maxModelBytes = DefaultMaxModelBytes;
    while (!text.empty())
    {
        const std::size_t separator = text.find_first_of(";,");
        const std::string_view entry = Trim(text.substr(0, separator));
        text = separator == std::string_view::npos ? std::string_view() : text.substr(separator + 1);
        if (entry.empty())
        {
            continue;
        }
        const std::size_t equals = entry.find('=');
        const std::string_view name = Trim(entry.substr(0, equals));
        const std::string_view value = equals == std::string_view::npos ? std::string_view() : Trim(entry.substr(equals + 1));
        if (name != "max_model_bytes" || !Parse(value, &maxModelBytes))
        {
            Log(LogLevel::Warning, "constraint ignored: " + std::string(entry));
        }
    }
}

Status EngineAttributes::SetLogLevel(std::string_view text)
{
    return Parse(Trim(text), &logLevel) ? Status::Success : Status::BadValue;
}

Status EngineAttributes::SetAcousticModel(const uint8_t* blob)
{
    auto read = std::make_shared<AcousticModel>();
    const Status status = ReadAcousticModel(blob, read.get());
    acousticModel = status == Status::Success ? std::move(read) : nullptr;
    LogOutcome(LogLevel::Error, "acoustic model", status);
    return status;
}

Status EngineAttributes::SetPopulation(const uint8_t* blob)
{
    auto read = std::make_shared<Population>();
    const Status status = ReadPopulation(blob, read.get());
    population = status == Status::Success ? std::move(read) : nullptr;
    LogOutcome(LogLevel::Error, "population", status);
    return status;
}

void EngineAttributes::Log(LogLevel level, const std::string& line) const
{
    if (static_cast<int>(level) <= logLevel)
    {
        // There is nowhere to tell of a line that cannot be written.
        static_cast<void>(std::fprintf(stderr, "VeloxWovSDK: %s\n", line.c_str()));
    }
}

void EngineAttributes::LogOutcome(LogLevel failure, const std::string& what, Status status) const
{
    const StatusText text = TextOf(status);
    Log(status == Status::Success ? LogLevel::Information : failure, what + ": " + std::to_string(static_cast<uint32_t>(status)) +
                                                                         " " + std::string(text.name) + ". " +
                                                                         std::string(text.sentence));
}

} // namespace velox::engine
