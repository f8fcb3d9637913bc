#include "library/adapter/EngineRequest.h"
#include "library/adapter/ModelBuffer.h"
#include "library/adapter/SupportedKeyword.h"
#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"
#include "library/modelstream/UserModelStream.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

constexpr SelectorLines KeywordLines{
    .languageCheckFailed = "[ComputeAndAddUserModelData] Failed to check if language is supported.",
    .notSupportedFormat = "[ComputeAndAddUserModelData] Validation error, expected keyword ID: %d, actual keyword ID: %d. "
                          "Language ID: %d.",
};

constexpr EngineRequestLines RequestLines{
    .parametersNotCreated = "[ComputeAndAddUserModelData] Failed to create enrollment parameters instance.",
    .enrollmentParametersFailed = "[ComputeAndAddUserModelData] Failed to get enrollment parameters.",
    .detectionParametersFailed = "[ComputeAndAddUserModelData] Failed to get detection parameters.",
    .constraintsFailed = "[ComputeAndAddUserModelData] Failed to get platform constraints.",
    .logLevelFallbackFormat =
        "[ComputeAndAddUserModelData] Failed to get SDK logger severity level. Continuing with log level: %d",
    .wrapperNotCreated = "[ComputeAndAddUserModelData] Failed to create key-phrase recognition instance.",
};

void LogRecordings(const int32_t* keywordEndBytePositions, uint32_t recordingCount, IVeloxKeywordDetectorLogger* logger)
{
    logger->Log(Detail, Adapter, "[ComputeAndAddUserModelData] Recordings: " + std::to_string(recordingCount));
    for (uint32_t i = 0; i < recordingCount; ++i)
    {
        logger->Log(Detail, Internals,
                    "[Recording " + std::to_string(uint64_t{i} + 1) +
                        "] KeywordBytePos: " + std::to_string(keywordEndBytePositions[i]));
    }
}

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
    if (const HRESULT result = CheckSelector(selector, configurationReader.get(), KeywordLines, logger); FAILED(result))
    {
        return result;
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
    LogRecordings(keywordEndBytePositions, recordingCount, logger);

    EngineRequest request;
    if (FAILED(OpenEngineRequest(configurationReader.get(), logger, selector.languageId, RequestLines, &request)))
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
    if (const HRESULT result = WriteModelToIStream(modelData, model.data, model.size, logger); FAILED(result))
    {
        logger->LogWithStatus(Error, Adapter, "[ComputeAndAddUserModelData] Failed to write model to IStream.", result);
        model.data = nullptr; // Kept: the model buffer is not released on this path.
        return E_FAIL;
    }

    logger->Log(Information, Adapter, "[ComputeAndAddUserModelData] Exit.");
    return S_OK;
}
