#include "library/wovwrapper/VeloxWovSDK.h"
#include "library/wovwrapper/VeloxWovWrapper.h"

#include <algorithm>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

constexpr float SamplesPerSecond = 16000.0F;

/// One step of the Q8 fixed point.
constexpr float Q8Step = 0.00390625F;

} // namespace

float VeloxWovWrapper::KpdThreshold() const
{
    return static_cast<float>(detectionParameters.preDefinedKpdSensitivity) * Q8Step;
}

uint32_t VeloxWovWrapper::GetScores(uint32_t session, std::vector<float>& scores, bool* keywordDetected, uint64_t* frameCounter,
                                    float* bestScore)
{
    auto count = static_cast<uint32_t>(scores.size());
    uint32_t status = VWoVGetScores(session, scores.data(), &count);
    if (status == EngineStatus::BufferTooSmall)
    {
        scores.resize(count);
        status = VWoVGetScores(session, scores.data(), &count);
    }

    if (status == EngineStatus::Success)
    {
        // An engine may say that it wrote more than there was room for.
        const std::size_t written = std::min<std::size_t>(count, scores.size());
        for (std::size_t i = 0; i < written; ++i)
        {
            const float score = scores[i];
            if (*keywordDetected)
            {
                *keywordDetected = !(KpdThreshold() > score);
            }
            else if (score > KpdThreshold())
            {
                *keywordDetected = true;
                const float time = static_cast<float>(static_cast<uint64_t>(audioFrameSize) * *frameCounter) / SamplesPerSecond;
                logger->LogFormat(Detail, Internals, "[GetScores] Key phrase detected, KPD score(%f), time (%f).",
                                  static_cast<double>(score), static_cast<double>(time));
            }
            *bestScore = std::max(*bestScore, score);
            if (*keywordDetected)
            {
                break;
            }
        }
    }
    ++*frameCounter;
    return status;
}
