#include "engine/models/AcousticModel.h"

#include "tests/engine/support/BlobDamage.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace
{

using namespace velox::engine;
using Model = velox::engine::AcousticModel;

TEST(AcousticModel, WhatWasReadWritesTheSameBytes)
{
    const std::vector<uint8_t> blob = WriteAcousticModel(TinyLanguage::Acoustic());
    Model read;
    ASSERT_EQ(ReadAcousticModel(blob.data(), &read), Status::Success);
    EXPECT_EQ(read.generic.states.size(), TinyLanguage::States);
    EXPECT_EQ(WriteAcousticModel(read), blob);
}

TEST(AcousticModel, DamageIsRefused)
{
    BlobDamage::ExpectDamageIsRefused(WriteAcousticModel(TinyLanguage::Acoustic()), [](const std::vector<uint8_t>& blob) {
        Model model;
        return ReadAcousticModel(blob.data(), &model);
    });
}

TEST(AcousticModel, APopulationComesBackAsItWasWritten)
{
    Population written = TinyLanguage::Background();
    written.peaks[0].features[2].fill(-1.25F);
    const std::vector<uint8_t> blob = WritePopulation(written);
    Population read;
    ASSERT_EQ(ReadPopulation(blob.data(), &read), Status::Success);
    EXPECT_EQ(read.hours, 0.5);
    ASSERT_EQ(read.peaks.size(), written.peaks.size());
    EXPECT_EQ(read.peaks[3].factors, written.peaks[3].factors);
    EXPECT_EQ(read.peaks[3].counts, written.peaks[3].counts);
    EXPECT_FLOAT_EQ(read.peaks[0].features[2][7], -1.25F);
    EXPECT_EQ(WritePopulation(read), blob);
}

TEST(AcousticModel, DamageToAPopulationIsRefused)
{
    BlobDamage::ExpectDamageIsRefused(WritePopulation(TinyLanguage::Background()), [](const std::vector<uint8_t>& blob) {
        Population population;
        return ReadPopulation(blob.data(), &population);
    });
}

TEST(AcousticModel, PopulationsWithoutHoursPeaksOrFramesAreRefused)
{
    Population noHours = TinyLanguage::Background();
    noHours.hours = 0.0;
    Population noPeaks = TinyLanguage::Background();
    noPeaks.peaks.clear();
    Population noFrames = TinyLanguage::Background();
    noFrames.peaks[1].counts[0] = 0;
    noFrames.peaks[1].features.resize(15);
    Population tooManyPeaks = TinyLanguage::Background();
    tooManyPeaks.peaks.resize(Population::MostPeaks + 1, tooManyPeaks.peaks[0]);
    Population noScore = TinyLanguage::Background();
    noScore.peaks[1].factors = 1e30F;
    Population noFeature = TinyLanguage::Background();
    noFeature.peaks[1].features[2][7] = -1e30F;
    for (const Population& population : {noHours, noPeaks, noFrames, tooManyPeaks, noScore, noFeature})
    {
        Population read;
        EXPECT_EQ(ReadPopulation(WritePopulation(population).data(), &read), Status::MalformedBlob);
    }
}

TEST(AcousticModel, APopulationFitsThePhraseWithAsManyStates)
{
    Population population = TinyLanguage::Background();
    EXPECT_TRUE(population.Fits(TinyLanguage::Acoustic()));
    population.peaks.back().counts.push_back(1);
    EXPECT_FALSE(population.Fits(TinyLanguage::Acoustic()));
}

} // namespace
