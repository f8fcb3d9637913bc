#include "Logger.h"

#include "ResultName.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <iostream>

namespace
{

constexpr std::array LevelNames{"none", "error", "failure", "warning", "information", "detail"};

std::string Column(const std::string& text, std::size_t width)
{
    return text + std::string(text.size() < width ? width - text.size() : 0, ' ');
}

std::string LevelColumn(uint32_t level)
{
    return Column(level < LevelNames.size() ? LevelNames[level] : std::to_string(level), 11);
}

std::string SourceColumn(uint32_t source)
{
    return Column(source == VeloxLogSource::Adapter ? "adapter" : "internals", 9);
}

/// The name of a registry value reaches a "%s" as a wide text, of which one letter is left: the L of "LoggerLevel".
std::string Format(const char* format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    std::string text(static_cast<std::size_t>(std::vsnprintf(nullptr, 0, format, arguments)), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

} // namespace

Logger::Logger(const std::filesystem::path& path) : logFile(path)
{
}

void Logger::Log(uint32_t level, uint32_t source, const std::string& message)
{
    Write(level, source, message);
}

void Logger::LogWithStatus(uint32_t level, uint32_t source, const std::string& message, int32_t status)
{
    Write(level, source, message + " Status: " + ResultName(status));
}

void Logger::LogWithCode(uint32_t level, uint32_t source, const std::string& message, uint32_t code)
{
    Write(level, source, message + " Engine status: " + std::to_string(code));
}

void Logger::LogFormat(uint32_t level, uint32_t source, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    Write(level, source, Format(format, arguments));
    va_end(arguments);
}

void Logger::SetLevel(uint32_t level)
{
    threshold = level;
}

void Logger::SetLogToFile(bool enabled)
{
    file.close();
    if (enabled)
    {
        file.open(logFile, std::ios::app);
    }
}

int Logger::CountLines(const std::string& text) const
{
    int count = 0;
    for (auto found = everything.find(text); found != std::string::npos; found = everything.find(text, found + 1))
    {
        ++count;
    }
    return count;
}

int Logger::CountProblems() const
{
    return problems;
}

void Logger::Write(uint32_t level, uint32_t source, const std::string& message)
{
    everything += message + "\n";
    problems += level <= VeloxLogLevel::Warning ? 1 : 0;
    if (level > threshold)
    {
        return;
    }
    const std::string line = LevelColumn(level) + "  " + SourceColumn(source) + "  " + message + "\n";
    std::cout << "    | " << line << std::flush;
    file << line << std::flush;
}
