#pragma once

#include <cstddef>

/// Files that were opened by name and not closed yet.
std::size_t OpenFiles();

/// Closes them all: for files that a library has lost.
void CloseOpenFiles();
