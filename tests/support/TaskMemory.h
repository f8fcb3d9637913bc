#pragma once

#include <cstddef>

/// Blocks of CoTaskMemAlloc that were not freed yet.
std::size_t LiveTaskMemoryBlocks();
