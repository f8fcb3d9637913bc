#include "engine/training/Calibration.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <cmath>

namespace CalibrationTests
{

using namespace velox::engine;

/// Background whose scores are exponential with this slope from `least` on.
std::vector<PhrasePlace> Background(double least, double slope)
{
    constexpr int Count = 2000;
    std::vector<PhrasePlace> places(Count);
    for (int i = 0; i < Count; ++i)
    {
        PhrasePlace& place = places[static_cast<std::size_t>(i)];
        place.score = static_cast<float>(least - slope * std::log((i + 0.5) / Count));
        place.path.counts.assign(TinyLanguage::States, 1);
        place.path.fits.assign(TinyLanguage::States, place.score);
    }
    return places;
}

/// The judge says what the search says.
PhraseModel ModelOfTones()
{
    PhraseModel model = TinyLanguage::Phrase();
    model.judge = {Eigen::VectorXf::Unit(PhraseModel::PathFeatures, PhraseModel::PathFeatures - 1), 0.0F};
    return model;
}

TEST(Calibration, TailsLieAsMuchAboveHeardBackgroundAsUnheardUsuallyDoesAndFallOffFaster)
{
    PhraseModel model = ModelOfTones();
    CalibrateTails(Background(-4.0, 0.4), &model);
    const double start = -4.0 + 0.4 * std::log(20.0);
    EXPECT_NEAR(model.searchTail.start, start + 0.5, 0.02);
    EXPECT_NEAR(model.tail.start, start + 0.8, 0.02);
    // A hundred blocks say three quarters of 0.4; the usual slope counts as six hundred.
    EXPECT_NEAR(model.searchTail.slope, (0.3 * 100.0 + 0.4 * 600.0) / 700.0, 0.01);
    EXPECT_NEAR(model.tail.slope, (0.3 * 100.0 + 0.7 * 600.0) / 700.0, 0.01);
}

TEST(Calibration, HeldOutTakesAreJudgedAgainstUnheardBackground)
{
    PhraseModel model = ModelOfTones();
    model.tail.slope = 0.5F;
    HeldOutPlaces heldOut{{}, {}, Background(-2.5, 0.6)};
    heldOut.phrases.takes.resize(2);
    heldOut.phrases.takes[0] = Background(2.0, 0.0).front();
    heldOut.phrases.takes[0].features.resize(TinyLanguage::States);
    const std::vector<float> factors = JudgeHeldOutTakes(heldOut, model);
    ASSERT_EQ(factors.size(), 2U);
    // The tail starts where one block in 20 lies above; half an alarm is one in 3600, so ln 180 of the model's slopes above it.
    EXPECT_NEAR(factors[0], (2.0 + 2.5 - 0.6 * std::log(20.0)) / 0.5 - std::log(180.0), 0.2);
    EXPECT_EQ(ScoreScale::FromFactors(factors[1]), ScoreScale::Least) << "too short";
}

} // namespace CalibrationTests
