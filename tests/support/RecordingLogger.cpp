#include "tests/support/RecordingLogger.h"

#include "tests/support/FaultInjector.h"

#include <cstdarg>
#include <cstdio>
#include <stdexcept>
#include <utility>

/// @param make  LogLine()
template <typename Make>
void RecordingLogger::Keep(const Make& make)
{
    ++calls;
    if (!keepLines)
    {
        return;
    }
    LogLine line = make();
    if (onLine)
    {
        onLine(line);
    }
    lines.push_back(std::move(line));
}

void RecordingLogger::Log(uint32_t level, uint32_t source, const std::string& message)
{
    const FaultPause pause;
    Keep([&] { return ::Log(level, source, message); });
}

void RecordingLogger::LogWithStatus(uint32_t level, uint32_t source, const std::string& message, int32_t status)
{
    const FaultPause pause;
    Keep([&] { return ::LogWithStatus(level, source, message, status); });
}

void RecordingLogger::LogWithCode(uint32_t level, uint32_t source, const std::string& message, uint32_t code)
{
    const FaultPause pause;
    Keep([&] { return ::LogWithCode(level, source, message, code); });
}

void RecordingLogger::LogFormat(uint32_t level, uint32_t source, const char* format, ...)
{
    const FaultPause pause;
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text;
    if (keepLines && length > 0)
    {
        text.resize(static_cast<std::size_t>(length));
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    va_end(arguments);
    Keep([&] { return ::LogFormat(level, source, text); });
}

void RecordingLogger::SetLevel(uint32_t level)
{
    const FaultPause pause;
    Keep([&] { return ::SetLevel(level); });
}

void RecordingLogger::SetLogToFile(bool enabled)
{
    const FaultPause pause;
    Keep([&] { return ::SetLogToFile(enabled); });
}

Lines RecordingLogger::Take()
{
    return std::exchange(lines, {});
}
