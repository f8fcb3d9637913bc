#include "library/configuration/ConfigurationReader.h"
#include "library/configuration/FilePath.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <new>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

HRESULT ConfigurationReader::LoadFile(const std::string& directory, const std::string& fileName, uint8_t** data, uint32_t* size)
{
    std::ifstream file(JoinPath(directory, fileName), std::ios::binary | std::ios::ate);
    const std::streamoff length = file.tellg();
    if (!file || length < 0)
    {
        logger->LogFormat(Failure, Internals, "[LoadFile] Failed to load file: %s.", fileName.c_str());
        return E_FAIL;
    }
    if (length == 0)
    {
        // Two blanks kept: field logs are searched for this wording.
        logger->LogFormat(Failure, Internals, "[LoadFile] The file: %s  is empty.", fileName.c_str());
        return E_FAIL;
    }

    // A block that *data already holds is dropped, not released. Kept: the caller hands in empty members.
    const auto byteCount = static_cast<std::size_t>(length);
    *data = new (std::nothrow) uint8_t[byteCount];
    if (*data == nullptr)
    {
        logger->LogFormat(Failure, Internals, "[LoadFile] Failed to allocate memory for data from file: %s.", fileName.c_str());
        return E_FAIL;
    }

    // The outcome of the read is not examined; what a shrinking file did not deliver reads as zeros.
    file.seekg(0);
    file.read(reinterpret_cast<char*>(*data), length);
    std::fill(*data + file.gcount(), *data + byteCount, uint8_t{0});
    if (size != nullptr)
    {
        *size = static_cast<uint32_t>(length);
    }
    return S_OK;
}
