#include "FileStream.h"

#include "ResultName.h"

#include <shlwapi.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace
{

void ThrowOnFailure(HRESULT result, const std::string& action)
{
    if (FAILED(result))
    {
        throw std::runtime_error(action + " failed: " + ResultName(result));
    }
}

StreamPointer Open(const std::filesystem::path& path, DWORD mode, BOOL create)
{
    IStream* stream = nullptr;
    ThrowOnFailure(SHCreateStreamOnFileEx(path.wstring().c_str(), mode, FILE_ATTRIBUTE_NORMAL, create, nullptr, &stream),
                   "Opening a stream on " + path.string());
    return StreamPointer(stream);
}

} // namespace

StreamPointer OpenStream(const std::filesystem::path& path)
{
    return Open(path, STGM_READ | STGM_SHARE_DENY_WRITE, FALSE);
}

StreamPointer CreateStream(const std::filesystem::path& path)
{
    return Open(path, STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_CREATE, TRUE);
}

Bytes ReadFileBytes(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
    {
        throw std::runtime_error("Cannot read " + path.string());
    }
    return Bytes(std::istreambuf_iterator<char>(file), {});
}
