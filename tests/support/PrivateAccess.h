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

HRESULT CheckIStreamForUserModel(VeloxKeywordDetectorAdapterImpl& adapter, IStream* stream);
HRESULT GetUserModelFromIStream(VeloxKeywordDetectorAdapterImpl& adapter, IStream* stream, uint8_t*& data, uint32_t& size);
HRESULT WriteModelToIStream(VeloxKeywordDetectorAdapterImpl& adapter, const uint8_t* data, uint32_t size, IStream* stream);

bool UserModelArmed(const VeloxKeywordDetectorAdapterImpl& adapter);
uint16_t ArmedLanguageId(const VeloxKeywordDetectorAdapterImpl& adapter);

/// Offsets of logger, configurationReader, userModelArmed, armedLanguageId and detectorId.
std::array<std::size_t, 5> AdapterFieldOffsets(const VeloxKeywordDetectorAdapterImpl& adapter);

int32_t AudioFrameSize(const VeloxWovWrapper& wrapper);

/// Offsets of enrollmentParameters, detectionParameters, logger, audioFrameSize, platformConstraints and sdkLogLevel.
std::array<std::size_t, 6> WrapperFieldOffsets(const VeloxWovWrapper& wrapper);

} // namespace PrivateAccess
