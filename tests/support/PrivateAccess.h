#pragma once

#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"
#include "library/wovwrapper/VeloxWovWrapper.h"

#include <array>
#include <cstddef>

// Private operations and fields, for tests that have no way to them through the public interface. The product knows nothing of
// it.
namespace PrivateAccess
{

HRESULT LoadFile(ConfigurationReader& reader, const std::string& directory, const std::string& fileName, uint8_t** data,
                 uint32_t* size);
HRESULT ReadThresholdFile(ConfigurationReader& reader, const std::string& directory, const std::string& fileName, int32_t* value);

bool UserModelArmed(const VeloxKeywordDetectorAdapterImpl& adapter);
uint16_t ArmedLanguageId(const VeloxKeywordDetectorAdapterImpl& adapter);

/// Offsets of logger, configurationReader, userModelArmed, armedLanguageId and detectorId.
std::array<std::size_t, 5> AdapterFieldOffsets(const VeloxKeywordDetectorAdapterImpl& adapter);

int32_t AudioFrameSize(const VeloxWovWrapper& wrapper);

/// Offsets of enrollmentParameters, detectionParameters, logger, audioFrameSize, platformConstraints and sdkLogLevel.
std::array<std::size_t, 6> WrapperFieldOffsets(const VeloxWovWrapper& wrapper);

} // namespace PrivateAccess

/// A wrapper whose private operations tests may call.
class OpenWovWrapper : public VeloxWovWrapper
{
public:
    using VeloxWovWrapper::VeloxWovWrapper;

    uint32_t GetAudioFrameSize(int32_t* frameSize);
    uint32_t InitializeSession(uint32_t* session);
    void CloseSession(const uint32_t* session);
    uint32_t FeedRecording(uint32_t session, IMFMediaBuffer* recording, int32_t keywordEndBytePos, bool scoring,
                           bool* keywordDetected);
    uint32_t GetScores(uint32_t session, std::vector<float>& scores, bool* keywordDetected, uint64_t* frameCounter,
                       float* bestScore);
    uint32_t GetVadQuality(uint32_t session, int64_t* vadQualitySum, int32_t* vadQualityCount);
    uint32_t FeedRecordingsForEnrollment(const uint32_t* session, IMFMediaBuffer** recordings, uint32_t recordingsCount,
                                         const int32_t* keywordEndBytePositions);
};
