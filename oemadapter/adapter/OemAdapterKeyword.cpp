#include "oemadapter/adapter/OemAdapter.h"
#include "oemadapter/adapter/Outputs.h"
#include "oemadapter/detector/AudioFormat.h"

#include <vector>

// The first generation's methods.

namespace velox::oemadapter
{

STDMETHODIMP OemAdapter::GetCapabilities(BOOL* supportsUserModels, KEYWORDID** keywordIds, ULONG* keywordCount,
                                         LANGID** languageIds, ULONG* languageCount, IMFMediaType** audioFormat)
{
    return detector.Call("IKeywordDetectorOemAdapter::GetCapabilities", [&](DetectorContents& inside) {
        if (!Clear(supportsUserModels, keywordIds, keywordCount, languageIds, languageCount, audioFormat))
        {
            return E_POINTER;
        }
        Capabilities capabilities;
        if (const HRESULT result = inside.library->GetCapabilities(&capabilities); FAILED(result))
        {
            return result;
        }
        // The library announces the PCM that it takes from nobody: recordings are float.
        ComPointer<IMFMediaType> floatFormat;
        if (const HRESULT result = MakeFloatFormat(&floatFormat); FAILED(result))
        {
            return result;
        }
        *supportsUserModels = capabilities.supportsUserModels ? TRUE : FALSE;
        *keywordIds = reinterpret_cast<KEYWORDID*>(capabilities.keywordIds.release());
        *keywordCount = capabilities.keywordCount;
        *languageIds = capabilities.languageIds.release();
        *languageCount = capabilities.languageCount;
        *audioFormat = floatFormat.release();
        return S_OK;
    });
}

STDMETHODIMP OemAdapter::VerifyUserKeyword(IStream* modelData, KEYWORDID keywordId, LANGID languageId, LONG keywordEnd,
                                           IMFMediaBuffer* recording)
{
    return detector.Call("IKeywordDetectorOemAdapter::VerifyUserKeyword", [&](DetectorContents& inside) {
        // The library takes a null stream, and any keyword but 0.
        if (modelData == nullptr || keywordId != KwVoiceAssistant)
        {
            return E_INVALIDARG;
        }
        return inside.library->Verify(languageId, keywordEnd, recording);
    });
}

STDMETHODIMP OemAdapter::ComputeAndAddUserModelData(IStream* modelData, KEYWORDSELECTOR selector, LONG* keywordEnds,
                                                    IMFMediaBuffer** recordings, ULONG recordingCount)
{
    return detector.Call("IKeywordDetectorOemAdapter::ComputeAndAddUserModelData", [&](DetectorContents& inside) {
        if (keywordEnds == nullptr || recordings == nullptr || recordingCount == 0)
        {
            return E_INVALIDARG;
        }
        const std::vector<int32_t> ends(keywordEnds, keywordEnds + recordingCount);
        const KeywordSelector wanted{static_cast<uint32_t>(selector.KeywordId), selector.LangId};
        return inside.library->Compute(modelData, wanted, ends.data(), recordings, recordingCount);
    });
}

STDMETHODIMP OemAdapter::BuildArmingPatternData(IStream* userModelData, KEYWORDSELECTOR* selectors, ULONG selectorCount,
                                                SOUNDDETECTOR_PATTERNHEADER** pattern)
{
    return detector.Call("IKeywordDetectorOemAdapter::BuildArmingPatternData", [&](DetectorContents& inside) {
        if (!Clear(pattern))
        {
            return E_POINTER;
        }
        if (selectors == nullptr || selectorCount == 0)
        {
            return E_POINTER;
        }
        const KeywordSelector wanted{static_cast<uint32_t>(selectors->KeywordId), selectors->LangId};
        TaskMemory<uint8_t> block;
        const HRESULT result = inside.library->Build(userModelData, &wanted, selectorCount, &block);
        *pattern = AsPattern(std::move(block));
        return result;
    });
}

STDMETHODIMP OemAdapter::ParseDetectionResultData(IStream* userModelData, SOUNDDETECTOR_PATTERNHEADER* result,
                                                  KEYWORDID* keywordId, LANGID* languageId, BOOL* isUserMatch,
                                                  ULONG64* keywordStart, ULONG64* keywordEnd)
{
    return detector.Call("IKeywordDetectorOemAdapter::ParseDetectionResultData", [&](DetectorContents& inside) {
        if (!Clear(keywordId, languageId, isUserMatch, keywordStart, keywordEnd))
        {
            return E_POINTER;
        }
        Detection detection;
        if (const HRESULT status =
                inside.library->Parse(userModelData, reinterpret_cast<const DetectionResult*>(result), &detection);
            FAILED(status))
        {
            return status;
        }
        *keywordId = detection.keywordId == KeywordLibrary::Keyword ? KwVoiceAssistant : KwInvalid;
        *languageId = detection.languageId;
        *isUserMatch = detection.isUserMatch;
        *keywordStart = detection.keywordStart;
        *keywordEnd = detection.keywordEnd;
        return S_OK;
    });
}

} // namespace velox::oemadapter
