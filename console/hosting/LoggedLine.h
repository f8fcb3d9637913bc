#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velox::console
{

/// The source of lines that the engine wrote, beside the library's two.
inline constexpr uint32_t EngineSource = 2;

/// A line that the library handed to the logger, or that the engine wrote.
struct LoggedLine
{
    uint32_t level = 0;
    uint32_t source = 0; ///< 0: the adapter, 1: its internals, EngineSource
    std::string message;
    std::optional<int32_t> result = std::nullopt;        ///< HRESULT of the call that failed
    std::optional<uint32_t> engineStatus = std::nullopt; ///< status of the keyword engine
};

/// As it is shown: level, source, message, and what the codes mean.
std::string LogText(const LoggedLine& line);

} // namespace velox::console
