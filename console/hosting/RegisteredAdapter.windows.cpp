#include "console/hosting/RegisteredAdapter.h"

#include "console/hosting/UserModelStream.h"
#include "console/text/CommandFailure.h"
#include "console/text/StatusText.h"
#include "oemadapter/windows/ProvisionalResultCodes.h"

#include <objbase.h>

#include <vector>

namespace velox::console
{

namespace
{

/// Voice activation may be in either kind of apartment; without one this thread enters the process's multithreaded one.
oemadapter::ComPointer<IKeywordDetectorOemAdapter> CreateAdapter(const GUID& detectorClass)
{
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    void* made = nullptr;
    if (const HRESULT result =
            CoCreateInstance(detectorClass, nullptr, CLSCTX_INPROC_SERVER, IID_IKeywordDetectorOemAdapter, &made);
        result != S_OK)
    {
        throw CommandFailure(ExitCode::LibraryFailure, "The OEM adapter cannot be created: " + ResultText(result) + ".",
                             "Register it with regsvr32 VeloxOemAdapter.dll as administrator; velox-kws doctor tells what is "
                             "wrong with it.");
    }
    return oemadapter::ComPointer<IKeywordDetectorOemAdapter>(static_cast<IKeywordDetectorOemAdapter*>(made));
}

} // namespace

RegisteredAdapter::RegisteredAdapter(const GUID& detectorClass, IVeloxKeywordDetectorLogger* consoleLogger)
    : logger(consoleLogger), adapter(CreateAdapter(detectorClass))
{
}

HRESULT RegisteredAdapter::Noted(const char* operation, HRESULT result)
{
    if (result != S_OK)
    {
        logger->LogWithStatus(VeloxLogLevel::Error, VeloxLogSource::Adapter,
                              std::string("[") + operation + "] The OEM adapter failed; its own log file tells why.", result);
    }
    return result;
}

HRESULT RegisteredAdapter::GetCapabilities(int32_t* supportsUserModels, uint32_t** keywordIds, uint32_t* keywordCount,
                                           uint16_t** languageIds, uint32_t* languageCount, IMFMediaType** audioFormat)
{
    KEYWORDID* keywords = nullptr;
    ULONG keywordNumber = 0;
    ULONG languageNumber = 0;
    const HRESULT result =
        adapter->GetCapabilities(supportsUserModels, &keywords, &keywordNumber, languageIds, &languageNumber, audioFormat);
    *keywordIds = reinterpret_cast<uint32_t*>(keywords); // of the same size
    *keywordCount = keywordNumber;
    *languageCount = languageNumber;
    return Noted("GetCapabilities", result);
}

HRESULT RegisteredAdapter::VerifyUserKeyword(IStream* modelData, uint32_t keywordId, uint16_t languageId,
                                             int32_t keywordEndBytePos, IMFMediaBuffer* recording)
{
    const oemadapter::ComPointer<IStream> empty = modelData == nullptr ? EmptyStream() : nullptr;
    const HRESULT result = adapter->VerifyUserKeyword(empty ? empty.get() : modelData, static_cast<KEYWORDID>(keywordId),
                                                      languageId, keywordEndBytePos, recording);
    return result == E_NO_MATCH ? E_FAIL : Noted("VerifyUserKeyword", result);
}

HRESULT RegisteredAdapter::ComputeAndAddUserModelData(IStream* modelData, KeywordSelector selector,
                                                      const int32_t* keywordEndBytePositions, IMFMediaBuffer** recordings,
                                                      uint32_t recordingCount)
{
    std::vector<LONG> ends(keywordEndBytePositions, keywordEndBytePositions + recordingCount);
    return Noted("ComputeAndAddUserModelData",
                 adapter->ComputeAndAddUserModelData(modelData, {static_cast<KEYWORDID>(selector.keywordId), selector.languageId},
                                                     ends.data(), recordings, recordingCount));
}

HRESULT RegisteredAdapter::BuildArmingPatternData(IStream* userModelData, const KeywordSelector* keywordSelectors,
                                                  uint32_t numKeywordSelectors, uint8_t** patternData)
{
    KEYWORDSELECTOR selector{static_cast<KEYWORDID>(keywordSelectors->keywordId), keywordSelectors->languageId};
    SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
    const HRESULT result = adapter->BuildArmingPatternData(userModelData, &selector, numKeywordSelectors, &pattern);
    *patternData = reinterpret_cast<uint8_t*>(pattern);
    return Noted("BuildArmingPatternData", result);
}

HRESULT RegisteredAdapter::ParseDetectionResultData(IStream* userModelData, const DetectionResult* result, uint32_t* keywordId,
                                                    uint16_t* languageId, BOOL* isUserMatch, uint64_t* keywordStart,
                                                    uint64_t* keywordEnd)
{
    // The interface is not const-correct: the block is read only.
    auto* block = reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(const_cast<DetectionResult*>(result));
    KEYWORDID keyword = KwInvalid;
    ULONG64 start = 0;
    ULONG64 end = 0;
    const HRESULT parsed =
        adapter->ParseDetectionResultData(userModelData, block, &keyword, languageId, isUserMatch, &start, &end);
    *keywordId = static_cast<uint32_t>(keyword);
    *keywordStart = start;
    *keywordEnd = end;
    return Noted("ParseDetectionResultData", parsed);
}

} // namespace velox::console
