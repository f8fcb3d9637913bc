#include "library/wovwrapper/VeloxWovSDK.h"
#include "library/wovwrapper/VeloxWovWrapper.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

uint32_t VeloxWovWrapper::GetVadQuality(uint32_t session, int64_t* vadQualitySum, int32_t* vadQualityCount)
{
    int32_t flag = 0;
    int32_t quality = 0;
    uint32_t count = 1;
    uint32_t status = VWoVGetIntOutput(session, EngineOutput::VadFlag, &flag, &count);
    if (status != EngineStatus::Success)
    {
        logger->LogWithCode(Warning, Internals, "[GetVadQuality] Failed to get VAD output.", status);
    }
    if (flag != 0)
    {
        return status;
    }

    status = VWoVGetIntOutput(session, EngineOutput::VadQuality, &quality, &count);
    if (status != EngineStatus::Success)
    {
        logger->LogWithCode(Warning, Internals, "[GetVadQuality] Failed to get VAD output.", status);
    }
    // Kept: a failed read counts as a frame of quality 0.
    *vadQualitySum += quality;
    ++*vadQualityCount;
    return status;
}
