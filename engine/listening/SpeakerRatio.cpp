#include "engine/listening/SpeakerRatio.h"

#include "engine/sound/Cepstrum.h"

#include <algorithm>

namespace velox::engine
{

Eigen::MatrixXf SpeakerFrames(std::span<const MelFrame> features)
{
    Eigen::MatrixXf frames(CepstralFrameSize, static_cast<Eigen::Index>(features.size()));
    StretchCepstra(features, frames);
    return frames;
}

float SpeakerRatio(const SpeakerModel& speaker, const Eigen::Ref<const Eigen::MatrixXf>& frames, std::span<const int32_t> counts)
{
    float sum = 0.0F;
    Eigen::Index frame = 0;
    for (std::size_t s = 0; s < speaker.user.size(); ++s)
    {
        float stateSum = 0.0F;
        for (const Eigen::Index end = frame + counts[s]; frame < end; ++frame)
        {
            const float ratio =
                speaker.user[s].LogLikelihood(frames.col(frame)) - speaker.generic[s].LogLikelihood(frames.col(frame));
            stateSum += std::clamp(ratio, -MostSpeakerRatio, MostSpeakerRatio);
        }
        sum += stateSum / static_cast<float>(counts[s]);
    }
    return sum / static_cast<float>(speaker.user.size());
}

} // namespace velox::engine
