#include "engine/training/CropSampler.h"

#include <algorithm>

namespace velox::engine
{

CropSampler::CropSampler(const std::vector<TrainingSequence>& sequences, int background, int leftOut)
{
    for (const TrainingSequence& sequence : sequences)
    {
        if (sequence.fold == leftOut)
        {
            continue;
        }
        const PaddedSequence padded(sequence, background);
        const auto weight = static_cast<double>(sequence.weight);
        if (sequence.isTake && padded.HasPhrase())
        {
            takes.Add(padded, weight);
        }
        else
        {
            others.Add(padded, weight * static_cast<double>(sequence.Frames()));
        }
    }
}

void CropSampler::Urn::Add(const PaddedSequence& sequence, double chance)
{
    if (chance > 0.0)
    {
        sequences.push_back(sequence);
        chances.push_back((chances.empty() ? 0.0 : chances.back()) + chance);
    }
}

const PaddedSequence& CropSampler::Urn::Draw(RandomStream* random) const
{
    const double chosen = random->Uniform() * chances.back();
    const auto place = std::upper_bound(chances.begin(), chances.end() - 1, chosen) - chances.begin();
    return sequences[static_cast<std::size_t>(place)];
}

CropSampler::Place CropSampler::Draw(bool fromTake, Eigen::Index frames, RandomStream* random) const
{
    const bool takeDrawn = others.sequences.empty() || (fromTake && !takes.sequences.empty());
    const PaddedSequence& sequence = (takeDrawn ? takes : others).Draw(random);
    const Eigen::Index begin = takeDrawn ? sequence.PhraseBegin() : 0;
    const Eigen::Index end = takeDrawn ? sequence.PhraseEnd() : sequence.Sequence().Frames();
    const Eigen::Index margin = takeDrawn ? Margin : 0;
    const auto [earliest, latest] = std::minmax({begin, end - frames});
    return {&sequence, random->Integer(earliest - margin, latest + margin)};
}

} // namespace velox::engine
