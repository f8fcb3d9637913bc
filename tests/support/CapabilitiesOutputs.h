#pragma once

#include "IVeloxKeywordDetectorAdapterImpl.h"

#include <objbase.h>

#include <cstdint>

/// The outputs of GetCapabilities, with values of no meaning at first. Releases what an operation put in their place.
class CapabilitiesOutputs
{
public:
    CapabilitiesOutputs() = default;
    CapabilitiesOutputs(const CapabilitiesOutputs&) = delete;
    CapabilitiesOutputs& operator=(const CapabilitiesOutputs&) = delete;
    ~CapabilitiesOutputs()
    {
        if (keywordIds != &noKeywords)
        {
            CoTaskMemFree(keywordIds);
        }
        if (languageIds != &noLanguages)
        {
            CoTaskMemFree(languageIds);
        }
        if (audioFormat != nullptr)
        {
            audioFormat->Release();
        }
    }

    HRESULT Get(KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl& adapter)
    {
        return adapter.GetCapabilities(&supportsUserModels, &keywordIds, &keywordCount, &languageIds, &languageCount,
                                       &audioFormat);
    }

    bool KeywordIdsWritten() const
    {
        return keywordIds != &noKeywords;
    }
    bool LanguageIdsWritten() const
    {
        return languageIds != &noLanguages;
    }

    static constexpr int32_t Untouched = 4711;

    int32_t supportsUserModels = Untouched;
    uint32_t keywordCount = Untouched;
    uint32_t languageCount = Untouched;
    uint32_t noKeywords = 0;
    uint16_t noLanguages = 0;
    uint32_t* keywordIds = &noKeywords;
    uint16_t* languageIds = &noLanguages;
    IMFMediaType* audioFormat = nullptr;
};
