#pragma once

#include "console/text/ExitCode.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace velox::console
{

/// Thrown by commands, and by what they call: the command cannot give an answer. main makes an Outcome of it.
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
