#include "engine/training/SpeakerTraining.h"

#include "engine/base/RandomStream.h"
#include "engine/listening/SpeakerRatio.h"
#include "engine/sound/Cepstrum.h"

#include <gmock/gmock.h>

namespace SpeakerTrainingTests
{

using namespace velox::engine;
using testing::SizeIs;

/// Two states of ten frames each, the second louder in the upper channels.
PhrasePlace Place(uint64_t seed)
{
    RandomStream random(seed);
    PhrasePlace place;
    place.path.counts = {10, 10};
    place.features.resize(20);
    for (std::size_t frame = 0; frame < 20; ++frame)
    {
        for (std::size_t channel = 0; channel < MelChannels; ++channel)
        {
            const float tilt = frame < 10 ? -2.0F : 2.0F;
            place.features[frame][channel] =
                tilt * static_cast<float>(channel) / MelChannels + 0.1F * static_cast<float>(random.Normal());
        }
    }
    return place;
}

TEST(SpeakerTraining, EachStateSoundsAsInTheTakes)
{
    PhrasePlaces places;
    for (uint64_t i = 0; i < 6; ++i)
    {
        places.takes.push_back(Place(i));
        places.copies.push_back(Place(100 + i));
    }
    places.copies.push_back({}); // too short: no features
    const GenericSpeakers generic = TrainGenericPart(places, 2, 1);
    ASSERT_THAT(generic.states, SizeIs(2));
    const Eigen::MatrixXf frames = SpeakerFrames(Place(50).features);
    EXPECT_GT(generic.states[0].LogLikelihood(frames.col(3)), generic.states[1].LogLikelihood(frames.col(3)));
    EXPECT_LT(generic.states[0].LogLikelihood(frames.col(16)), generic.states[1].LogLikelihood(frames.col(16)));
}

} // namespace SpeakerTrainingTests
