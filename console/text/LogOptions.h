#pragma once

#include <filesystem>

namespace velox::console
{

/// Where the library's log lines go, besides the command's own use of them.
struct LogOptions
{
    bool verbose = false;          ///< --verbose: to the standard error stream
    std::filesystem::path logFile; ///< where SetLogToFile writes
};

} // namespace velox::console
