#pragma once

#include "oemadapter/windows/WideText.h"

#include <windows.h>

#include <string_view>

namespace velox::oemadapter
{

/// Where the lines go: the debugger, and the end of a file, which several processes may write at once: each line is added in one
/// piece. The file only ever grows; it may be moved away or deleted while it is open.
class LogFile
{
public:
    LogFile() = default;
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ~LogFile();

    /// Opens the file, in place of the one that was open. It is made when it is missing, and so is the folder that it lies in. A
    /// file that cannot be opened leaves the debugger.
    void Open(const WideText& path);
    void Close();

    /// Writes time, process, thread and the line.
    /// @param line  of printable characters, in the process's narrow code page, without a line break
    void Write(std::string_view line);

private:
    HANDLE file = INVALID_HANDLE_VALUE;
};

} // namespace velox::oemadapter
