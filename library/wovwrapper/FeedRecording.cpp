#include "library/wovwrapper/RecordingLock.h"
#include "library/wovwrapper/SampleConversion.h"
#include "library/wovwrapper/VeloxWovSDK.h"
#include "library/wovwrapper/VeloxWovWrapper.h"

#include <algorithm>
#include <limits>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

/// One recording on its way through an engine session, with what its scoring gathers.
struct VeloxWovWrapper::Feeding
{
    uint32_t session;
    bool scoring;
    bool* keywordDetected;
    std::vector<float> scores{};
    uint64_t frameCounter = 0; ///< calls of GetScores
    float bestScore = std::numeric_limits<float>::lowest();
    int64_t vadQualitySum = 0;
    int32_t vadQualityCount = 0;
};

uint32_t VeloxWovWrapper::FeedRecording(uint32_t session, IMFMediaBuffer* recording, int32_t keywordEndBytePos, bool scoring,
                                        bool* keywordDetected)
{
    logger->Log(Information, Internals, "[FeedRecording] Entry.");

    Feeding feeding{.session = session, .scoring = scoring, .keywordDetected = keywordDetected};
    if (scoring)
    {
        if (const uint32_t status = MakeRoomForScores(&feeding); status != EngineStatus::Success)
        {
            return status;
        }
    }

    RecordingLock lock;
    if (const HRESULT result = lock.Lock(recording); FAILED(result))
    {
        logger->Log(Failure, Adapter, "[FeedRecording] Failed to lock recording. Status = " + std::to_string(result));
        return UnexpectedBehaviour;
    }

    FeedFrames(&feeding, lock.Samples(), lock.SampleCount(), keywordEndBytePos);
    FlushEngine(&feeding);
    if (scoring && *keywordDetected)
    {
        JudgeQuality(feeding);
    }

    if (const HRESULT result = lock.Unlock(); FAILED(result))
    {
        logger->LogWithStatus(Failure, Internals, "[FeedRecording] Failed to unlock recording.", result);
    }
    logger->Log(Information, Internals, "[FeedRecording] Exit.");
    return EngineStatus::Success;
}

uint32_t VeloxWovWrapper::MakeRoomForScores(Feeding* feeding)
{
    logger->Log(Detail, Internals, "[FeedRecording] Getting Scores size");
    uint32_t count = 0;
    const uint32_t status = VWoVGetScores(feeding->session, nullptr, &count);
    if (status != EngineStatus::Success)
    {
        logger->LogWithCode(Failure, Adapter, "[FeedRecording] Failed to get the scores array size.", status);
        return status;
    }
    feeding->scores.resize(count);
    return status;
}

void VeloxWovWrapper::FeedFrames(Feeding* feeding, const uint8_t* samples, uint32_t totalSamples, int32_t keywordEndBytePos)
{
    logger->Log(Detail, Internals, "[FeedRecording] Starting feeding frames. Samples to feed: " + std::to_string(totalSamples));
    const auto frameSize = static_cast<uint32_t>(audioFrameSize);
    const int32_t keywordEndHalf = keywordEndBytePos / 2;
    std::vector<int16_t> frame(frameSize);

    uint32_t start = 0;
    for (uint64_t fed = 1;; ++fed)
    {
        const uint32_t filled = std::min(frameSize, totalSamples - start);
        ConvertSamples(samples + std::size_t{start} * sizeof(float), filled, frame.data());
        std::fill(frame.begin() + filled, frame.end(), int16_t{0});

        if (const uint32_t status = VWoVFeedAudioFrame(feeding->session, frame.data(), frameSize);
            status != EngineStatus::Success)
        {
            logger->LogWithCode(Failure, Internals, "[FeedRecording] Failed to feed frames.", status);
            break;
        }
        if (feeding->scoring && ScoreFrame(feeding, EngineStatus::NothingLeft) == EngineStatus::Success &&
            *feeding->keywordDetected)
        {
            break;
        }

        // Strictly greater, kept: after an exact multiple of the frame size the engine is fed one more frame, of zeros.
        const uint32_t next = start + frameSize;
        const bool keywordEnded = keywordEndHalf > 0 && 2 * uint64_t{start} >= static_cast<uint64_t>(keywordEndHalf);
        // Frames of one sample need one frame more than there are samples; only frames of none would go on for ever.
        if (next > totalSamples || keywordEnded || fed > totalSamples)
        {
            break;
        }
        start = next;
    }
    logger->Log(Detail, Internals, "[FeedRecording] Ended feeding frames");
}

uint32_t VeloxWovWrapper::ScoreFrame(Feeding* feeding, uint32_t harmlessStatus)
{
    const uint32_t scoresStatus =
        GetScores(feeding->session, feeding->scores, feeding->keywordDetected, &feeding->frameCounter, &feeding->bestScore);
    if (scoresStatus != EngineStatus::Success && scoresStatus != harmlessStatus)
    {
        logger->LogWithCode(Warning, Internals, "[FeedRecording] Failed to get scores.", scoresStatus);
    }
    const uint32_t vadStatus = GetVadQuality(feeding->session, &feeding->vadQualitySum, &feeding->vadQualityCount);
    if (vadStatus != EngineStatus::Success)
    {
        logger->LogWithCode(Warning, Internals, "[FeedRecording] Failed to get VAD quality.", vadStatus);
    }
    return vadStatus;
}

void VeloxWovWrapper::FlushEngine(Feeding* feeding)
{
    uint32_t status = EngineStatus::Success;
    do
    {
        status = VWoVFlush(feeding->session);
        if (feeding->scoring && status == EngineStatus::Success)
        {
            status = ScoreFrame(feeding, EngineStatus::Success);
        }
    } while (status == EngineStatus::Success && !*feeding->keywordDetected);

    if (status != EngineStatus::Success && status != EngineStatus::NothingLeft)
    {
        logger->LogWithCode(Warning, Internals, "[FeedRecording] Flush failed.", status);
    }
}

void VeloxWovWrapper::JudgeQuality(const Feeding& feeding)
{
    logger->LogFormat(Detail, Internals, "[FeedRecording] Best score(%f), predefined KPD float threshold (%f).",
                      static_cast<double>(feeding.bestScore), static_cast<double>(KpdThreshold()));
    const int64_t quality = feeding.vadQualityCount > 0 ? feeding.vadQualitySum / feeding.vadQualityCount : 0;
    logger->LogFormat(Detail, Internals, "[FeedRecording] Recording quality: %lu.", static_cast<unsigned long>(quality));

    // Both unsigned, kept: a negative threshold makes every recording too poor, a negative quality passes any threshold.
    if (static_cast<uint64_t>(quality) < static_cast<uint32_t>(detectionParameters.qualityThreshold))
    {
        logger->Log(Information, Internals,
                    "[FeedRecording] Recording quality is too low. Returning false as a detection result.");
        *feeding.keywordDetected = false;
    }
}
