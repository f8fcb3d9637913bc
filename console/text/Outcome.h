#pragma once

#include "console/text/ExitCode.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace velox::console
{

/// What went wrong, in a sentence, and what to do about it. The fix may be empty.
struct Problem
{
    std::string message;
    std::string fix;
};

/// What a command has to say: `text` for people and `results` for machines tell the same.
struct Outcome
{
    ExitCode exitCode = ExitCode::Success;
    std::string verdict; ///< one line without a line end; main prints it last, so `text` does not hold it
    std::string text;    ///< lines, each with its end; may be empty
    nlohmann::ordered_json results = nlohmann::ordered_json::array(); ///< an object for each file, language, detection or finding
    std::optional<Problem> error = std::nullopt; ///< for a command that failed but still has something to show
};

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
