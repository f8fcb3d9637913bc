#pragma once

#include "console/text/ExitCode.h"
#include "console/text/Results.h"

#include <optional>
#include <string>

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
    Results results{};
    std::optional<Problem> error = std::nullopt; ///< for a command that failed but still has something to show
};

} // namespace velox::console
