#include "library/adapter/EngineRequest.h"
#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

constexpr EngineRequestLines Lines{
    .parametersNotCreated = "[VerifyUserKeyword] Failed to create enrollment parameters.",
    .enrollmentParametersFailed = "[VerifyUserKeyword] Failed to get enrollment parameters.",
    .detectionParametersFailed = "[VerifyUserKeyword] Failed to get detection parameters.",
    .constraintsFailed = "[VerifyUserKeyword] Failed to get platform constraints.",
    .logLevelFallbackFormat = "[VerifyUserKeyword] Failed to get SDK logger severity level. Continuing with log level: %d",
    .wrapperNotCreated = "[VerifyUserKeyword] Failed to create key-phrase recognition instance.",
};

} // namespace

HRESULT VeloxKeywordDetectorAdapterImpl::VerifyUserKeyword(IStream* /*modelData*/, uint32_t keywordId, uint16_t languageId,
                                                           int32_t keywordEndBytePos, IMFMediaBuffer* recording)
{
    logger->Log(Information, Adapter, "[VerifyUserKeyword] Entry.");
    logger->LogFormat(Detail, Adapter, "[VerifyUserKeyword] KeywordId: %d, LangId: %u, KeywordBytePos: %ld.",
                      static_cast<int>(keywordId), static_cast<unsigned int>(languageId), static_cast<long>(keywordEndBytePos));

    bool supported = false;
    if (FAILED(configurationReader->IsLanguageSupported(languageId, &supported)))
    {
        logger->Log(Error, Adapter, "[VerifyUserKeyword] Failed to check if language is supported.");
        return E_FAIL;
    }
    // Any keyword but 0 is verified, kept: only training and arming insist on the supported one.
    if (keywordId == 0 || !supported || recording == nullptr)
    {
        logger->Log(Error, Adapter, "[VerifyUserKeyword] Validation error, one or more of the input parameters is invalid.");
        return E_INVALIDARG;
    }

    EngineRequest request;
    if (FAILED(OpenEngineRequest(configurationReader.get(), logger, languageId, Lines, &request)))
    {
        return E_FAIL;
    }

    bool detected = false;
    if (const HRESULT result = request.wrapper->VerifyKeyword(recording, keywordEndBytePos, &detected); FAILED(result))
    {
        logger->LogWithStatus(Error, Adapter, "[VerifyUserKeyword] Failed to verify keyword.", result);
        return E_FAIL;
    }
    logger->LogFormat(Information, Adapter, "[VerifyUserKeyword] Exit. Key-phrase detected: %s.", detected ? "TRUE" : "FALSE");
    return detected ? S_OK : E_FAIL;
}
