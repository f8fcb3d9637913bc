#pragma once

#include <cstddef>

/// Registry keys that were opened and not closed yet.
std::size_t OpenRegistryKeys();

/// Closes of what was no open key, all in all: on Windows they close what somebody else has opened meanwhile.
std::size_t UnknownRegistryKeysClosed();
