#pragma once

#include "engine/models/GaussianMixture.h"
#include "engine/sound/MelFilterbank.h"

#include <Eigen/Core>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace velox::engine
{

/// Which part of a phrase each frame belongs to: left-to-right states without phonemes, found from the takes alone (Rabiner, "A
/// tutorial on hidden Markov models", 1989; segmental k-means: Juang and Rabiner, 1990).
struct PhraseAlignment
{
    std::size_t states = 0;
    /// A state for each frame of each take; empty for a take that is too short.
    std::vector<std::vector<int>> labels;
    std::vector<std::size_t> tooShort; ///< numbers of the takes with fewer frames than the states need
    std::vector<float> meanDurations;  ///< frames in each state
    std::vector<float> shares;         ///< of all labelled frames, each state's; together 1
};

/// Least frames in a state.
inline constexpr std::size_t LeastStateFrames = 3;

/// States for a phrase: one for every five frames of the median take.
///
/// @param takeFrames  frames of each take, at least one take
/// @return at least 1
std::size_t StateCount(std::vector<std::size_t> takeFrames);

/// Finds the states of takes of one phrase. Starts from an equal split; then, five times, adapts the mixture to every state's
/// frames (relevance 16) and labels the frames anew by the best way through the states.
///
/// @param takes    log-mel frames of clean takes, speech from the first frame to the last
/// @param mixture  of UtteranceCepstra frames
/// @return nothing when every take is too short
std::optional<PhraseAlignment> AlignTakes(std::span<const std::vector<MelFrame>> takes, std::size_t states,
                                          const GaussianMixture& mixture);

/// The best way from the first state to the last that gives every state at least LeastStateFrames (Viterbi 1967).
///
/// @param logLikelihoods  states x frames, at least LeastStateFrames frames for each state
/// @return the state of each frame
std::vector<int> BestStates(const Eigen::MatrixXf& logLikelihoods);

/// Adds every frame of a take to the statistics of its state.
///
/// @param labels      never falling, one for each frame
/// @param frames      dimensions x frames
/// @param posteriors  components x frames
void AddToStates(std::span<const int> labels, const Eigen::MatrixXf& frames, const Eigen::MatrixXf& posteriors,
                 std::vector<MixtureStatistics>* statistics);

/// The labels of a copy that plays `speed` times as fast; its frame i looks at the take's sound around its own middle.
///
/// @param labels  of the take's frames as the front end gives them, at least one
/// @param frames  of the copy
/// @param offset  samples that the copy lacks at its start
std::vector<int> CarryLabels(std::span<const int> labels, double speed, std::size_t frames, std::size_t offset = 0);

} // namespace velox::engine
