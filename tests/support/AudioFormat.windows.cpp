#include "tests/support/AudioFormat.h"

#include <stdexcept>

WAVEFORMATEX ReadAudioFormat(IMFMediaType* mediaType)
{
    WAVEFORMATEX* read = nullptr;
    UINT32 size = 0;
    if (FAILED(MFCreateWaveFormatExFromMFMediaType(mediaType, &read, &size, 0)) || size < sizeof(WAVEFORMATEX))
    {
        throw std::runtime_error("the media type holds no wave format");
    }
    const WAVEFORMATEX format = *read;
    CoTaskMemFree(read);
    return format;
}
