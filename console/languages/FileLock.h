#pragma once

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace velox::console
{

/// Keeps other runs from writing what this one writes, with a file that one process at a time has open and that says who it is.
/// Makes its folder when that is not there, and waits for whoever has the file. Of a killed run the file may stay, but keeps
/// nobody out.
/// @return the lock; with its last copy file and folder vanish, a folder that holds something excepted
/// @throws CommandFailure WriteFailed, or Interrupted
std::shared_ptr<void> LockFile(const std::filesystem::path& file, std::chrono::milliseconds patience = std::chrono::minutes(1));

/// Makes or empties a file, writes into it which process this is, and lets nobody else write meanwhile. @return null on failure
std::shared_ptr<std::FILE> OpenAlone(const std::filesystem::path& file);

} // namespace velox::console
