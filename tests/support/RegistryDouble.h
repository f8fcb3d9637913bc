#pragma once

#include <cstddef>

/// Registry keys that were opened and not closed yet.
std::size_t OpenRegistryKeys();
