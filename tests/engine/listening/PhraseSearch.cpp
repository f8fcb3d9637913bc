#include "engine/listening/PhraseSearch.h"

#include "engine/sound/FeatureStream.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <array>
#include <numeric>

namespace PhraseSearchTests
{

using namespace velox::engine;

constexpr std::size_t Before = 8000;

TEST(PhraseSearch, FindsThePhraseWhereItIs)
{
    const auto place = FindPhrase(TinyLanguage::Phrase(), TinyLanguage::SayPhrase());
    ASSERT_TRUE(place);
    EXPECT_NEAR(place->score, Decoder::MostRatio, 0.5F);
    EXPECT_EQ(std::accumulate(place->path.counts.begin(), place->path.counts.end(), 0), static_cast<int>(place->features.size()));
    ASSERT_EQ(place->path.counts.size(), TinyLanguage::States);
    for (std::size_t s = 0; s + 1 < TinyLanguage::States; ++s)
    {
        EXPECT_NEAR(place->path.counts[s], TinyLanguage::ToneFrames, 3);
    }
    const int64_t lookAhead = TinyLanguage::Phrase().network.LookAhead();
    const auto start = static_cast<double>(FeatureStream::MiddleSample(place->path.startFrame + lookAhead));
    EXPECT_NEAR(start, static_cast<double>(Before), 3.0 * FrameSize);
}

TEST(PhraseSearch, AnIncompletePhraseScoresMuchLess)
{
    constexpr std::array<std::size_t, 2> Half{0, 1};
    constexpr std::array<std::size_t, 4> Swapped{0, 2, 1, 3};
    for (const std::span<const std::size_t> tones : {std::span<const std::size_t>(Half), std::span<const std::size_t>(Swapped)})
    {
        const auto place = FindPhrase(TinyLanguage::Phrase(), TinyLanguage::Say(tones, Before, Before));
        ASSERT_TRUE(place);
        EXPECT_LT(place->score, -1.0F);
    }
}

TEST(PhraseSearch, AudioShorterThanThePhraseCanBeHoldsNoPlace)
{
    EXPECT_FALSE(FindPhrase(TinyLanguage::Phrase(), std::vector<float>(8 * FrameSize, 0.0F)));
    EXPECT_FALSE(FindPhrase(TinyLanguage::Phrase(), {}));
}

TEST(PhraseSearch, EachStretchHasItsHighestPlace)
{
    std::vector<float> recording = TinyLanguage::SayPhrase(); // 1.6 s
    const std::vector<float> once = recording;
    recording.resize(2 * SampleRate, 0.0F);
    recording.insert(recording.end(), once.begin(), once.end());
    const std::vector<PhrasePlace> peaks = FindPeaks(TinyLanguage::Phrase(), recording, 2.0);
    ASSERT_EQ(peaks.size(), 2U);
    for (const PhrasePlace& peak : peaks)
    {
        EXPECT_GT(peak.score, 2.0F);
        EXPECT_FALSE(peak.features.empty());
    }
}

TEST(PhraseSearch, TheLastIncompleteFrameIsFilledWithZeros)
{
    const FeatureStatistics statistics = TinyLanguage::Phrase().statistics;
    const std::vector<float> audio = TinyLanguage::SayPhrase();
    const auto part = std::span(audio).first(10 * FrameSize + 1);
    std::vector<float> filled(part.begin(), part.end());
    filled.resize(11 * FrameSize, 0.0F);
    EXPECT_EQ(AnalyseRecording(statistics, part, 1.0), AnalyseRecording(statistics, filled, 1.0));
    EXPECT_EQ(AnalyseRecording(statistics, part, 1.0).size(), 11 - FrontEnd::FirstFrame + 1);
}

} // namespace PhraseSearchTests
