#include "library/wovwrapper/VeloxWovWrapper.h"

#include "library/wovwrapper/SessionGuard.h"

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

uint32_t VeloxWovWrapper::GetAudioFrameSize(int32_t* frameSize)
{
    uint32_t probe = 0;
    if (const uint32_t status = VWoVInitSession(&probe); status != EngineStatus::Success)
    {
        // The other operation's name is kept: field logs rely on this wording.
        logger->LogWithCode(Error, Internals, "[InitializeSession] Failed to initialize session.", status);
        return status;
    }
    SessionGuard guard(probe);

    uint32_t count = 0;
    int32_t value = 0;
    uint32_t status = VWoVGetIntOutput(probe, EngineOutput::FrameSize, nullptr, &count);
    const bool oneValue = count == 1;
    if (status == EngineStatus::Success && oneValue)
    {
        status = VWoVGetIntOutput(probe, EngineOutput::FrameSize, &value, &count);
    }

    if (status != EngineStatus::Success)
    {
        logger->LogWithCode(Failure, Internals, "[GetAudioFrameSize] Failed to get size of audio frame.", status);
    }
    else if (!oneValue)
    {
        logger->Log(Failure, Internals, "[GetAudioFrameSize] Unexpected behavior of SDK API.");
        status = UnexpectedBehaviour;
    }
    else if (value < 0)
    {
        logger->Log(Failure, Internals, "[GetAudioFrameSize] Audio frame size is negative value.");
        status = UnexpectedBehaviour;
    }
    else
    {
        *frameSize = value;
    }

    guard.Dismiss();
    VWoVDestroySession(probe);
    return status;
}
