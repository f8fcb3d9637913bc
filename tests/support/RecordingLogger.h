#pragma once

#include "IVeloxKeywordDetectorLogger.h"
#include "tests/support/LogLine.h"

#include <functional>

/// A logger that keeps every call, whatever its level, or only counts them, and can be told to throw. What it allocates itself
/// does not count as a FallibleCall.
class RecordingLogger : public IVeloxKeywordDetectorLogger
{
public:
    void Log(uint32_t level, uint32_t source, const std::string& message) override;
    void LogWithStatus(uint32_t level, uint32_t source, const std::string& message, int32_t status) override;
    void LogWithCode(uint32_t level, uint32_t source, const std::string& message, uint32_t code) override;
    void LogFormat(uint32_t level, uint32_t source, const char* format, ...) override;
    void SetLevel(uint32_t level) override;
    void SetLogToFile(bool enabled) override;

    /// The lines since the last call, which are forgotten then.
    Lines Take();

    /// Called before a line is kept, for example to change a file in the middle of an operation, or to throw.
    std::function<void(const LogLine&)> onLine;

    Lines lines;
    bool keepLines = true; ///< false where speed matters
    uint64_t calls = 0;

private:
    template <typename Make>
    void Keep(const Make& make);
};
