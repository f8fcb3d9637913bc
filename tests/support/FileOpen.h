#pragma once

#include <cstddef>
#include <string>

/// Files that were opened by name and not closed yet.
std::size_t OpenFiles();

/// Closes them all: for files that a library has lost.
void CloseOpenFiles();

/// From now on XML documents read these bytes in the place of the file, until the process ends. Saves the system's calls.
void KeepInMemory(const std::string& path, std::string bytes);
