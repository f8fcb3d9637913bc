#pragma once

#include "engine/training/TrainingSequence.h"

namespace velox::engine
{

/// A labelled sequence that goes on without end on both sides: there the background at its end is repeated, backwards and
/// forwards in turn; where it ends within the phrase, frames of zeros follow.
class PaddedSequence
{
public:
    /// @param sequence    must outlive this
    /// @param background  the label that is no state
    PaddedSequence(const TrainingSequence& sequence, int background);

    const TrainingSequence& Sequence() const
    {
        return *sequence;
    }

    bool HasPhrase() const
    {
        return phraseBegin < phraseEnd;
    }

    /// The first frame of the phrase, and the one after its last.
    Eigen::Index PhraseBegin() const
    {
        return phraseBegin;
    }
    Eigen::Index PhraseEnd() const
    {
        return phraseEnd;
    }

    /// Outside of the sequence there is background.
    int Label(Eigen::Index frame) const;

    /// @param features  receives as many frames as it has columns, from frame `first` on
    void Copy(Eigen::Index first, Eigen::MatrixXf* features) const;

private:
    const TrainingSequence* sequence;
    int background;
    Eigen::Index phraseBegin; ///< the number of frames where there is none
    Eigen::Index phraseEnd;   ///< 0 where there is none
};

} // namespace velox::engine
