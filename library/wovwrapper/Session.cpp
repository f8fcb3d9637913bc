#include "library/wovwrapper/SessionGuard.h"
#include "library/wovwrapper/VeloxWovWrapper.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

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

    guard.Destroy();
    return status;
}

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
