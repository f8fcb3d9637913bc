#pragma once

#include "oemadapter/windows/WideText.h"

namespace velox::oemadapter
{

/// Full path of the module that this code is a part of: the adapter's DLL. Empty when Windows does not tell it.
/// @throws std::bad_alloc
WideText ModulePath();

} // namespace velox::oemadapter
