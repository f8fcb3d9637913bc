#include "library/adapter/EngineRequest.h"
#include "library/adapter/ModelBuffer.h"
#include "library/adapter/SupportedKeyword.h"
#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

constexpr EngineRequestLines Lines{
    .parametersNotCreated = "[ComputeAndAddUserModelData] Failed to create enrollment parameters instance.",
    .enrollmentParametersFailed = "[ComputeAndAddUserModelData] Failed to get enrollment parameters.",
    .detectionParametersFailed = "[ComputeAndAddUserModelData] Failed to get detection parameters.",
    .constraintsFailed = "[ComputeAndAddUserModelData] Failed to get platform constraints.",
    .logLevelFallbackFormat =
        "[ComputeAndAddUserModelData] Failed to get SDK logger severity level. Continuing with log level: %d",
    .wrapperNotCreated = "[ComputeAndAddUserModelData] Failed to create key-phrase recognition instance.",
};

} // namespace

HRESULT VeloxKeywordDetectorAdapterImpl::ComputeAndAddUserModelData(IStream* modelData, KeywordSelector selector,
                                                                    const int32_t* keywordEndBytePositions,
                                                                    IMFMediaBuffer** recordings, uint32_t recordingCount)
{
    logger->Log(Information, Adapter, "[ComputeAndAddUserModelData] Entry.");

    if (recordings == nullptr || recordingCount == 0)
    {
        logger->Log(Error, Adapter, "[ComputeAndAddUserModelData] No recordings provided for model computation.");
        return E_INVALIDARG;
    }
    bool supported = false;
    if (FAILED(configurationReader->IsLanguageSupported(selector.languageId, &supported)))
    {
        logger->Log(Error, Adapter, "[ComputeAndAddUserModelData] Failed to check if language is supported.");
        return E_FAIL;
    }
    if (selector.keywordId != SupportedKeywordId || !supported)
    {
        // Kept: a language that is not configured is reported with this line too, the two keyword ids then being equal.
        logger->LogFormat(Error, Adapter,
                          "[ComputeAndAddUserModelData] Validation error, expected keyword ID: %d, actual keyword ID: %d. "
                          "Language ID: %d.",
                          static_cast<int>(SupportedKeywordId), static_cast<int>(selector.keywordId),
                          static_cast<int>(selector.languageId));
        return E_INVALIDARG;
    }
    if (modelData == nullptr)
    {
        logger->Log(Error, Adapter, "[ComputeAndAddUserModelData] Pointer to ModelData is null.");
        return E_INVALIDARG;
    }
    if (keywordEndBytePositions == nullptr)
    {
        logger->Log(Error, Adapter, "[ComputeAndAddUserModelData] Pointer to keyword end positions is null.");
        return E_INVALIDARG;
    }

    logger->Log(Detail, Adapter, "[ComputeAndAddUserModelData] Recordings: " + std::to_string(recordingCount));
    for (uint32_t i = 0; i < recordingCount; ++i)
    {
        logger->Log(Detail, Internals,
                    "[Recording " + std::to_string(uint64_t{i} + 1) +
                        "] KeywordBytePos: " + std::to_string(keywordEndBytePositions[i]));
    }

    EngineRequest request;
    if (FAILED(OpenEngineRequest(configurationReader.get(), logger, selector.languageId, Lines, &request)))
    {
        return E_FAIL;
    }

    ModelBuffer model;
    if (const HRESULT result =
            request.wrapper->TrainModel(recordings, recordingCount, keywordEndBytePositions, &model.data, &model.size);
        FAILED(result))
    {
        logger->LogWithStatus(Error, Adapter, "[ComputeAndAddUserModelData] Failed to train model.", result);
        return E_FAIL;
    }
    if (const HRESULT result = WriteModelToIStream(model.data, model.size, modelData); FAILED(result))
    {
        logger->LogWithStatus(Error, Adapter, "[ComputeAndAddUserModelData] Failed to write model to IStream.", result);
        model.data = nullptr; // Kept: the model buffer is not released on this path.
        return E_FAIL;
    }

    logger->Log(Information, Adapter, "[ComputeAndAddUserModelData] Exit.");
    return S_OK;
}
