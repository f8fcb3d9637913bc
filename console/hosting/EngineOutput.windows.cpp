#include "console/hosting/EngineOutput.h"

#include "console/text/Utf8Path.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace velox::console
{

namespace
{

constexpr int ErrorStream = 2; // file descriptor

/// A file that vanishes when it is closed. @return -1 when there is none
int OpenTemporary()
{
    std::array<wchar_t, MAX_PATH + 1> folder{};
    std::array<wchar_t, MAX_PATH + 1> name{};
    if (GetTempPathW(MAX_PATH, folder.data()) == 0 || GetTempFileNameW(folder.data(), L"vkw", 0, name.data()) == 0)
    {
        return -1;
    }
    int file = -1;
    _wsopen_s(&file, name.data(), _O_RDWR | _O_BINARY | _O_TEMPORARY | _O_NOINHERIT, _SH_DENYNO, _S_IREAD | _S_IWRITE);
    return file;
}

} // namespace

EngineOutput::~EngineOutput()
{
    End();
    if (file >= 0)
    {
        _close(file);
    }
}

void EngineOutput::Begin()
{
    file = file >= 0 ? file : OpenTemporary();
    if (file < 0 || stream >= 0)
    {
        return;
    }
    std::fflush(stderr);
    stream = _dup(ErrorStream);
    if (stream >= 0)
    {
        _dup2(file, ErrorStream);
    }
}

void EngineOutput::End()
{
    if (stream >= 0)
    {
        std::fflush(stderr);
        _dup2(stream, ErrorStream);
        _close(stream);
        stream = -1;
    }
}

std::vector<std::string> EngineOutput::TakeLines()
{
    std::vector<std::string> lines;
    std::fflush(stderr);
    const long size = file < 0 ? 0 : _lseek(file, 0, SEEK_END);
    if (size <= taken)
    {
        return lines;
    }
    std::string text(static_cast<std::size_t>(size - taken), '\0');
    _lseek(file, taken, SEEK_SET);
    const int got = _read(file, text.data(), static_cast<unsigned>(text.size()));
    _lseek(file, 0, SEEK_END);
    text.resize(static_cast<std::size_t>(std::max(got, 0)));
    for (std::size_t begin = 0, end = 0; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1)
    {
        const bool carriageReturn = end > begin && text[end - 1] == '\r';
        lines.push_back(text.substr(begin, end - begin - (carriageReturn ? 1 : 0)));
        taken += static_cast<long>(end + 1 - begin);
    }
    return lines;
}

void EngineOutput::Show(const std::string& line) const
{
    const std::string text = line + "\n";
    _write(stream >= 0 ? stream : ErrorStream, text.data(), static_cast<unsigned>(text.size()));
}

} // namespace velox::console
