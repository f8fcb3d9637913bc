#include "library/wovwrapper/VeloxWovWrapper.h"

#include "library/wovwrapper/VeloxWovSDK.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

/// Samples in a frame until the engine reports its own value.
constexpr int32_t DefaultAudioFrameSize = 150;

} // namespace

VeloxWovWrapper::VeloxWovWrapper(EnrollmentParameters* parameters, const VELOX_WOV_DETECTION_PARAMETERS& detection,
                                 IVeloxKeywordDetectorLogger* hostLogger, int32_t logLevel, const std::string& constraints)
    : enrollmentParameters(parameters), detectionParameters(detection), logger(hostLogger), audioFrameSize(DefaultAudioFrameSize),
      platformConstraints(constraints), sdkLogLevel(logLevel)
{
}

HRESULT VeloxWovWrapper::Initialize()
{
    if (const uint32_t status = GetAudioFrameSize(&audioFrameSize); status != EngineStatus::Success)
    {
        logger->LogWithCode(Error, Adapter, "[Initialization] Getting frame audio size failed", status);
        return E_FAIL;
    }
    return S_OK;
}
