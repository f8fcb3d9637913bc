#pragma once

#include <string>

namespace velox::console
{

/// Text as it may stand in an element or in an attribute between double quotes, in HTML and XML alike. What is no UTF-8, and
/// control characters, which XML cannot hold, become the replacement character.
std::string Escaped(const std::string& text);

} // namespace velox::console
