#pragma once

#include "console/report/Report.h"
#include "console/report/Results.h"

namespace velox::console
{

/// What a command has to say that renders itself.
struct Outcome
{
    ExitCode exitCode = ExitCode::Success;
    std::string verdict; ///< one line without a line end; main prints it last, so `text` does not hold it
    std::string text;    ///< lines, each with its end; may be empty
    Results results{};
    std::optional<Problem> error = std::nullopt; ///< for a command that failed but still has something to show

    operator Report() const
    {
        return {exitCode, verdict, {}, {}, {}, {}, error, text, results};
    }
};

} // namespace velox::console
