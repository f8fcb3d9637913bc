#include "console/hosting/ConsoleLogger.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <string_view>
#include <utility>

namespace velox::console
{

namespace
{

/// The lines of one function hand a wide text to "%s"; to read it as one makes the line whole.
std::string MendFormat(const char* format)
{
    std::string mended(format);
    if (mended.starts_with("[GetLoggerSeverityLevelFromRegistry]"))
    {
        if (const std::size_t found = mended.find("%s"); found != std::string::npos)
        {
            mended.insert(found + 1, "l");
        }
    }
    return mended;
}

std::string Format(const char* format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

} // namespace

ConsoleLogger::ConsoleLogger(const LogOptions& options)
    : verbose(options.verbose), everything(!options.logFile.empty()), threshold(VeloxLogLevel::Detail)
{
    if (everything)
    {
        Open(options.logFile);
    }
}

void ConsoleLogger::Log(uint32_t level, uint32_t source, const std::string& message)
{
    Add({level, source, message});
}

void ConsoleLogger::LogWithStatus(uint32_t level, uint32_t source, const std::string& message, int32_t status)
{
    Add({level, source, message, status});
}

void ConsoleLogger::LogWithCode(uint32_t level, uint32_t source, const std::string& message, uint32_t code)
{
    Add({level, source, message, std::nullopt, code});
}

void ConsoleLogger::LogFormat(uint32_t level, uint32_t source, const char* format, ...)
{
    const std::string mended = MendFormat(format);
    va_list arguments;
    va_start(arguments, format);
    std::string message = Format(mended.c_str(), arguments);
    va_end(arguments);
    Add({level, source, std::move(message)});
}

void ConsoleLogger::SetLevel(uint32_t level)
{
    threshold = level;
}

void ConsoleLogger::SetLogToFile(bool enabled)
{
    if (everything)
    {
        return;
    }
    file.close();
    if (enabled)
    {
        Open(std::filesystem::temp_directory_path() / "velox-kws.log");
    }
}

std::vector<LoggedLine> ConsoleLogger::TakeLines()
{
    AddEngineLines();
    engine.End();
    return std::exchange(lines, {});
}

void ConsoleLogger::Begin()
{
    engine.Begin();
}

void ConsoleLogger::Add(LoggedLine line)
{
    AddEngineLines();
    Keep(std::move(line));
}

void ConsoleLogger::AddEngineLines()
{
    for (std::string& line : engine.TakeLines())
    {
        Keep({VeloxLogLevel::Information, EngineSource, std::move(line)});
    }
}

void ConsoleLogger::Keep(LoggedLine line)
{
    if (verbose)
    {
        engine.Show("| " + LogText(line));
    }
    if (file.is_open() && (everything || line.level <= threshold))
    {
        file << LogText(line) << "\n" << std::flush;
    }
    lines.push_back(std::move(line));
}

void ConsoleLogger::Open(const std::filesystem::path& logFile)
{
    file.open(logFile, std::ios::app);
    if (!file)
    {
        throw CommandFailure(ExitCode::WriteFailed, "The log file " + Utf8(logFile) + " cannot be written.",
                             "Name another file with --log-file.");
    }
}

} // namespace velox::console
