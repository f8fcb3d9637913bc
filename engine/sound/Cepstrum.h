#pragma once

#include "engine/sound/MelFilterbank.h"

#include <Eigen/Core>

#include <span>

namespace velox::engine
{

/// Mel-frequency cepstral coefficients, the zeroth included (Davis and Mermelstein, "Comparison of parametric representations for
/// monosyllabic word recognition", 1980). Sequences are matrices with a frame per column.
inline constexpr Eigen::Index CepstrumSize = 13;
/// Coefficients, their deltas and the deltas of these, one below the other.
inline constexpr Eigen::Index CepstralFrameSize = 3 * CepstrumSize;

/// The first CepstrumSize coefficients of the orthonormal cosine transform (DCT-II) of each frame.
///
/// @return CepstrumSize x frames
Eigen::MatrixXf Cepstra(std::span<const MelFrame> logMel);

/// Takes each row's mean over the whole sequence off. Where a sequence is still under way, the running mean is taken off the mel
/// channels before the transform instead: the transform is linear.
void RemoveMean(Eigen::MatrixXf* cepstra);

/// Slope of each row by regression over two frames to either side (Furui, "Speaker-independent isolated word recognition using
/// dynamic features of speech spectrum", 1986), per frame; the first and last frame are repeated outward.
Eigen::MatrixXf Deltas(const Eigen::MatrixXf& sequence);

/// Puts 2.5 times the deltas and 5 times their deltas below the coefficients, so that all three spread alike.
///
/// @param cepstra  CepstrumSize x frames
/// @return CepstralFrameSize x frames
Eigen::MatrixXf WithDeltas(const Eigen::MatrixXf& cepstra);

/// Frames of a whole utterance: coefficients without their mean, with deltas.
///
/// @return CepstralFrameSize x frames
Eigen::MatrixXf UtteranceCepstra(std::span<const MelFrame> logMel);

/// Sequences behind one another, at least one.
Eigen::MatrixXf SideBySide(std::span<const Eigen::MatrixXf> sequences);

/// Frames of a stretch of features from which a mean was taken off already, with deltas. Allocates nothing.
///
/// @param frames  CepstralFrameSize x as many as there are features
void StretchCepstra(std::span<const MelFrame> features, Eigen::Ref<Eigen::MatrixXf> frames);

} // namespace velox::engine
