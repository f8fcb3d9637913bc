#include "library/wovwrapper/VeloxWovSDK.h"
#include "library/wovwrapper/VeloxWovWrapper.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

uint32_t VeloxWovWrapper::InitializeSession(uint32_t* session)
{
    logger->Log(Information, Internals, "[InitializeSession] Entry.");

    uint32_t status = EngineStatus::Success;
    const auto succeeded = [&](uint32_t result, const char* failureLine) {
        status = result;
        if (status != EngineStatus::Success)
        {
            logger->LogWithCode(Error, Internals, failureLine, status);
        }
        return status == EngineStatus::Success;
    };

    // The first failure ends the sequence.
    if (succeeded(VWoVSetAttribute(EngineAttribute::FirmwareConstraints, platformConstraints.c_str()),
                  "[InitializeSession] Failed to set attribute - firmware constraints.") &&
        succeeded(VWoVSetAttribute(EngineAttribute::LogLevel, std::to_string(sdkLogLevel).c_str()),
                  "[InitializeSession] Failed to set attribute - log level.") &&
        succeeded(VWoVSetBinAttribute(EngineBinAttribute::AcousticModel, enrollmentParameters->acousticModel),
                  "[InitializeSession] Failed to set attribute - acoustic model.") &&
        succeeded(VWoVSetBinAttribute(EngineBinAttribute::ZnormPopulation, enrollmentParameters->znormPopulation),
                  "[InitializeSession] Failed to set attribute - ZNorm population.") &&
        succeeded(VWoVInitSession(session), "[InitializeSession] Failed to initialize session.") &&
        succeeded(VWoVInit(*session, EngineComponent::Vad), "[InitializeSession] Failed to initialize VAD.") &&
        succeeded(VWoVInit(*session, EngineComponent::Kpd), "[InitializeSession] Failed to initialize KPD."))
    {
        logger->Log(Information, Internals, "[InitializeSession] Exit. Status: " + std::to_string(status));
    }
    return status;
}

void VeloxWovWrapper::CloseSession(const uint32_t* session)
{
    if (*session != 0)
    {
        logger->Log(Information, Internals, "[CloseSession] Entry.");
        VWoVDestroySession(*session);
    }
}
