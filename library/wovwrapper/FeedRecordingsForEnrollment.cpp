#include "library/wovwrapper/VeloxWovSDK.h"
#include "library/wovwrapper/VeloxWovWrapper.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

uint32_t VeloxWovWrapper::FeedRecordingsForEnrollment(const uint32_t* session, IMFMediaBuffer** recordings,
                                                      uint32_t recordingsCount, const int32_t* keywordEndBytePositions)
{
    logger->Log(Information, Internals, "[FeedRecordingsForEnrollment] Entry.");

    uint32_t status = EngineStatus::Success;
    for (uint32_t i = 0; i < recordingsCount; ++i)
    {
        const std::string recordingLine = "[FeedRecordingsForEnrollment] Recording " + std::to_string(uint64_t{i} + 1);
        logger->Log(Detail, Internals, recordingLine);

        status = VWoVStartEnrollmentUtterance(*session, 0);
        if (status != EngineStatus::Success)
        {
            logger->LogWithCode(Error, Internals, "[FeedRecordingsForEnrollment] Failed to start utterance enrollment.", status);
            return status;
        }

        bool detected = false;
        status = FeedRecording(*session, recordings[i], keywordEndBytePositions[i], false, &detected);
        if (status != EngineStatus::Success)
        {
            logger->LogWithCode(Failure, Internals, "[FeedRecordingsForEnrollment] Failed to feed recording.", status);
            break;
        }

        // Kept: not fatal. The status counts only when this was the last recording.
        status = VWoVFinalizeEnrollmentUtterance(*session);
        if (status != EngineStatus::Success)
        {
            logger->LogWithCode(Failure, Internals, "VWoVFinalizeEnrollmentUtterance failed!", status);
            continue;
        }
        logger->Log(Detail, Internals, recordingLine + " was sent");
    }

    logger->Log(Information, Internals, "[FeedRecordingsForEnrollment] Exit.");
    return status;
}
