#pragma once

#include <string>

namespace velox::console
{

/// Why the last call to the system failed, in its own words: "Access denied". Only meaningful right after a call that did.
std::string LastError();

} // namespace velox::console
