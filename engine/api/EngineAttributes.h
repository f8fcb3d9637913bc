#pragma once

#include "engine/models/Population.h"

#include <memory>
#include <string>
#include <string_view>

namespace velox::engine
{

/// From which level on a line is logged.
enum class LogLevel : int
{
    Error = 1,       ///< models and enrollments that failed
    Warning = 3,     ///< constraints that were ignored, takes that are of no use
    Information = 4, ///< sessions, models, takes, enrollments
};

/// What the global attributes say; a session keeps the state that it was created in.
struct EngineAttributes
{
    static constexpr int DefaultLogLevel = 3;
    /// Room for a model in the firmware, unless the constraints say otherwise.
    static constexpr uint32_t DefaultMaxModelBytes = 160 * 1024;

    int logLevel = DefaultLogLevel; ///< as LogLevel; 0 or less for nothing
    uint32_t maxModelBytes = DefaultMaxModelBytes;
    std::shared_ptr<const AcousticModel> acousticModel;
    std::shared_ptr<const Population> population;

    /// Reads a list "name=value; name=value". Known: max_model_bytes. Unknown names and values that are not numbers are ignored
    /// and logged.
    void SetConstraints(std::string_view text);

    /// @param text  a decimal number; anything else is BadValue
    Status SetLogLevel(std::string_view text);

    /// Reads and keeps a copy: the caller's block may go away.
    Status SetAcousticModel(const uint8_t* blob);
    Status SetPopulation(const uint8_t* blob);

    /// Writes a line to the standard error stream when the log level lets it through.
    void Log(LogLevel level, const std::string& line) const;

    /// Logs how something ended: its status, and for people what that means.
    /// @param failure  level of a failure; a success is an Information
    void LogOutcome(LogLevel failure, const std::string& what, Status status) const;
};

} // namespace velox::engine
