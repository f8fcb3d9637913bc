#pragma once

#include "oemadapter/logging/LogFile.h"
#include "oemadapter/logging/OperationLog.h"

#include <IVeloxKeywordDetectorLogger.h>

#include <cstdarg>
#include <optional>
#include <string_view>

namespace velox::oemadapter
{

/// The adapter's logger, for the library's lines and its own:
///
///     TIME PROCESS THREAD LEVEL SOURCE METHOD MESSAGE [CODE]
///     2026-02-03T04:05:06.789Z  1234  5678 4 library IEventDetectorOemAdapter::BuildArmingPatternData [BuildArmingPatternData]
///     Entry.
///
/// Time is UTC, LEVEL one of VeloxLogLevel, SOURCE "library", "internals" (of the library) or "adapter", METHOD the COM method
/// under way, CODE hexadecimal. Line breaks and control characters of a message are shown as spaces, and a message ends with
/// "..." where it would be longer than 1,024 characters. Samples of a recording are never logged.
///
/// It allocates and throws nothing.
class AdapterLogger final : public IVeloxKeywordDetectorLogger
{
public:
    static constexpr std::size_t LongestMessage = 1024;

    /// The adapter's own lines, beside the sources of VeloxLogSource.
    static constexpr uint32_t OwnSource = 2;

    /// @param path  of the file that SetLogToFile opens; must outlive the logger or the next path. One that is open is closed.
    void SetFile(const WideText* path);

    void Log(uint32_t level, uint32_t source, const std::string& message) override;
    void LogWithStatus(uint32_t level, uint32_t source, const std::string& message, int32_t status) override;
    void LogWithCode(uint32_t level, uint32_t source, const std::string& message, uint32_t code) override;

    /// A wide text that is handed to "%s", as one function of the library does with names of plain letters, ends with its first
    /// letter.
    void LogFormat(uint32_t level, uint32_t source, const char* format, ...) override;
    void SetLevel(uint32_t level) override;
    void SetLogToFile(bool enabled) override;

    /// The lines of the call that is under way, also those that are not shown.
    OperationLog operation;

private:
    void Add(uint32_t level, uint32_t source, std::string_view message, std::optional<uint32_t> code = std::nullopt);
    void Show(uint32_t level, uint32_t source, std::string_view text);

    /// Until the library has told the level: a failure to make it must be seen.
    uint32_t threshold = VeloxLogLevel::Error;
    const WideText* filePath = nullptr;
    LogFile file;
};

} // namespace velox::oemadapter
