#pragma once

#include "IVeloxKeywordDetectorAdapterImpl.h"
#include "library/configuration/ConfigurationReader.h"

#include <memory>

/// The adapter object behind the factory. Each operation stands in a file of its name, here or in modelstream/.
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
    HRESULT GetModelToArm(IStream* userModelData, uint16_t languageId, uint8_t** data, uint32_t* size);
    uint32_t ArmedThreshold(const VELOX_WOV_DETECTION_PARAMETERS& parameters) const;

    // The user's model in the caller's stream. These log with source 1.

    /// Zero or positive when the stream begins with "VWOV"; E_FAIL when it does not; E_OUTOFMEMORY; the stream's failure code.
    HRESULT CheckIStreamForUserModel(IStream* stream);

    /// The whole stream in a new block, which the caller releases with delete[], also on failure. Returns the read's own result,
    /// E_FAIL without memory, or the failing seek's code; the caller takes any non-zero result as a failure.
    HRESULT GetUserModelFromIStream(IStream* stream, uint8_t*& data, uint32_t& size);

    /// Makes `data` the stream's whole content and commits it. Returns the code of the failing call; a commit that fails but is
    /// reverted is a success, and so is a write that claims success for fewer bytes. Kept: callers rely on both.
    HRESULT WriteModelToIStream(const uint8_t* data, uint32_t size, IStream* stream);

    IVeloxKeywordDetectorLogger* logger;
    std::unique_ptr<ConfigurationReader> configurationReader;
    bool userModelArmed = false;
    uint16_t armedLanguageId = 0;
    GUID detectorId;
};
