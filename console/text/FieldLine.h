#pragma once

#include <fmt/format.h>

#include <string>
#include <string_view>

namespace velox::console
{

/// A line of a text for people: what it is, and its value.
inline std::string FieldLine(std::string_view name, std::string_view value)
{
    return fmt::format("{:<15}{}\n", fmt::format("{}:", name), value);
}

} // namespace velox::console
