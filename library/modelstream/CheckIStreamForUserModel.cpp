#include "library/modelstream/UserModelStream.h"

#include <cstring>
#include <memory>
#include <new>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

/// The characters that a user model begins with, and their terminating zero, which is read but not compared.
constexpr char Magic[] = "VWOV";
constexpr std::size_t MagicLength = sizeof(Magic) - 1;

} // namespace

HRESULT CheckIStreamForUserModel(IStream* stream, IVeloxKeywordDetectorLogger* logger)
{
    logger->Log(Information, Internals, "[CheckIStreamForUserModel] Entry.");

    // Zeros: what the read does not deliver does not match.
    const std::unique_ptr<char[]> buffer(new (std::nothrow) char[sizeof(Magic)]());
    if (buffer == nullptr)
    {
        logger->Log(Failure, Internals, "[CheckIStreamForUserModel] Failed to allocate memory for buffer.");
        return E_OUTOFMEMORY;
    }

    if (const HRESULT status = stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr); FAILED(status))
    {
        logger->LogWithStatus(Failure, Internals, "[CheckIStreamForUserModel] Failed to set pointer to the beginning of IStream.",
                              status);
        return status;
    }
    HRESULT result = stream->Read(buffer.get(), sizeof(Magic), nullptr);
    if (FAILED(result))
    {
        logger->LogWithStatus(Failure, Internals, "[CheckIStreamForUserModel] Failed to read from IStream.", result);
        return result;
    }
    if (std::memcmp(buffer.get(), Magic, MagicLength) != 0)
    {
        logger->Log(Detail, Internals, "[CheckIStreamForUserModel] There is no user model data in IStream.");
        result = E_FAIL;
    }

    logger->Log(Information, Internals, "[CheckIStreamForUserModel] Exit.");
    return result;
}
