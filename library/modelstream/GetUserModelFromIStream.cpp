#include "library/modelstream/UserModelStream.h"

#include <algorithm>
#include <new>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

HRESULT GetUserModelFromIStream(IStream* stream, uint8_t*& data, uint32_t& size, IVeloxKeywordDetectorLogger* logger)
{
    logger->Log(Information, Internals, "[GetUserModelFromIStream] Entry.");

    ULARGE_INTEGER end{};
    if (const HRESULT status = stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_END, &end); FAILED(status))
    {
        logger->Log(Failure, Internals, "[GetUserModelFromIStream] Failed to set pointer to end of stream.");
        return status;
    }
    if (const HRESULT status = stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr); FAILED(status))
    {
        // Spelling and missing full stop kept: field logs are searched for this wording.
        logger->Log(Failure, Internals, "[GetUserModelFromIStream] Failed set pointer to beggining of stream");
        return status;
    }
    size = static_cast<uint32_t>(end.QuadPart);
    logger->LogFormat(Detail, Internals, "[GetUserModelFromIStream] Expected user model size from IStream: %lu.",
                      static_cast<unsigned long>(size));

    data = new (std::nothrow) uint8_t[size];
    if (data == nullptr)
    {
        // Kept: E_FAIL here, where the check for a model gives E_OUTOFMEMORY.
        logger->Log(Failure, Internals, "[GetUserModelFromIStream] Failed to allocate memory for model data.");
        return E_FAIL;
    }

    ULONG count = 0;
    const HRESULT result = stream->Read(data, size, &count);
    if (FAILED(result) || count != size)
    {
        // The caller goes on with a short read that the stream calls a success: no stale memory may reach the firmware.
        std::fill(data + std::min<uint32_t>(count, size), data + size, uint8_t{0});
        logger->LogFormat(Failure, Internals,
                          "[GetUserModelFromIStream] Reading user model data failed. Status: 0x%x . Data size: %lu , "
                          "expected: %lu.",
                          static_cast<unsigned int>(result), static_cast<unsigned long>(count), static_cast<unsigned long>(size));
    }
    else
    {
        logger->LogFormat(Detail, Internals, "[GetUserModelFromIStream] User model data read successfully. Data size: %lu.",
                          static_cast<unsigned long>(count));
    }

    logger->Log(Information, Internals, "[GetUserModelFromIStream] Exit.");
    return result;
}
