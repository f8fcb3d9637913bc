#include "oemadapter/detector/AudioFormat.h"

#include <mfapi.h>

namespace velox::oemadapter
{

namespace
{

constexpr WORD BlockAlign = Channels * sizeof(float);

constexpr WAVEFORMATEX FloatFormat{
    .wFormatTag = WAVE_FORMAT_IEEE_FLOAT,
    .nChannels = Channels,
    .nSamplesPerSec = SamplesPerSecond,
    .nAvgBytesPerSec = SamplesPerSecond * BlockAlign,
    .nBlockAlign = BlockAlign,
    .wBitsPerSample = 8 * sizeof(float),
    .cbSize = 0,
};

} // namespace

HRESULT MakeFloatFormat(ComPointer<IMFMediaType>* mediaType)
{
    IMFMediaType* made = nullptr;
    if (const HRESULT result = MFCreateMediaType(&made); FAILED(result))
    {
        return result;
    }
    ComPointer<IMFMediaType> owned(made);
    if (const HRESULT result = MFInitMediaTypeFromWaveFormatEx(made, &FloatFormat, sizeof(FloatFormat)); FAILED(result))
    {
        return result;
    }
    *mediaType = std::move(owned);
    return S_OK;
}

} // namespace velox::oemadapter
