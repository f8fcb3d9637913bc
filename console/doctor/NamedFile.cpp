#include "console/doctor/NamedFile.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>

namespace velox::console
{

NamedFile ReadNamedFile(const std::string& path)
{
    NamedFile file{path};
    std::error_code error;
    std::ifstream stream(path, std::ios::binary | std::ios::ate);
    const bool opened = stream.is_open() && !std::filesystem::is_directory(path, error);
    const std::streamoff length = opened ? std::streamoff(stream.tellg()) : -1;
    if (length < 0)
    {
        return file;
    }
    file.readable = true;
    file.size = static_cast<uint64_t>(length);
    if (file.size <= NamedFile::LargestInspected)
    {
        file.bytes.resize(static_cast<std::size_t>(length));
        stream.seekg(0);
        stream.read(reinterpret_cast<char*>(file.bytes.data()), length);
        file.readable = stream.gcount() == length;
    }
    return file;
}

Absence WhyNotReadable(const std::string& path)
{
    if (!IsAscii(path))
    {
        return {
            "cannot be opened: its name has characters beyond ASCII, which the library takes for the Windows code page, not for "
            "UTF-8",
            "Rename it, and write only letters without accents."};
    }
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
    {
        return {"is a folder", "Name a file."};
    }
    if (std::filesystem::exists(path, error))
    {
        return {"may not be read", "Give this account the permission to read it."};
    }
    return {"does not exist", "Put the file there, or correct its name in the configuration."};
}

bool IsAscii(std::string_view text)
{
    constexpr unsigned char FirstBeyond = 0x80;
    return std::all_of(text.begin(), text.end(), [](char own) { return static_cast<unsigned char>(own) < FirstBeyond; });
}

bool IsAbsolute(std::string_view path)
{
    const bool drive = path.size() > 2 && std::isalpha(static_cast<unsigned char>(path[0])) != 0 && path[1] == ':' &&
                       (path[2] == '\\' || path[2] == '/');
    const bool share = path.starts_with("\\\\") || path.starts_with("//");
    // Natively, where the tests run, a path that begins with a slash.
    return drive || share || std::filesystem::path(path).is_absolute();
}

} // namespace velox::console
