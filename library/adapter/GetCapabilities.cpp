#include "library/adapter/SupportedKeyword.h"
#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"

#include <mfapi.h>

#include <algorithm>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

constexpr WORD Channels = 1;
constexpr DWORD SamplesPerSecond = 16000;
constexpr WORD BitsPerSample = 16;
constexpr WORD BytesPerFrame = Channels * BitsPerSample / 8;

constexpr WAVEFORMATEX AudioFormat{
    .wFormatTag = WAVE_FORMAT_PCM,
    .nChannels = Channels,
    .nSamplesPerSec = SamplesPerSecond,
    .nAvgBytesPerSec = SamplesPerSecond * BytesPerFrame,
    .nBlockAlign = BytesPerFrame,
    .wBitsPerSample = BitsPerSample,
    .cbSize = 0,
};

static_assert(sizeof(AudioFormat) == 18);

struct MediaTypeRelease
{
    void operator()(IMFMediaType* mediaType) const
    {
        mediaType->Release();
    }
};

/// Creates the announced audio format; `audioFormat` is written only on success.
HRESULT CreateAudioFormat(IMFMediaType** audioFormat)
{
    IMFMediaType* created = nullptr;
    if (const HRESULT result = MFCreateMediaType(&created); FAILED(result))
    {
        return result;
    }
    const std::unique_ptr<IMFMediaType, MediaTypeRelease> mediaType(created);
    if (const HRESULT result = MFInitMediaTypeFromWaveFormatEx(mediaType.get(), &AudioFormat, sizeof(AudioFormat));
        FAILED(result))
    {
        return result;
    }
    mediaType->AddRef();
    *audioFormat = mediaType.get();
    return S_OK;
}

} // namespace

HRESULT VeloxKeywordDetectorAdapterImpl::GetCapabilities(int32_t* supportsUserModels, uint32_t** keywordIds,
                                                         uint32_t* keywordCount, uint16_t** languageIds, uint32_t* languageCount,
                                                         IMFMediaType** audioFormat)
{
    logger->Log(Information, Adapter, "[GetCapabilities] Entry.");

    if (supportsUserModels == nullptr || keywordIds == nullptr || keywordCount == nullptr || languageIds == nullptr ||
        languageCount == nullptr || audioFormat == nullptr)
    {
        logger->Log(Error, Adapter, "[GetCapabilities] Validation error, one or more of the output parameters is null.");
        return E_POINTER;
    }

    *keywordIds = static_cast<uint32_t*>(CoTaskMemAlloc(sizeof(uint32_t)));
    if (*keywordIds == nullptr)
    {
        logger->Log(Error, Adapter, "[GetCapabilities] Failed to allocate buffer for keyword IDs.");
        return E_OUTOFMEMORY;
    }
    **keywordIds = SupportedKeywordId;
    *keywordCount = 1;

    // Kept: of the failures below only the next allocation's frees anything; callers rely on what stays with them.
    uint32_t count = 0;
    if (const HRESULT result = configurationReader->GetLanguagesCount(&count); FAILED(result))
    {
        logger->Log(Error, Adapter, "[GetCapabilities] Failed to get languages count from configuration file.");
        return result;
    }
    logger->LogFormat(Information, Adapter, "[GetCapabilities] Languages supported: %lu.", static_cast<unsigned long>(count));

    *languageIds = static_cast<uint16_t*>(CoTaskMemAlloc(count * sizeof(uint16_t)));
    if (*languageIds == nullptr)
    {
        logger->Log(Error, Adapter, "[GetCapabilities] Failed to allocate buffer for language IDs.");
        CoTaskMemFree(*keywordIds);
        return E_OUTOFMEMORY;
    }
    *languageCount = count;

    // The file is read anew: languages that it lost since they were counted read as zeros, those that it gained are left out.
    std::fill_n(*languageIds, count, uint16_t{0});
    if (const HRESULT result = configurationReader->GetLanguagesIds(languageIds, count); FAILED(result))
    {
        logger->Log(Error, Adapter, "[GetCapabilities] Failed to get languages IDs from configuration file.");
        return result;
    }

    // Kept: a media type that cannot be made gives its failure code, and the log still says success.
    const HRESULT result = CreateAudioFormat(audioFormat);
    *supportsUserModels = 1;
    logger->Log(Information, Adapter, "[GetCapabilities] Exit, success.");
    return result;
}
