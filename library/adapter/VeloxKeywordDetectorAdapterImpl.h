#pragma once

#include "IVeloxKeywordDetectorAdapterImpl.h"
#include "library/adapter/ModelBuffer.h"
#include "library/configuration/ConfigurationReader.h"

#include <memory>

/// The adapter object behind the factory. Each operation stands in a file of its name.
///
/// Between operations it keeps only what it armed last; callers rely on the members' order.
class VeloxKeywordDetectorAdapterImpl : public KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl
{
public:
    VeloxKeywordDetectorAdapterImpl(IVeloxKeywordDetectorLogger* logger, const std::string& configurationFilePath,
                                    const std::string& version, GUID detectorId);
    VeloxKeywordDetectorAdapterImpl(const VeloxKeywordDetectorAdapterImpl&) = delete;
    VeloxKeywordDetectorAdapterImpl& operator=(const VeloxKeywordDetectorAdapterImpl&) = delete;
    ~VeloxKeywordDetectorAdapterImpl() override;

    HRESULT GetCapabilities(int32_t* supportsUserModels, uint32_t** keywordIds, uint32_t* keywordCount, uint16_t** languageIds,
                            uint32_t* languageCount, IMFMediaType** audioFormat) override;
    HRESULT VerifyUserKeyword(IStream* modelData, uint32_t keywordId, uint16_t languageId, int32_t keywordEndBytePos,
                              IMFMediaBuffer* recording) override;
    HRESULT ComputeAndAddUserModelData(IStream* modelData, KeywordSelector selector, const int32_t* keywordEndBytePositions,
                                       IMFMediaBuffer** recordings, uint32_t recordingCount) override;
    HRESULT BuildArmingPatternData(IStream* userModelData, const KeywordSelector* keywordSelectors, uint32_t numKeywordSelectors,
                                   uint8_t** patternData) override;
    HRESULT ParseDetectionResultData(IStream* userModelData, const DetectionResult* result, uint32_t* keywordId,
                                     uint16_t* languageId, BOOL* isUserMatch, uint64_t* keywordStart,
                                     uint64_t* keywordEnd) override;

private:
    /// Takes the user's model from the stream, or else the language's predefined one, and records which of them it was.
    HRESULT GetModelToArm(IStream* userModelData, uint16_t languageId, ModelBuffer* model);

    /// Makes the block for the DSP in task memory; `*patternData` is written only on success.
    HRESULT WritePattern(const ModelBuffer& model, const VELOX_WOV_DETECTION_PARAMETERS& parameters, uint8_t** patternData);

    /// The threshold that counts for the model that was armed last.
    uint32_t ArmedThreshold(const VELOX_WOV_DETECTION_PARAMETERS& parameters) const;

    IVeloxKeywordDetectorLogger* logger;
    std::unique_ptr<ConfigurationReader> configurationReader;
    bool userModelArmed = false;
    uint16_t armedLanguageId = 0;
    GUID detectorId;
};
