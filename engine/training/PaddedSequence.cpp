#include "engine/training/PaddedSequence.h"

#include <algorithm>

namespace velox::engine
{

namespace
{

/// Position in a run of frames that is gone through there and back again, after so many steps.
Eigen::Index ThereAndBack(Eigen::Index steps, Eigen::Index run)
{
    const Eigen::Index place = steps % (2 * run);
    return std::min(place, 2 * run - 1 - place);
}

} // namespace

PaddedSequence::PaddedSequence(const TrainingSequence& labelled, int backgroundLabel)
    : sequence(&labelled), background(backgroundLabel)
{
    const std::vector<int>& labels = labelled.labels;
    const auto isState = [this](int label) {
        return label != background;
    };
    phraseBegin = std::find_if(labels.begin(), labels.end(), isState) - labels.begin();
    phraseEnd = labels.rend() - std::find_if(labels.rbegin(), labels.rend(), isState);
}

int PaddedSequence::Label(Eigen::Index frame) const
{
    return frame < 0 || frame >= sequence->Frames() ? background : sequence->labels[static_cast<std::size_t>(frame)];
}

void PaddedSequence::Copy(Eigen::Index first, Eigen::MatrixXf* features) const
{
    const Eigen::Index frames = sequence->Frames();
    const Eigen::Index lead = phraseBegin;
    const Eigen::Index trail = frames - phraseEnd;
    for (Eigen::Index i = 0; i < features->cols(); ++i)
    {
        const Eigen::Index frame = first + i;
        if (frame >= 0 && frame < frames)
        {
            features->col(i) = sequence->features.col(frame);
        }
        else if (frame < 0 && lead > 0)
        {
            features->col(i) = sequence->features.col(ThereAndBack(-1 - frame, lead));
        }
        else if (frame >= frames && trail > 0)
        {
            features->col(i) = sequence->features.col(frames - 1 - ThereAndBack(frame - frames, trail));
        }
        else
        {
            features->col(i).setZero();
        }
    }
}

} // namespace velox::engine
