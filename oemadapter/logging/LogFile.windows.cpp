#include "oemadapter/logging/LogFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace velox::oemadapter
{

namespace
{

/// More than a line of the logger and what stands before it.
constexpr std::size_t LongestLine = 2048;

/// @return the number of letters, at most `room`
std::size_t WriteStamp(char* target, std::size_t room)
{
    SYSTEMTIME now{};
    GetSystemTime(&now);
    const int size =
        std::snprintf(target, room, "%04u-%02u-%02uT%02u:%02u:%02u.%03uZ %5lu %5lu ", now.wYear, now.wMonth, now.wDay, now.wHour,
                      now.wMinute, now.wSecond, now.wMilliseconds, GetCurrentProcessId(), GetCurrentThreadId());
    return std::min(static_cast<std::size_t>(size), room);
}

void ShowToDebugger(std::string_view line)
{
    std::array<WCHAR, LongestLine + 1> wide{};
    MultiByteToWideChar(CP_ACP, 0, line.data(), static_cast<int>(line.size()), wide.data(), static_cast<int>(LongestLine));
    OutputDebugStringW(wide.data());
}

} // namespace

LogFile::~LogFile()
{
    Close();
}

void LogFile::Open(const WideText& path)
{
    Close();
    CreateDirectoryW(Wide(path.substr(0, path.find_last_of(u'\\'))), nullptr);
    // With the right to append and none to write elsewhere, Windows puts every write at the end, whoever else writes.
    file = CreateFileW(Wide(path), FILE_APPEND_DATA | SYNCHRONIZE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                       nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

void LogFile::Close()
{
    if (const HANDLE open = std::exchange(file, INVALID_HANDLE_VALUE); open != INVALID_HANDLE_VALUE)
    {
        CloseHandle(open);
    }
}

void LogFile::Write(std::string_view line)
{
    constexpr std::string_view End = "\r\n";
    std::array<char, LongestLine> text{};
    std::size_t length = WriteStamp(text.data(), text.size());
    for (const std::string_view part : {line.substr(0, text.size() - length - End.size()), End})
    {
        std::ranges::copy(part, text.data() + length);
        length += part.size();
    }

    ShowToDebugger({text.data(), length});
    if (file != INVALID_HANDLE_VALUE)
    {
        DWORD written = 0;
        WriteFile(file, text.data(), static_cast<DWORD>(length), &written, nullptr);
    }
}

} // namespace velox::oemadapter
