#include "tests/support/MediaBuffer.h"

#include <mfapi.h>

#include <cstring>
#include <stdexcept>

MediaBuffer MakeMediaBuffer(const std::vector<float>& samples)
{
    const auto size = static_cast<DWORD>(samples.size() * sizeof(float));
    IMFMediaBuffer* made = nullptr;
    if (FAILED(MFCreateMemoryBuffer(size, &made)))
    {
        throw std::runtime_error("the memory buffer cannot be made");
    }
    MediaBuffer buffer(made, [](IMFMediaBuffer* released) { released->Release(); });

    BYTE* bytes = nullptr;
    if (FAILED(buffer->Lock(&bytes, nullptr, nullptr)))
    {
        throw std::runtime_error("the memory buffer cannot be locked");
    }
    if (size > 0)
    {
        std::memcpy(bytes, samples.data(), size);
    }
    if (FAILED(buffer->Unlock()) || FAILED(buffer->SetCurrentLength(size)))
    {
        throw std::runtime_error("the memory buffer cannot be filled");
    }
    return buffer;
}
