#pragma once

#include "oemadapter/windows/WideText.h"

#include <optional>
#include <string>

namespace velox::oemadapter
{

/// A path as the library takes it, in the process's narrow code page; nothing when that lacks a letter.
std::optional<std::string> NarrowPath(const WideText& path);

} // namespace velox::oemadapter
