#include "oemadapter/detector/PcmRecording.h"

#include "oemadapter/detector/AudioFormat.h"
#include "oemadapter/windows/ProcessingFailed.h"

#include <mfapi.h>

#include <cstring>
#include <limits>

namespace velox::oemadapter
{

namespace
{

/// Windows fills the structure up to nothing: the samples begin here.
static_assert(sizeof(WAVEFORMATEX) == 18);

bool IsExpectedFormat(const WAVEFORMATEX& format)
{
    return format.wFormatTag == WAVE_FORMAT_PCM && format.nChannels == Channels && format.nSamplesPerSec == SamplesPerSecond &&
           format.wBitsPerSample == 8 * sizeof(int16_t) && format.cbSize % sizeof(int16_t) == 0;
}

/// @param samples, target  of any alignment
void ConvertSamples(const BYTE* samples, std::size_t count, BYTE* target)
{
    constexpr float FullScale = 32768.0F;
    for (std::size_t i = 0; i < count; ++i)
    {
        int16_t sample = 0;
        std::memcpy(&sample, samples + i * sizeof(sample), sizeof(sample));
        const float converted = static_cast<float>(sample) / FullScale;
        std::memcpy(target + i * sizeof(converted), &converted, sizeof(converted));
    }
}

/// A failure of the buffer that is made here is no fault of the caller's arguments.
HRESULT OwnFailure(HRESULT result)
{
    return result == E_OUTOFMEMORY ? E_OUTOFMEMORY : ProcessingFailed;
}

} // namespace

HRESULT MakeRecording(const WAVEFORMATEX* pcm, ComPointer<IMFMediaBuffer>* recording)
{
    if (pcm == nullptr || !IsExpectedFormat(*pcm))
    {
        return E_INVALIDARG;
    }
    const std::size_t count = pcm->cbSize / sizeof(int16_t);
    const auto size = static_cast<DWORD>(count * sizeof(float));

    IMFMediaBuffer* made = nullptr;
    if (const HRESULT result = MFCreateMemoryBuffer(size, &made); FAILED(result))
    {
        return OwnFailure(result);
    }
    ComPointer<IMFMediaBuffer> owned(made);
    BYTE* target = nullptr;
    if (const HRESULT result = owned->Lock(&target, nullptr, nullptr); FAILED(result))
    {
        return OwnFailure(result);
    }
    ConvertSamples(reinterpret_cast<const BYTE*>(pcm) + sizeof(WAVEFORMATEX), count, target);
    if (const HRESULT result = owned->Unlock(); FAILED(result))
    {
        return OwnFailure(result);
    }
    if (const HRESULT result = owned->SetCurrentLength(size); FAILED(result))
    {
        return OwnFailure(result);
    }
    *recording = std::move(owned);
    return S_OK;
}

int32_t FloatPosition(int32_t pcmPosition)
{
    constexpr int32_t Most = std::numeric_limits<int32_t>::max();
    return pcmPosition <= 1 ? pcmPosition : pcmPosition > Most / 2 ? Most : 2 * pcmPosition;
}

} // namespace velox::oemadapter
