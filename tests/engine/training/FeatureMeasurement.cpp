#include "engine/training/FeatureMeasurement.h"

#include "engine/listening/PhraseSearch.h"
#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <cmath>

namespace FeatureMeasurementTests
{

using namespace velox::engine;

TEST(FeatureMeasurement, WhatWasMeasuredNormalisesTheMaterial)
{
    std::vector<std::string> warnings;
    const LanguageMaterial material = TinyLanguage::Material();
    const std::vector<PreparedTake> takes = PrepareTakes(material.takes, &warnings);
    const FeatureStatistics statistics = MeasureStatistics(material.background, takes);

    std::vector<MelFrame> features;
    const auto add = [&](std::span<const float> recording) {
        const std::vector<MelFrame> more = AnalyseRecording(statistics, recording, 1.0);
        features.insert(features.end(), more.begin(), more.end());
    };
    for (const auto& recording : material.background)
    {
        add(recording);
    }
    for (const PreparedTake& take : takes)
    {
        add(take.PhraseSamples());
    }
    for (const std::size_t channel : {0U, 20U, 39U})
    {
        double sum = 0.0;
        double squares = 0.0;
        for (const MelFrame& feature : features)
        {
            sum += static_cast<double>(feature[channel]);
            squares += static_cast<double>(feature[channel]) * static_cast<double>(feature[channel]);
        }
        const auto count = static_cast<double>(features.size());
        EXPECT_NEAR(sum / count, 0.0, 0.01) << channel;
        EXPECT_NEAR(squares / count, 1.0, 0.01) << channel;
    }
}

TEST(FeatureMeasurement, TheRunningMeanStartsInTheShapeOfTheLouderHalf)
{
    std::vector<float> recording = Signals::Noise(0.001, SampleRate, 1);
    const std::vector<float> loud = Signals::Noise(0.1, SampleRate + 4 * FrameSize, 2);
    recording.insert(recording.end(), loud.begin(), loud.end());
    const FeatureStatistics statistics = MeasureStatistics({recording}, {});
    const std::vector<MelFrame> frames = LogMelFrames(loud);
    double mean = 0.0;
    for (const MelFrame& frame : frames)
    {
        mean += static_cast<double>(frame[20] - MeanLevel(frame)) / static_cast<double>(frames.size());
    }
    EXPECT_NEAR(static_cast<double>(statistics.startShape[20]), mean, 0.15);
    EXPECT_NEAR(MeanLevel(statistics.startShape), 0.0, 1e-4);
}

TEST(FeatureMeasurement, AChannelThatNeverMovesHasADeviationAllTheSame)
{
    const FeatureStatistics statistics = MeasureStatistics({std::vector<float>(SampleRate, 0.0F)}, {});
    EXPECT_FLOAT_EQ(statistics.deviation[0], 0.01F);
}

} // namespace FeatureMeasurementTests
