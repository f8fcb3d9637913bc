// A keyword engine that does nothing: what is measured over it is the library's own work.
#include "library/wovwrapper/VeloxWovSDK.h"

uint32_t VWoVSetAttribute(uint32_t /*attributeId*/, const char* /*value*/)
{
    return EngineStatus::Success;
}

uint32_t VWoVSetBinAttribute(uint32_t /*attributeId*/, const uint8_t* /*blob*/)
{
    return EngineStatus::Success;
}

uint32_t VWoVInitSession(uint32_t* session)
{
    *session = 1;
    return EngineStatus::Success;
}

uint32_t VWoVInit(uint32_t /*session*/, uint32_t /*component*/)
{
    return EngineStatus::Success;
}

uint32_t VWoVSetModel(uint32_t /*session*/, const uint8_t* /*keyphraseModel*/)
{
    return EngineStatus::Success;
}

uint32_t VWoVStartEnrollment(uint32_t /*session*/)
{
    return EngineStatus::Success;
}

uint32_t VWoVStartEnrollmentUtterance(uint32_t /*session*/, uint32_t /*reserved*/)
{
    return EngineStatus::Success;
}

uint32_t VWoVFeedAudioFrame(uint32_t /*session*/, const int16_t* /*samples*/, uint32_t /*sampleCount*/)
{
    return EngineStatus::Success;
}

uint32_t VWoVFinalizeEnrollmentUtterance(uint32_t /*session*/)
{
    return EngineStatus::Success;
}

uint32_t VWoVFinalizeEnrollment(uint32_t /*session*/, uint8_t** /*phraseModel*/)
{
    return EngineStatus::Success;
}

uint32_t VWoVGetScores(uint32_t /*session*/, float* scores, uint32_t* count)
{
    *count = 1;
    if (scores != nullptr)
    {
        *scores = -1000.0F;
    }
    return EngineStatus::Success;
}

uint32_t VWoVGetIntOutput(uint32_t /*session*/, uint32_t outputId, int32_t* values, uint32_t* count)
{
    constexpr int32_t FrameSize = 150;
    *count = 1;
    if (values != nullptr)
    {
        *values = outputId == EngineOutput::FrameSize ? FrameSize : 0;
    }
    return EngineStatus::Success;
}

uint32_t VWoVFlush(uint32_t /*session*/)
{
    return EngineStatus::NothingLeft;
}

uint32_t VWoVPrepareLpeData(uint32_t /*session*/, uint8_t* /*buffer*/, uint32_t* size)
{
    *size = 0;
    return EngineStatus::Success;
}

uint32_t VWoVDestroySession(uint32_t /*session*/)
{
    return EngineStatus::Success;
}
