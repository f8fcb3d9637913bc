#include "console/text/FieldLine.h"

#include <fmt/format.h>

namespace velox::console
{

std::string FieldLine(std::string_view name, std::string_view value)
{
    return fmt::format("{:<15}{}\n", fmt::format("{}:", name), value);
}

} // namespace velox::console
