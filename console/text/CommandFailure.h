#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace velox::console
{

/// What the program answers to whoever started it: one code per class of outcome.
enum class ExitCode : int
{
    Success = 0,
    Refused = 1,          ///< the answer is no: a take is refused, nothing was detected, there are findings
    Usage = 2,            ///< the command line is wrong
    BadInput = 3,         ///< a file cannot be read, or is not what it should be
    BadConfiguration = 4, ///< the configuration file, or a file that it names
    LibraryFailure = 5,   ///< the library or its engine reported a failure, or something unforeseen happened
    WriteFailed = 6,      ///< a file could not be written; it is as it was before
    Interrupted = 130,    ///< Ctrl-C
};

/// Thrown by commands, and by what they call: the command cannot give an answer. main makes a report of it.
struct CommandFailure : std::runtime_error
{
    CommandFailure(ExitCode code, const std::string& message, std::string whatToDo = {})
        : std::runtime_error(message), exitCode(code), fix(std::move(whatToDo))
    {
    }

    ExitCode exitCode;
    std::string fix;
};

} // namespace velox::console
