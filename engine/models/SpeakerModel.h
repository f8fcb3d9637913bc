#pragma once

#include "engine/models/GaussianMixture.h"

#include <span>
#include <vector>

namespace velox::engine
{

/// How a phrase's states sound when anybody says it: a small mixture for each state, all with the variances of one background
/// mixture.
struct GenericSpeakers
{
    /// Frames that a prior component counts as when a state's generic mixture is adapted.
    static constexpr float Relevance = 16.0F;

    std::vector<GaussianMixture> states;
};

/// One user's way of saying the phrase beside everybody's: state-wise text-dependent speaker verification (Larcher, Lee, Ma and
/// Li, "Text-dependent speaker verification: classifiers, databases and RSR2015", 2014).
struct SpeakerModel
{
    /// Frames that a generic component counts as when the user's mixtures are adapted.
    static constexpr float Relevance = 4.0F;
    /// A noisy copy of a take is worth this share of a frame.
    static constexpr float CopyShare = 0.25F;
    /// Bounds of one frame's log ratio.
    static constexpr float MostRatio = 3.0F;
    /// What the speaker's log ratio counts beside the phrase's score.
    static constexpr float Weight = 2.0F;

    std::vector<GaussianMixture> generic;
    std::vector<GaussianMixture> user;

    /// The user's own threshold on the sum of phrase score and weighted speaker ratio. It is folded into the score, so that one
    /// configured threshold serves all users.
    float threshold = 0.0F;

    /// Mean over the states of the mean over their frames of the bounded log ratio of user and everybody. Allocates nothing.
    /// @param frames  CepstralFrameSize x frames, the phrase from its first frame to its last
    /// @param counts  frames in each state, together all of them
    float LogRatio(const Eigen::Ref<const Eigen::MatrixXf>& frames, std::span<const int32_t> counts) const;
};

/// One stretch of audio with the phrase, cut into its states.
struct PhraseFrames
{
    Eigen::MatrixXf frames;      ///< CepstralFrameSize x frames
    std::vector<int32_t> counts; ///< frames in each state
    float share = 1.0F;          ///< what one of its frames counts
};

/// Adapts a background mixture to each state of takes of many speakers.
GenericSpeakers TrainGenericSpeakers(const GaussianMixture& background, std::span<const PhraseFrames> takes, std::size_t states);

/// Adapts everybody's mixtures to a user's takes and their copies. The threshold is left for the caller to set.
SpeakerModel TrainSpeaker(const GenericSpeakers& generic, std::span<const PhraseFrames> takes);

} // namespace velox::engine
