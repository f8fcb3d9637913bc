#include "library/adapter/SupportedKeyword.h"
#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"

#include <cstring>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

/// Whether the block is a whole one of this detector. The size comes first: a block that says that it is shorter is not read
/// beyond its size. Kept: a foreign GUID is reported with the size line too.
HRESULT CheckBlock(const DetectionResult& block, const GUID& detectorId, IVeloxKeywordDetectorLogger* logger)
{
    if (block.Size < DetectionResultMinSize || std::memcmp(&block.PatternType, &detectorId, sizeof(GUID)) != 0)
    {
        logger->LogFormat(Error, Adapter,
                          "[ParseDetectionResultData] Validation error, expected result data size: %d, actual size : %lu.",
                          static_cast<int>(DetectionResultMinSize), static_cast<unsigned long>(block.Size));
        return E_INVALIDARG;
    }
    return S_OK;
}

/// @return the supported keyword's id, or 0 when the firmware reported another one
uint32_t KeywordIdOf(unsigned int keywordIdFw, IVeloxKeywordDetectorLogger* logger)
{
    if (keywordIdFw == SupportedKeywordId)
    {
        return SupportedKeywordId;
    }
    logger->LogFormat(Warning, Adapter, "[ParseDetectionResultData] Invalid KeywordId: %u.", keywordIdFw);
    return 0;
}

} // namespace

HRESULT VeloxKeywordDetectorAdapterImpl::ParseDetectionResultData(IStream* userModelData, const DetectionResult* result,
                                                                  uint32_t* keywordId, uint16_t* languageId, BOOL* isUserMatch,
                                                                  uint64_t* keywordStart, uint64_t* keywordEnd)
{
    logger->Log(Information, Adapter, "[ParseDetectionResultData] Entry.");

    if (keywordId == nullptr || languageId == nullptr || isUserMatch == nullptr || keywordStart == nullptr ||
        keywordEnd == nullptr)
    {
        logger->Log(Error, Adapter, "[ParseDetectionResultData] Validation error, one or more of the output parameters is null.");
        return E_POINTER;
    }
    logger->LogFormat(Information, Adapter, "[ParseDetectionResultData] Language Id: %d.", static_cast<int>(armedLanguageId));
    if (userModelData == nullptr || result == nullptr)
    {
        logger->Log(Error, Adapter, "[ParseDetectionResultData] Validation error, one or more of the input parameters is null.");
        return E_POINTER;
    }
    if (const HRESULT status = CheckBlock(*result, detectorId, logger); FAILED(status))
    {
        return status;
    }

    const unsigned int keywordIdFw = result->KeywordIdFw;
    const unsigned int score = result->KpdScore[0] * 256U + result->KpdScore[1];

    VELOX_WOV_DETECTION_PARAMETERS parameters{};
    if (const HRESULT status = configurationReader->GetDetectionParameters(armedLanguageId, &parameters); FAILED(status))
    {
        logger->LogWithStatus(Error, Adapter, "[ParseDetectionResultData] Failed to get detection parameters.", status);
        return E_FAIL;
    }
    // The firmware has already decided: score and threshold are only shown.
    logger->LogFormat(Detail, Adapter, "[ParseDetectionResultData] KeywordIdFw (%u), KPD score (%u), KPD threshold (%u).",
                      keywordIdFw, score, static_cast<unsigned int>(ArmedThreshold(parameters)));

    *languageId = armedLanguageId;
    *keywordId = KeywordIdOf(keywordIdFw, logger);
    *isUserMatch = userModelArmed ? TRUE : FALSE;
    logger->Log(Information, Adapter,
                userModelArmed ? "[ParseDetectionResultData] User matched for the user model."
                               : "[ParseDetectionResultData] User matched for the user independent model.");

    *keywordStart = result->KeywordStart;
    *keywordEnd = result->KeywordEnd;
    logger->LogFormat(Detail, Adapter, "[ParseDetectionResultData] Keyword start (%llu), keyword end (%llu).",
                      static_cast<unsigned long long>(*keywordStart), static_cast<unsigned long long>(*keywordEnd));
    logger->Log(Information, Adapter, "[ParseDetectionResultData] Exit, success.");
    return S_OK;
}
