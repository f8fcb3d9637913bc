#pragma once

#include "engine/models/GaussianMixture.h"

#include <vector>

namespace velox::engine
{

/// How a phrase's states sound when anybody says it: a small mixture for each state, all with the variances of one background
/// mixture.
struct GenericSpeakers
{
    std::vector<GaussianMixture> states;
};

/// One user's way of saying the phrase beside everybody's: state-wise text-dependent speaker verification (Larcher, Lee, Ma and
/// Li, "Text-dependent speaker verification: classifiers, databases and RSR2015", 2014).
struct SpeakerModel
{
    /// Factors e of the false-alarm rate that one unit of the speaker's log ratio counts beside the phrase's own.
    static constexpr float Weight = 6.0F;
    /// The user's score lies at most so many factors e above the phrase's own: a voice makes good what noise took from the
    /// phrase, but does not turn another phrase into it.
    static constexpr float MostAbovePhrase = 1.0F;

    std::vector<GaussianMixture> generic;
    std::vector<GaussianMixture> user;

    /// The user's own threshold on the sum of the phrase's factors below half a false alarm per hour and the weighted speaker
    /// ratio. It is folded into the score, so that one configured threshold serves all users.
    float threshold = 0.0F;
};

} // namespace velox::engine
