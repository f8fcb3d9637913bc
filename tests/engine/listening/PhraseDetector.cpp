#include "engine/listening/PhraseDetector.h"

#include "engine/listening/SpeakerRatio.h"
#include "engine/sound/Cepstrum.h"
#include "engine/sound/Endpointing.h"
#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <array>

namespace PhraseDetectorTests
{

using namespace velox::engine;
using Detector = velox::engine::PhraseDetector;
using Tones = std::vector<std::size_t>;

/// The hand-made network's first state has no padding before it, which the detector takes off.
constexpr auto Padding = static_cast<int64_t>(EndpointPadding * FrameSize);
constexpr std::size_t Before = 8000;
constexpr std::size_t After = 8000;

std::vector<Detection> Hear(Detector* detector, std::span<const float> audio)
{
    std::vector<Detection> detections;
    for (std::size_t start = 0; start + FrameSize <= audio.size(); start += FrameSize)
    {
        if (const auto detection = detector->Push(audio.data() + start))
        {
            detections.push_back(*detection);
        }
    }
    return detections;
}

std::vector<Detection> Hear(const PhraseModel& model, std::span<const float> audio)
{
    Detector detector(model);
    return Hear(&detector, audio);
}

TEST(PhraseDetector, HearsThePhraseOnceAndTellsWhereItIs)
{
    const auto detections = Hear(TinyLanguage::Phrase(), TinyLanguage::SayPhrase());
    ASSERT_EQ(detections.size(), 1U);
    EXPECT_GT(detections[0].score, ScoreScale::HalfAlarmPerHour);
    EXPECT_EQ(detections[0].score, detections[0].phraseScore);
    EXPECT_NEAR(static_cast<double>(detections[0].startSample), Before + Padding, 3.0 * FrameSize);
    // The hand-made network is sure of the last tone from its third frame on.
    EXPECT_NEAR(static_cast<double>(detections[0].endSample), Before + 3 * TinyLanguage::ToneSamples + 3 * FrameSize,
                3.0 * FrameSize);
}

TEST(PhraseDetector, HearsNothingInPartsOfThePhraseOrOtherOrders)
{
    for (const Tones& tones : {Tones{0, 1}, Tones{2, 3}, Tones{0, 1, 2}, Tones{1, 2, 3}, Tones{3, 2, 1, 0}, Tones{0, 2, 1, 3}})
    {
        SCOPED_TRACE(testing::PrintToString(tones));
        EXPECT_TRUE(Hear(TinyLanguage::Phrase(), TinyLanguage::Say(tones, Before, After)).empty());
    }
}

TEST(PhraseDetector, HearsEachOfTwoPhrases)
{
    EXPECT_EQ(Hear(TinyLanguage::Phrase(), TinyLanguage::Say(Tones{0, 1, 2, 3, 0, 1, 2, 3}, Before, After)).size(), 2U);
}

TEST(PhraseDetector, HearsThePhraseAfterOtherSounds)
{
    EXPECT_EQ(Hear(TinyLanguage::Phrase(), TinyLanguage::Say(Tones{3, 1, 0, 0, 2, 0, 1, 2, 3}, Before, After)).size(), 1U);
}

TEST(PhraseDetector, APeakThatEndsTheAudioComesOutWithTheFlush)
{
    const PhraseModel model = TinyLanguage::Phrase();
    Detector flushed(model);
    EXPECT_TRUE(Hear(&flushed, TinyLanguage::Say(Tones{0, 1, 2, 3}, Before, 0)).empty());
    std::size_t detections = 0;
    constexpr std::array<float, FrameSize> Silence{};
    for (int64_t i = 0; i < flushed.FlushFrames(); ++i)
    {
        detections += flushed.Push(Silence.data()) ? 1U : 0U;
    }
    EXPECT_EQ(detections, 1U);
    EXPECT_EQ(flushed.FlushFrames(), model.network.LookAhead() + Detector::PeakFrames);
}

TEST(PhraseDetector, WhereTheAudioStartsWithinAFrameChangesLittle)
{
    const std::vector<float> audio = TinyLanguage::SayPhrase();
    const float reference = Hear(TinyLanguage::Phrase(), audio).at(0).score;
    for (std::size_t offset = 10; offset < FrameSize; offset += 10)
    {
        SCOPED_TRACE(offset);
        const auto detections = Hear(TinyLanguage::Phrase(), std::span(audio).subspan(offset));
        ASSERT_EQ(detections.size(), 1U);
        EXPECT_NEAR(detections[0].score, reference, 5.0F);
        EXPECT_NEAR(static_cast<double>(detections[0].startSample + static_cast<int64_t>(offset)), Before + Padding,
                    3.0 * FrameSize);
    }
}

TEST(PhraseDetector, EarlierAudioIsForgottenByANewDetector)
{
    const PhraseModel model = TinyLanguage::Phrase();
    const std::vector<float> audio = TinyLanguage::SayPhrase();
    const float first = Hear(model, audio).at(0).score;
    EXPECT_EQ(Hear(model, audio).at(0).score, first);
}

TEST(PhraseDetector, TheJudgeDecidesWhateverTheSearchSays)
{
    PhraseModel strict = TinyLanguage::Phrase();
    const Detection whole = Hear(strict, TinyLanguage::SayPhrase()).at(0);
    strict.judge.bias -= 0.96F; // two factors e of this tail
    const Detection near = Hear(strict, TinyLanguage::SayPhrase()).at(0);
    EXPECT_NEAR(near.searchScore, whole.searchScore, 1e-3F);
    EXPECT_NEAR(near.score, whole.score - 20.0F, 1e-2F);
    EXPECT_EQ(near.phraseScore, near.score);
}

/// A user's mixtures that are everybody's give a log ratio of 0: the sum is the phrase's alone.
TEST(PhraseDetector, AUsersThresholdIsFoldedIntoTheScore)
{
    PhraseModel model = TinyLanguage::UserPhrase();
    model.speaker->threshold = 2.5F;
    const Detection detection = Hear(model, TinyLanguage::SayPhrase()).at(0);
    EXPECT_NEAR(detection.speakerRatio, 0.0F, 1e-5F);
    EXPECT_NEAR(detection.score, detection.phraseScore - 25.0F, 0.05F);
}

TEST(PhraseDetector, AVoiceMakesGoodOnlySomeOfWhatThePhraseLacks)
{
    PhraseModel model = TinyLanguage::UserPhrase();
    model.speaker->threshold = -8.0F;
    const Detection detection = Hear(model, TinyLanguage::SayPhrase()).at(0);
    EXPECT_NEAR(detection.score, detection.phraseScore + 10.0F * SpeakerModel::MostAbovePhrase, 0.05F);
}

/// The second stage sees the same frames as the training does.
TEST(PhraseDetector, TheSpeakerPartSeesThePhrasesFrames)
{
    PhraseModel model = TinyLanguage::UserPhrase();
    for (GaussianMixture& mixture : model.speaker->user)
    {
        mixture = {mixture.Weights(), Eigen::MatrixXf::Constant(CepstralFrameSize, 1, 1.0F), mixture.Variances()};
    }
    const std::vector<float> audio = TinyLanguage::SayPhrase();
    const Detection detection = Hear(model, audio).at(0);

    FeatureStream stream(model.statistics);
    std::vector<MelFrame> features;
    AnalysedFrame frame;
    for (std::size_t start = 0; start + FrameSize <= audio.size(); start += FrameSize)
    {
        if (stream.Push(audio.data() + start, &frame))
        {
            features.push_back(frame.feature);
        }
    }
    const auto frameAt = [](int64_t sample) {
        return static_cast<std::size_t>((sample - FeatureStream::MiddleSample(0)) / static_cast<int64_t>(FrameSize));
    };
    const std::size_t first = frameAt(detection.startSample - Padding + 80);
    const std::size_t last = frameAt(detection.endSample - 80);
    StreamingNetwork network(model.network);
    Decoder decoder(model.states);
    for (std::size_t i = 0; i <= last + 2; ++i)
    {
        if (const Eigen::VectorXf* posteriors = network.Push(features[i]))
        {
            decoder.Push(posteriors->data());
        }
    }
    const auto phrase = std::span(features).subspan(first, last - first + 1);
    EXPECT_NEAR(detection.speakerRatio, SpeakerRatio(*model.speaker, SpeakerFrames(phrase), decoder.BestPath().counts), 1e-4F);
}

TEST(PhraseDetector, APhraseTooLongForTheHistoryIsNotTakenForTheUsers)
{
    PhraseModel model = TinyLanguage::UserPhrase();
    const Tones slow = [] {
        Tones tones;
        for (std::size_t s = 0; s < TinyLanguage::States; ++s)
        {
            tones.insert(tones.end(), 12, s); // 1.8 s each
        }
        return tones;
    }();
    model.states.meanDuration.assign(TinyLanguage::States, 180.0F);
    for (const Detection& detection : Hear(model, TinyLanguage::Say(slow, Before, After)))
    {
        EXPECT_EQ(detection.score, ScoreScale::Least);
    }
}

} // namespace PhraseDetectorTests
