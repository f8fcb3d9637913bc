#pragma once

#include <cstdint>
#include <string>

/// The caller's logger. The caller implements and owns it; it must outlive every adapter and wrapper that was given it. The
/// library never deletes it and calls it only from the thread that called the library.
///
/// `level` is one of VeloxLogLevel, `source` one of VeloxLogSource. Formatting, filtering by level and where the lines go are
/// the logger's business. Every line begins with a name in square brackets, as a rule the operation's; only two begin with the
/// name of an engine function instead.
///
/// The order of the operations is the order of their virtual slots and never changes.
class IVeloxKeywordDetectorLogger
{
public:
    /// Slot 0. Never called by the library.
    virtual ~IVeloxKeywordDetectorLogger() = default;

    /// A finished message.
    virtual void Log(uint32_t level, uint32_t source, const std::string& message) = 0;

    /// A message and the HRESULT that the failing call returned.
    virtual void LogWithStatus(uint32_t level, uint32_t source, const std::string& message, int32_t status) = 0;

    /// A message and a 32-bit status of the keyword engine.
    virtual void LogWithCode(uint32_t level, uint32_t source, const std::string& message, uint32_t code) = 0;

    /// A printf-style message. The lines of GetLoggerSeverityLevelFromRegistry hand a wide string to a "%s".
    virtual void LogFormat(uint32_t level, uint32_t source, const char* format, ...) = 0;

    /// Severity threshold, 0 (nothing is logged) to 5, from the registry value "LoggerLevel".
    virtual void SetLevel(uint32_t level) = 0;

    /// Whether lines also go to a file, from the registry value "LogToFile".
    virtual void SetLogToFile(bool enabled) = 0;
};

/// The levels that the library logs at; a logger shows a line when its level is not above the threshold of SetLevel.
namespace VeloxLogLevel
{
inline constexpr uint32_t NoLogs = 0;      ///< a threshold only: nothing is shown
inline constexpr uint32_t Error = 1;       ///< validation failures, failed steps, failed allocations
inline constexpr uint32_t Failure = 2;     ///< failures inside the configuration, model stream and wrapper functions
inline constexpr uint32_t Warning = 3;     ///< a fallback was taken
inline constexpr uint32_t Information = 4; ///< entry and exit lines, constructor and destructor, counts
inline constexpr uint32_t Detail = 5;      ///< parameters, sizes, per-recording lines
} // namespace VeloxLogLevel

/// Which part of the library wrote a line.
namespace VeloxLogSource
{
inline constexpr uint32_t Adapter = 0;   ///< the adapter's operations, and three failures of the engine wrapper
inline constexpr uint32_t Internals = 1; ///< configuration reader, registry, model stream, engine wrapper, recordings by number
} // namespace VeloxLogSource
