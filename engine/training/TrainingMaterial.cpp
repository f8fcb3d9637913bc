#include "engine/training/TrainingMaterial.h"

#include "engine/listening/PhraseSearch.h"
#include "engine/training/TakeDamage.h"
#include "engine/training/TakePause.h"

#include <algorithm>

namespace velox::engine
{

namespace
{

Eigen::MatrixXf ToMatrix(std::span<const MelFrame> features)
{
    Eigen::MatrixXf matrix(MelChannels, static_cast<Eigen::Index>(features.size()));
    for (std::size_t i = 0; i < features.size(); ++i)
    {
        matrix.col(static_cast<Eigen::Index>(i)) = Eigen::Map<const Eigen::VectorXf>(features[i].data(), MelChannels);
    }
    return matrix;
}

/// The labels of a whole prepared take: background around the phrase.
std::vector<int> TakeLabels(const PreparedTake& take, const std::vector<int>& phraseLabels, int background)
{
    std::vector<int> labels(take.logMel.size(), background);
    std::copy(phraseLabels.begin(), phraseLabels.end(), labels.begin() + static_cast<std::ptrdiff_t>(take.begin));
    return labels;
}

void SetFold(int fold, std::vector<TrainingSequence>* sequences)
{
    for (TrainingSequence& sequence : *sequences)
    {
        sequence.fold = fold;
    }
}

class MaterialMaker
{
public:
    MaterialMaker(const FeatureStatistics& featureStatistics, const std::vector<std::vector<float>>& other,
                  const LanguageOptions& languageOptions, int label)
        : statistics(featureStatistics), background(other), options(languageOptions), backgroundLabel(label)
    {
    }

    /// A sequence of the take itself, then one of each of its copies and of its damaged copies.
    /// @param plans  receives those of the copies
    std::vector<TrainingSequence> FromTake(const PreparedTake& take, const std::vector<int>& phraseLabels, std::size_t number,
                                           std::span<AugmentationPlan> plans) const
    {
        const std::vector<int> labels = TakeLabels(take, phraseLabels, backgroundLabel);
        std::vector<TrainingSequence> made{Sequence(take.samples, AugmentationPlan{}, labels, take.weight)};
        for (std::size_t i = 0; i < plans.size(); ++i)
        {
            RandomStream random(options.seed * 1000003U + number * plans.size() + i);
            plans[i] = DrawPlan(TrainingRanges, background, &random);
            plans[i].pause = DrawPause(take, &random);
            made.push_back(Sequence(MakeCopy(plans[i], take.samples, background), plans[i], labels, take.weight));
        }
        for (const DamagedCopy& copy : DamagedCopies(take, number, background, options.seed))
        {
            std::vector<int> damaged = labels;
            std::fill(damaged.begin() + static_cast<std::ptrdiff_t>(copy.take.begin),
                      damaged.begin() + static_cast<std::ptrdiff_t>(copy.take.end), backgroundLabel);
            made.push_back(Sequence(MakeCopy(copy.plan, copy.take.samples, background), copy.plan, damaged, take.weight));
        }
        return made;
    }

    /// The recording itself or a noisy copy of it.
    TrainingSequence FromBackground(const std::vector<float>& recording, std::size_t slot, bool copy) const
    {
        AugmentationPlan plan;
        std::vector<float> samples = recording;
        if (copy)
        {
            RandomStream random(options.seed * 7000003U + slot);
            plan = DrawPlan(TrainingRanges, background, &random);
            samples = MakeCopy(plan, recording, background);
        }
        const std::vector<MelFrame> features = AnalyseRecording(statistics, samples, plan.warp);
        return {ToMatrix(features), std::vector<int>(features.size(), backgroundLabel), 1.0F, false};
    }

private:
    /// @param samples  a copy of a take
    /// @param labels   of the take's frames
    TrainingSequence Sequence(std::span<const float> samples, const AugmentationPlan& plan, const std::vector<int>& labels,
                              float weight) const
    {
        std::vector<int> withLead(LeadSamples(plan) / FrameSize, backgroundLabel);
        const std::vector<int> own = plan.pause.has_value() ? LabelsWithPause(labels, *plan.pause) : labels;
        withLead.insert(withLead.end(), own.begin(), own.end());
        const std::vector<MelFrame> features = AnalyseRecording(statistics, samples, plan.warp);
        return {ToMatrix(features), CarryLabels(withLead, plan.speed, features.size(), plan.offset), weight, true};
    }

    const FeatureStatistics& statistics;
    const std::vector<std::vector<float>>& background;
    const LanguageOptions& options;
    int backgroundLabel;
};

} // namespace

TrainingMaterial MakeTrainingMaterial(const std::vector<PreparedTake>& takes, const PhraseAlignment& alignment,
                                      const FeatureStatistics& statistics, const std::vector<std::vector<float>>& background,
                                      const Folds& folds, const LanguageOptions& options, WorkerPool* pool)
{
    const MaterialMaker maker(statistics, background, options, static_cast<int>(alignment.states));
    const auto takeCopies = static_cast<std::size_t>(options.copies);
    TrainingMaterial material;
    material.plans.resize(takes.size() * takeCopies);
    std::vector<std::vector<TrainingSequence>> fromTakes(takes.size());
    pool->Run(static_cast<int>(takes.size()), [&](int part) {
        const auto number = static_cast<std::size_t>(part);
        if (!alignment.labels[number].empty())
        {
            fromTakes[number] = maker.FromTake(takes[number], alignment.labels[number], number,
                                               std::span(material.plans).subspan(number * takeCopies, takeCopies));
            SetFold(folds.takes[number], &fromTakes[number]);
        }
    });

    const std::size_t perRecording = static_cast<std::size_t>(options.backgroundCopies) + 1;
    std::vector<TrainingSequence> fromBackground(background.size() * perRecording);
    pool->Run(static_cast<int>(fromBackground.size()), [&](int part) {
        const auto slot = static_cast<std::size_t>(part);
        fromBackground[slot] = maker.FromBackground(background[slot / perRecording], slot, slot % perRecording != 0);
        fromBackground[slot].fold = folds.background[slot / perRecording];
    });

    fromTakes.push_back(std::move(fromBackground));
    for (std::vector<TrainingSequence>& made : fromTakes)
    {
        std::copy_if(std::make_move_iterator(made.begin()), std::make_move_iterator(made.end()),
                     std::back_inserter(material.sequences), [](const TrainingSequence& one) { return one.Frames() > 0; });
    }
    return material;
}

} // namespace velox::engine
