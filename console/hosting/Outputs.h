#pragma once

#include "console/report/Command.h"

#include <filesystem>
#include <span>

namespace velox::console
{

/// What a command writes a file as.
enum class OutputKind
{
    Page,
    UserModel,
    Pattern,
    ResultBlock,
    Recording,
    Log,
    Configuration,
    Bundle,
};

struct Output
{
    std::filesystem::path file; ///< empty: none is written
    OutputKind kind;
};

/// Refuses, before any work, a command line whose output would replace one of its inputs, or a file that is not what the command
/// writes there. An empty file is nobody's.
/// @param context  gives the page and the log file, which are outputs, too
/// @param inputs   everything that the command reads; of a configuration also the files that it names
/// @throws CommandFailure Usage
void RefuseToReplace(const Context& context, std::span<const std::filesystem::path> inputs, std::span<const Output> outputs);

} // namespace velox::console
