#include "oemadapter/detector/KeywordLibrary.h"
#include "oemadapter/settings/LanguageRecord.h"
#include "oemadapter/windows/ProcessingFailed.h"

// What the library remembers from arming to parsing, and what is to be done where it does not.

namespace velox::oemadapter
{

HRESULT KeywordLibrary::CallBuild(IStream* userModelData, const KeywordSelector* selectors, uint32_t selectorCount,
                                  TaskMemory<uint8_t>* block)
{
    uint8_t* built = nullptr;
    const HRESULT result = library->BuildArmingPatternData(userModelData, selectors, selectorCount, &built);
    TaskMemory<uint8_t> owned(built);
    if (result == S_OK)
    {
        *block = std::move(owned);
        return S_OK;
    }
    // A stream's S_FALSE comes through: there is no block then.
    return result == E_FAIL || SUCCEEDED(result) ? ProcessingFailed : result;
}

HRESULT KeywordLibrary::Build(IStream* userModelData, const KeywordSelector* selectors, uint32_t selectorCount,
                              TaskMemory<uint8_t>* block)
{
    hasArmed = false; // A failed arming may have changed half of what the library remembers.
    if (const HRESULT result = CallBuild(userModelData, selectors, selectorCount, block); FAILED(result))
    {
        return result;
    }
    hasArmed = true;
    *lastArming = {.language = selectors[0].languageId};
    if (const LSTATUS status = WriteLastLanguage(lastArming->language); status != ERROR_SUCCESS)
    {
        logger->LogFormat(VeloxLogLevel::Warning, AdapterLogger::OwnSource,
                          "The language cannot be recorded, error %d: after a restart, only one that is armed again is known.",
                          static_cast<int>(status));
    }
    return S_OK;
}

HRESULT KeywordLibrary::Parse(IStream* userModelData, const DetectionResult* result, Detection* detection)
{
    if (userModelData == nullptr || result == nullptr)
    {
        return E_POINTER;
    }
    if (!hasArmed)
    {
        if (const HRESULT primed = Prime(userModelData); FAILED(primed))
        {
            return primed;
        }
    }
    Detection parsed;
    const HRESULT status = library->ParseDetectionResultData(userModelData, result, &parsed.keywordId, &parsed.languageId,
                                                             &parsed.isUserMatch, &parsed.keywordStart, &parsed.keywordEnd);
    if (status == S_OK)
    {
        *detection = parsed;
    }
    return status == E_FAIL ? ProcessingFailed : status;
}

HRESULT KeywordLibrary::Prime(IStream* userModelData)
{
    const KeywordSelector selector{Keyword, LanguageToPrime()};
    if (selector.languageId == 0)
    {
        logger->Log(
            VeloxLogLevel::Error, AdapterLogger::OwnSource,
            "Nothing was armed yet, there is no record, and not one language alone is configured: the result's language is "
            "not known.");
        return ProcessingFailed;
    }
    logger->LogFormat(VeloxLogLevel::Information, AdapterLogger::OwnSource,
                      "Arming language %u for a result that came without it.", static_cast<unsigned int>(selector.languageId));
    TaskMemory<uint8_t> discarded;
    return FAILED(CallBuild(userModelData, &selector, 1, &discarded)) ? ProcessingFailed : S_OK;
}

uint16_t KeywordLibrary::LanguageToPrime()
{
    if (lastArming->language != 0)
    {
        return lastArming->language;
    }
    if (const std::optional<uint16_t> recorded = ReadLastLanguage())
    {
        return *recorded;
    }
    Capabilities capabilities;
    return SUCCEEDED(GetCapabilities(&capabilities)) && capabilities.languageCount == 1 ? *capabilities.languageIds : uint16_t{0};
}

} // namespace velox::oemadapter
