#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velox::console
{

/// A line that the library handed to the logger.
struct LoggedLine
{
    uint32_t level = 0;
    uint32_t source = 0;
    std::string message;
    std::optional<int32_t> result = std::nullopt;        ///< HRESULT of the call that failed
    std::optional<uint32_t> engineStatus = std::nullopt; ///< status of the keyword engine
};

/// As it is shown: level, source, message, and what the codes mean.
std::string LogText(const LoggedLine& line);

} // namespace velox::console
