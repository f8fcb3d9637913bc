#include "console/hosting/EngineOutput.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <cstdio>
#include <sstream>

namespace velox::console
{

namespace
{

constexpr int ErrorStream = 2; // file descriptor

/// A file that vanishes when it is closed. @return -1 when there is none
int OpenTemporary()
{
    wchar_t* name = _wtempnam(nullptr, L"velox-kws-");
    int file = -1;
    if (name != nullptr)
    {
        _wsopen_s(&file, name, _O_CREAT | _O_RDWR | _O_BINARY | _O_TEMPORARY | _O_NOINHERIT, _SH_DENYNO, _S_IREAD | _S_IWRITE);
        free(name);
    }
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
    if (file >= 0 && stream < 0)
    {
        stream = _dup(ErrorStream);
        _dup2(file, ErrorStream);
    }
}

void EngineOutput::End()
{
    if (stream >= 0)
    {
        _dup2(stream, ErrorStream);
        _close(stream);
        stream = -1;
    }
}

std::vector<std::string> EngineOutput::TakeLines()
{
    std::vector<std::string> lines;
    const long size = file < 0 ? 0 : _lseek(file, 0, SEEK_END);
    if (size > taken)
    {
        std::string text(static_cast<std::size_t>(size - taken), '\0');
        _lseek(file, taken, SEEK_SET);
        _read(file, text.data(), static_cast<unsigned>(text.size()));
        text.resize(text.rfind('\n') + 1); // a line that is not whole is taken later
        taken += static_cast<long>(text.size());
        _lseek(file, 0, SEEK_END);
        std::istringstream whole(text);
        for (std::string line; std::getline(whole, line);)
        {
            lines.push_back(line.ends_with('\r') ? line.substr(0, line.size() - 1) : line);
        }
    }
    return lines;
}

void EngineOutput::Show(const std::string& line) const
{
    const std::string text = line + "\n";
    _write(stream >= 0 ? stream : ErrorStream, text.data(), static_cast<unsigned>(text.size()));
}

} // namespace velox::console
