#pragma once

#include "console/hosting/EngineOutput.h"
#include "console/hosting/LoggedLine.h"
#include "console/report/Command.h"

#include <IVeloxKeywordDetectorLogger.h>

#include <fstream>
#include <vector>

namespace velox::console
{

/// The console's logger: keeps the library's lines, and what the engine writes meanwhile, so that a command can tell why an
/// operation failed, and shows or writes them as asked.
///
/// | asked by                      | lines go to                                 | which                         |
/// |-------------------------------|---------------------------------------------|-------------------------------|
/// | --verbose                     | the standard error stream                   | all                           |
/// | --log-file FILE               | the file's end                              | all                           |
/// | the registry's LogToFile      | the end of velox-kws.log in the folder TEMP | up to the registry's level    |
class ConsoleLogger : public IVeloxKeywordDetectorLogger
{
public:
    /// @throws CommandFailure WriteFailed when the log file cannot be opened
    explicit ConsoleLogger(const LogOptions& options);

    void Log(uint32_t level, uint32_t source, const std::string& message) override;
    void LogWithStatus(uint32_t level, uint32_t source, const std::string& message, int32_t status) override;
    void LogWithCode(uint32_t level, uint32_t source, const std::string& message, uint32_t code) override;
    void LogFormat(uint32_t level, uint32_t source, const char* format, ...) override;
    void SetLevel(uint32_t level) override;
    void SetLogToFile(bool enabled) override;

    /// An operation begins: what the engine writes is a line of the log from now on.
    void Begin();

    /// The operation has ended. @return its lines
    std::vector<LoggedLine> TakeLines();

private:
    void Add(LoggedLine line);
    void AddEngineLines();
    void Keep(LoggedLine line);
    void Open(const std::filesystem::path& logFile);

    bool verbose;
    bool everything;
    uint32_t threshold;
    std::ofstream file;
    std::vector<LoggedLine> lines;
    EngineOutput engine;
};

} // namespace velox::console
