#pragma once

#include <cstdint>
#include <string>

namespace velox::console
{

/// What Windows calls a language: "English (United States)"; empty for a LANGID that it does not know.
std::string LocaleName(uint16_t language);

} // namespace velox::console
