#include "library/wovwrapper/RecordingLock.h"
#include "library/wovwrapper/SampleConversion.h"
#include "library/wovwrapper/VeloxWovSDK.h"
#include "library/wovwrapper/VeloxWovWrapper.h"

#include <algorithm>
#include <limits>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

/// What the scoring of one recording gathers.
struct VeloxWovWrapper::ScoringState
{
    std::vector<float> scores;
    uint64_t frameCounter = 0; ///< calls of GetScores
    float bestScore = std::numeric_limits<float>::lowest();
    int64_t vadQualitySum = 0;
    int32_t vadQualityCount = 0;
};

uint32_t VeloxWovWrapper::FeedRecording(uint32_t session, IMFMediaBuffer* recording, int32_t keywordEndBytePos, bool scoring,
                                        bool* keywordDetected)
{
    logger->Log(Information, Internals, "[FeedRecording] Entry.");

    ScoringState state;
    if (scoring)
    {
        logger->Log(Detail, Internals, "[FeedRecording] Getting Scores size");
        uint32_t count = 0;
        if (const uint32_t status = VWoVGetScores(session, nullptr, &count); status != EngineStatus::Success)
        {
            logger->LogWithCode(Failure, Adapter, "[FeedRecording] Failed to get the scores array size.", status);
            return status;
        }
        state.scores.resize(count);
    }

    RecordingLock lock;
    if (const HRESULT result = lock.Lock(recording); FAILED(result))
    {
        logger->Log(Failure, Adapter, "[FeedRecording] Failed to lock recording. Status = " + std::to_string(result));
        return UnexpectedBehaviour;
    }

    FeedFrames(session, lock.Samples(), lock.SampleCount(), keywordEndBytePos, scoring, &state, keywordDetected);
    FlushEngine(session, scoring, &state, keywordDetected);
    if (scoring && *keywordDetected)
    {
        JudgeQuality(state, keywordDetected);
    }

    if (const HRESULT result = lock.Unlock(); FAILED(result))
    {
        logger->LogWithStatus(Failure, Internals, "[FeedRecording] Failed to unlock recording.", result);
    }
    logger->Log(Information, Internals, "[FeedRecording] Exit.");
    return EngineStatus::Success;
}

/// Feeds the samples until they or the key phrase end, the engine refuses a frame, or the key phrase was found.
void VeloxWovWrapper::FeedFrames(uint32_t session, const uint8_t* samples, uint32_t totalSamples, int32_t keywordEndBytePos,
                                 bool scoring, ScoringState* state, bool* keywordDetected)
{
    logger->Log(Detail, Internals, "[FeedRecording] Starting feeding frames. Samples to feed: " + std::to_string(totalSamples));
    const auto frameSize = static_cast<uint32_t>(audioFrameSize);
    const int32_t keywordEndHalf = keywordEndBytePos / 2;
    std::vector<int16_t> frame(frameSize);

    for (uint32_t start = 0;;)
    {
        const uint32_t filled = std::min(frameSize, totalSamples - start);
        ConvertSamples(samples + std::size_t{start} * sizeof(float), filled, frame.data());
        std::fill(frame.begin() + filled, frame.end(), int16_t{0});

        if (const uint32_t status = VWoVFeedAudioFrame(session, frame.data(), frameSize); status != EngineStatus::Success)
        {
            logger->LogWithCode(Failure, Internals, "[FeedRecording] Failed to feed frames.", status);
            break;
        }
        if (scoring && ScoreFrame(session, state, keywordDetected, EngineStatus::NothingLeft) == EngineStatus::Success &&
            *keywordDetected)
        {
            break;
        }

        // Strictly greater, kept: after an exact multiple of the frame size the engine is fed one more frame, of zeros.
        const uint32_t next = start + frameSize;
        const bool keywordEnded = keywordEndHalf > 0 && 2 * uint64_t{start} >= static_cast<uint64_t>(keywordEndHalf);
        const bool noProgress = frameSize == 0;
        if (next > totalSamples || keywordEnded || noProgress)
        {
            break;
        }
        start = next;
    }
    logger->Log(Detail, Internals, "[FeedRecording] Ended feeding frames");
}

/// Takes scores and quality of the frame that the engine has just processed.
/// @param harmlessStatus  status of GetScores, besides success, that is not logged
/// @return the status of GetVadQuality
uint32_t VeloxWovWrapper::ScoreFrame(uint32_t session, ScoringState* state, bool* keywordDetected, uint32_t harmlessStatus)
{
    const uint32_t scoresStatus = GetScores(session, state->scores, keywordDetected, &state->frameCounter, &state->bestScore);
    if (scoresStatus != EngineStatus::Success && scoresStatus != harmlessStatus)
    {
        logger->LogWithCode(Warning, Internals, "[FeedRecording] Failed to get scores.", scoresStatus);
    }
    const uint32_t vadStatus = GetVadQuality(session, &state->vadQualitySum, &state->vadQualityCount);
    if (vadStatus != EngineStatus::Success)
    {
        logger->LogWithCode(Warning, Internals, "[FeedRecording] Failed to get VAD quality.", vadStatus);
    }
    return vadStatus;
}

/// Lets the engine process what it still holds, until nothing is left or the key phrase was found.
void VeloxWovWrapper::FlushEngine(uint32_t session, bool scoring, ScoringState* state, bool* keywordDetected)
{
    uint32_t status = EngineStatus::Success;
    do
    {
        status = VWoVFlush(session);
        if (scoring && status == EngineStatus::Success)
        {
            status = ScoreFrame(session, state, keywordDetected, EngineStatus::Success);
        }
    } while (status == EngineStatus::Success && !*keywordDetected);

    if (status != EngineStatus::Success && status != EngineStatus::NothingLeft)
    {
        logger->LogWithCode(Warning, Internals, "[FeedRecording] Flush failed.", status);
    }
}

/// Takes a detection back when the recording's mean quality is below the language's threshold.
void VeloxWovWrapper::JudgeQuality(const ScoringState& state, bool* keywordDetected)
{
    logger->LogFormat(Detail, Internals, "[FeedRecording] Best score(%f), predefined KPD float threshold (%f).",
                      static_cast<double>(state.bestScore), static_cast<double>(KpdThreshold()));
    const int64_t quality = state.vadQualityCount > 0 ? state.vadQualitySum / state.vadQualityCount : 0;
    logger->LogFormat(Detail, Internals, "[FeedRecording] Recording quality: %lu.", static_cast<unsigned long>(quality));

    // Both unsigned, kept: a negative threshold makes every recording too poor, a negative quality passes any threshold.
    if (static_cast<uint64_t>(quality) < static_cast<uint32_t>(detectionParameters.qualityThreshold))
    {
        logger->Log(Information, Internals,
                    "[FeedRecording] Recording quality is too low. Returning false as a detection result.");
        *keywordDetected = false;
    }
}
