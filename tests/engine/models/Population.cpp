#include "engine/models/Population.h"

#include "tests/engine/support/BlobDamage.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace PopulationTests
{

using namespace velox::engine;
using Model = velox::engine::Population;

TEST(Population, ComesBackAsItWasWritten)
{
    Model written = TinyLanguage::Background();
    written.peaks[0].features[2].fill(-1.25F);
    written.speakers = {written.peaks[5]};
    const std::vector<uint8_t> blob = WritePopulation(written);
    Model read;
    ASSERT_EQ(ReadPopulation(blob.data(), &read), Status::Success);
    EXPECT_EQ(read.hours, 0.5);
    ASSERT_EQ(read.peaks.size(), written.peaks.size());
    EXPECT_EQ(read.peaks[3].factors, written.peaks[3].factors);
    EXPECT_EQ(read.peaks[3].counts, written.peaks[3].counts);
    EXPECT_FLOAT_EQ(read.peaks[0].features[2][7], -1.25F);
    ASSERT_EQ(read.speakers.size(), 1U);
    EXPECT_EQ(read.speakers[0].factors, written.peaks[5].factors);
    ASSERT_EQ(read.talkers.size(), written.talkers.size());
    EXPECT_NEAR(read.talkers[1][2000], written.talkers[1][2000], 1e-4F);
    EXPECT_EQ(WritePopulation(read), blob);
}

TEST(Population, DamageIsRefused)
{
    BlobDamage::ExpectDamageIsRefused(WritePopulation(TinyLanguage::Background()), [](const std::vector<uint8_t>& blob) {
        Model population;
        return ReadPopulation(blob.data(), &population);
    });
}

TEST(Population, ContentsThatCannotBeAPopulationAreRefused)
{
    Model noHours = TinyLanguage::Background();
    noHours.hours = 0.0;
    Model noPeaks = TinyLanguage::Background();
    noPeaks.peaks.clear();
    Model noFrames = TinyLanguage::Background();
    noFrames.peaks[1].counts[0] = 0;
    noFrames.peaks[1].features.resize(15);
    Model tooManyPeaks = TinyLanguage::Background();
    tooManyPeaks.peaks.resize(Model::MostPeaks + 1, tooManyPeaks.peaks[0]);
    Model noScore = TinyLanguage::Background();
    noScore.peaks[1].factors = 1e30F;
    Model noFeature = TinyLanguage::Background();
    noFeature.peaks[1].features[2][7] = -1e30F;
    Model badSpeaker = TinyLanguage::Background();
    badSpeaker.speakers = noFrames.peaks;
    Model tooManySpeakers = TinyLanguage::Background();
    tooManySpeakers.speakers.resize(Model::MostSpeakers + 1, tooManySpeakers.peaks[0]);
    Model muteTalker = TinyLanguage::Background();
    muteTalker.talkers[0].clear();
    Model tooLoud = TinyLanguage::Background();
    tooLoud.talkers[0][3] = 1.5F;
    Model tooManyTalkers = TinyLanguage::Background();
    tooManyTalkers.talkers.resize(Model::MostTalkers + 1, tooManyTalkers.talkers[0]);
    for (const Model& population : {noHours, noPeaks, noFrames, tooManyPeaks, noScore, noFeature, badSpeaker, tooManySpeakers,
                                    muteTalker, tooLoud, tooManyTalkers})
    {
        Model read;
        EXPECT_EQ(ReadPopulation(WritePopulation(population).data(), &read), Status::MalformedBlob);
    }
}

TEST(Population, FitsThePhraseWithAsManyStates)
{
    Model population = TinyLanguage::Background();
    EXPECT_TRUE(population.Fits(TinyLanguage::Acoustic()));
    population.speakers = {population.peaks.back()};
    EXPECT_TRUE(population.Fits(TinyLanguage::Acoustic()));
    population.speakers.back().counts.push_back(1);
    EXPECT_FALSE(population.Fits(TinyLanguage::Acoustic()));
    population.speakers.clear();
    population.peaks.back().counts.push_back(1);
    EXPECT_FALSE(population.Fits(TinyLanguage::Acoustic()));
}

} // namespace PopulationTests
