#pragma once

#include <VeloxHwKwsImpl.h>

#include <filesystem>
#include <fstream>
#include <string>

/// The host's logger: shows the library's lines up to a level, and writes them to a file as well when the registry asks for it.
class Logger : public IVeloxKeywordDetectorLogger
{
public:
    explicit Logger(const std::filesystem::path& logFile);

    void Log(uint32_t level, uint32_t source, const std::string& message) override;
    void LogWithStatus(uint32_t level, uint32_t source, const std::string& message, int32_t status) override;
    void LogWithCode(uint32_t level, uint32_t source, const std::string& message, uint32_t code) override;
    void LogFormat(uint32_t level, uint32_t source, const char* format, ...) override;
    void SetLevel(uint32_t level) override;
    void SetLogToFile(bool enabled) override;

    /// How many lines contained this text so far, whether they were shown or not.
    int CountLines(const std::string& text) const;

    /// How many errors, failures and warnings there were so far.
    int CountProblems() const;

private:
    void Write(uint32_t level, uint32_t source, const std::string& message);

    // Until the library has told the level, everything is shown: its first lines are about the registry.
    uint32_t threshold = VeloxLogLevel::Detail;
    std::filesystem::path logFile;
    std::ofstream file;
    std::string everything;
    int problems = 0;
};
