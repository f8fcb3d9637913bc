#include "console/hosting/LoggedLine.h"

#include "console/text/StatusText.h"

#include <fmt/format.h>

#include <array>

namespace velox::console
{

std::string LogText(const LoggedLine& line)
{
    constexpr std::array Levels{"none", "error", "failure", "warning", "information", "detail"};
    const std::string level = line.level < Levels.size() ? Levels.at(line.level) : std::to_string(line.level);
    std::string text = fmt::format("{:<11}  {:<9}  {}", level,
                                   line.source == 0              ? "adapter"
                                   : line.source == EngineSource ? "engine"
                                                                 : "internals",
                                   line.message);
    if (line.result)
    {
        text += " Result: " + ResultText(*line.result);
    }
    if (line.engineStatus)
    {
        text += " Engine status: " + EngineStatusText(*line.engineStatus);
    }
    return text;
}

} // namespace velox::console
