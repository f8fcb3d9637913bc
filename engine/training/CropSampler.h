#pragma once

#include "engine/base/RandomStream.h"
#include "engine/training/Folds.h"
#include "engine/training/PaddedSequence.h"

#include <vector>

namespace velox::engine
{

/// Draws pieces of equal length from labelled sequences. A take is drawn by its weight, and the piece covers the phrase, or a
/// part of it where it is longer; another sequence is drawn by its weight and length, and the piece lies anywhere.
class CropSampler
{
public:
    /// Frames by which an end of the phrase may lie outside of the piece.
    static constexpr Eigen::Index Margin = 30;

    struct Place
    {
        const PaddedSequence* sequence;
        Eigen::Index first; ///< frame; may lie outside of the sequence
    };

    /// @param sequences   must outlive this
    /// @param background  the label that is no state
    /// @param leftOut     a fold of the material that nothing is drawn from
    CropSampler(const std::vector<TrainingSequence>& sequences, int background, int leftOut = Folds::None);

    /// Whether there is nothing to draw from.
    bool Empty() const
    {
        return takes.sequences.empty() && others.sequences.empty();
    }

    /// @param fromTake  whether from a take; where there are none, from another sequence, and the other way round
    /// @param frames    of the piece
    Place Draw(bool fromTake, Eigen::Index frames, RandomStream* random) const;

private:
    /// Sequences, each with the sum of the chances up to its own.
    struct Urn
    {
        std::vector<PaddedSequence> sequences;
        std::vector<double> chances;

        void Add(const PaddedSequence& sequence, double chance);
        const PaddedSequence& Draw(RandomStream* random) const;
    };

    Urn takes;
    Urn others;
};

} // namespace velox::engine
