#include "engine/sound/FeatureStream.h"

#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace FeatureStreamTests
{

using namespace velox::engine;

std::vector<MelFrame> Features(std::vector<float> samples, double gainDecibels)
{
    const auto gain = static_cast<float>(std::pow(10.0, gainDecibels / 20.0));
    std::transform(samples.begin(), samples.end(), samples.begin(), [gain](float sample) { return gain * sample; });
    FeatureStatistics statistics;
    statistics.deviation.fill(1.0F);
    FeatureStream stream(statistics);
    std::vector<MelFrame> features;
    AnalysedFrame frame;
    for (std::size_t start = 0; start + FrameSize <= samples.size(); start += FrameSize)
    {
        if (stream.Push(samples.data() + start, &frame))
        {
            features.push_back(frame.feature);
        }
    }
    return features;
}

float LargestDifference(const std::vector<MelFrame>& one, const std::vector<MelFrame>& other)
{
    float largest = 0.0F;
    for (std::size_t t = 0; t < one.size(); ++t)
    {
        for (std::size_t i = 0; i < MelChannels; ++i)
        {
            largest = std::max(largest, std::abs(one[t][i] - other[t][i]));
        }
    }
    return largest;
}

TEST(FeatureStream, FeaturesDoNotDependOnTheLevel)
{
    const std::vector<float> take = TinyLanguage::SayPhrase();
    const std::vector<MelFrame> plain = Features(take, 0.0);
    for (const double gain : {-20.0, -10.0, 10.0})
    {
        SCOPED_TRACE(gain);
        EXPECT_LT(LargestDifference(Features(take, gain), plain), 0.2F); // the rounding in quiet channels
    }
}

/// Bursts of sound over hiss, 40 dB apart.
std::vector<float> Bursts()
{
    std::vector<float> samples = Signals::Noise(0.001, 2 * SampleRate, 1);
    const std::vector<float> sound = Signals::Noise(0.1, SampleRate / 8, 2);
    for (std::size_t start = SampleRate / 2; start < samples.size(); start += SampleRate / 4)
    {
        std::copy(sound.begin(), sound.end(), samples.begin() + static_cast<std::ptrdiff_t>(start));
    }
    return samples;
}

TEST(FeatureStream, DigitalSilenceBeforeATakeChangesNothingOfItsSpeech)
{
    const std::vector<float> take = Bursts();
    std::vector<float> later(2 * SampleRate, 0.0F);
    later.insert(later.end(), take.begin(), take.end());
    const std::vector<MelFrame> plain = Features(take, 0.0);
    const std::vector<MelFrame> all = Features(later, 0.0);
    const std::vector<MelFrame> same(all.end() - static_cast<std::ptrdiff_t>(plain.size()), all.end());
    const std::size_t inSpeech = 55; // the first burst begins in frame 50
    EXPECT_LT(LargestDifference({plain.begin() + inSpeech, plain.end()}, {same.begin() + inSpeech, same.end()}), 0.3F);
}

} // namespace FeatureStreamTests
