#pragma once

#include <string>

/// A log file of a test's own: on Windows in the folder for temporary files, natively in the log file's double.
class LogText
{
public:
    LogText();
    LogText(const LogText&) = delete;
    LogText& operator=(const LogText&) = delete;
    ~LogText();

    const std::u16string& Path() const
    {
        return path;
    }

    /// What was written so far; empty when there is no file.
    std::string Read() const;

private:
    std::u16string path;
};
