#pragma once

#include <string>
#include <string_view>

namespace velox::console
{

/// A line of a text for people: what it is, and its value.
std::string FieldLine(std::string_view name, std::string_view value);

} // namespace velox::console
