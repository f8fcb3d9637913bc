// Log files in memory: natively there is no debugger's output, and a line's stamp is always the same.
#include "oemadapter/logging/LogFile.h"

#include "tests/oemadapter/support/LogText.h"
#include "tests/support/FaultInjector.h"

#include <map>

namespace
{

std::map<std::u16string, std::string> files;

} // namespace

LogText::LogText() : path(u"C:\\Logs\\adapter.log")
{
}

LogText::~LogText()
{
    files.clear();
}

std::string LogText::Read() const
{
    const auto found = files.find(path);
    return found == files.end() ? "" : found->second;
}

namespace velox::oemadapter
{

LogFile::~LogFile()
{
    Close();
}

void LogFile::Open(const WideText& path)
{
    const FaultPause pause;
    file = &files[path];
}

void LogFile::Close()
{
    file = INVALID_HANDLE_VALUE;
}

void LogFile::Write(std::string_view line)
{
    const FaultPause pause;
    if (file != INVALID_HANDLE_VALUE)
    {
        *static_cast<std::string*>(file) += "2026-02-03T04:05:06.789Z     1     2 " + std::string(line) + "\r\n";
    }
}

} // namespace velox::oemadapter
