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

/// Keeps other processes that write the file away from its end, for which a byte far behind it stands. Windows moves to the end
/// and writes in one step, but not on every file system. A process that was stopped while it wrote is not waited for.
class EndOfFileLock
{
public:
    explicit EndOfFileLock(HANDLE lockedFile) : file(lockedFile)
    {
        constexpr int MostMilliseconds = 100;
        for (int waited = 0; waited < MostMilliseconds && !TryLock(); ++waited)
        {
            Sleep(1);
        }
    }
    EndOfFileLock(const EndOfFileLock&) = delete;
    EndOfFileLock& operator=(const EndOfFileLock&) = delete;
    ~EndOfFileLock()
    {
        if (isLocked)
        {
            UnlockFileEx(file, 0, 1, 0, &place);
        }
    }

private:
    bool TryLock()
    {
        isLocked = LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != FALSE;
        return isLocked;
    }

    static OVERLAPPED FarBehind()
    {
        OVERLAPPED position{};
        position.OffsetHigh = 0x7FFFFFFF;
        return position;
    }

    HANDLE file;
    OVERLAPPED place = FarBehind();
    bool isLocked = false;
};

} // namespace

LogFile::~LogFile()
{
    Close();
}

void LogFile::Open(const WideText& path)
{
    Close();
    CreateDirectoryW(Wide(path.substr(0, path.find_last_of(u'\\'))), nullptr);
    // With the right to append and none to write elsewhere, Windows puts every write at the end, whoever else writes. The lock
    // needs the right to read.
    file =
        CreateFileW(Wide(path), FILE_APPEND_DATA | FILE_READ_DATA | SYNCHRONIZE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
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
        const EndOfFileLock lock(file);
        DWORD written = 0;
        WriteFile(file, text.data(), static_cast<DWORD>(length), &written, nullptr);
    }
}

} // namespace velox::oemadapter
