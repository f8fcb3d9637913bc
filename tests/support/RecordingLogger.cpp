#include "tests/support/RecordingLogger.h"

#include "tests/support/FaultInjector.h"

#include <cstdarg>
#include <cstdio>
#include <stdexcept>
#include <utility>

void RecordingLogger::Log(uint32_t level, uint32_t source, const std::string& message)
{
    const FaultPause pause;
    Keep(::Log(level, source, message));
}

void RecordingLogger::LogWithStatus(uint32_t level, uint32_t source, const std::string& message, int32_t status)
{
    const FaultPause pause;
    Keep(::LogWithStatus(level, source, message, status));
}

void RecordingLogger::LogWithCode(uint32_t level, uint32_t source, const std::string& message, uint32_t code)
{
    const FaultPause pause;
    Keep(::LogWithCode(level, source, message, code));
}

void RecordingLogger::LogFormat(uint32_t level, uint32_t source, const char* format, ...)
{
    const FaultPause pause;
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(static_cast<std::size_t>(length < 0 ? 0 : length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    va_end(arguments);
    Keep(::LogFormat(level, source, text));
}

void RecordingLogger::SetLevel(uint32_t level)
{
    const FaultPause pause;
    Keep(::SetLevel(level));
}

void RecordingLogger::SetLogToFile(bool enabled)
{
    const FaultPause pause;
    Keep(::SetLogToFile(enabled));
}

Lines RecordingLogger::Take()
{
    return std::exchange(lines, {});
}

void RecordingLogger::Keep(LogLine line)
{
    if (onLine)
    {
        onLine(line);
    }
    lines.push_back(std::move(line));
}
