#include "engine/training/SpeakerTraining.h"

#include "engine/enrollment/SpeakerAdaptation.h"
#include "engine/listening/SpeakerRatio.h"
#include "engine/sound/Cepstrum.h"

namespace velox::engine
{

namespace
{

constexpr Eigen::Index Components = 10;
/// What a frame of a noisy copy counts beside one of a clean take.
constexpr float CopyShare = 0.25F;

void AddFrames(const std::vector<PhrasePlace>& places, float share, std::vector<PhraseFrames>* frames)
{
    for (const PhrasePlace& place : places)
    {
        if (!place.features.empty())
        {
            frames->push_back({SpeakerFrames(place.features), place.path.counts, share});
        }
    }
}

} // namespace

GenericSpeakers TrainGenericPart(const PhrasePlaces& places, std::size_t states, uint64_t seed)
{
    std::vector<PhraseFrames> frames;
    AddFrames(places.takes, 1.0F, &frames);
    AddFrames(places.copies, CopyShare, &frames);
    std::vector<Eigen::MatrixXf> parts;
    parts.reserve(frames.size());
    for (const PhraseFrames& one : frames)
    {
        parts.push_back(one.frames);
    }
    MixtureTraining training;
    training.components = Components;
    training.seed = seed;
    return TrainGenericSpeakers(TrainMixture(SideBySide(parts), training), frames, states);
}

} // namespace velox::engine
