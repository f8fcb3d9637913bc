#include "engine/training/NearCheckTraining.h"

#include "engine/listening/PathDescription.h"
#include "engine/training/LogisticFit.h"

#include <algorithm>

namespace velox::engine
{

namespace
{

/// Share of the training's takes that the near-phrase check may refuse. A milder cut lets background through: it cost more misses
/// at an equal rate of false alarms than the takes of unheard voices that this one refuses.
constexpr double NearCheckLoss = 0.003;

using Descriptions = std::vector<PathDescription>;

void Describe(const PhraseModel& model, const std::vector<PhrasePlace>& places, Descriptions* descriptions)
{
    for (const PhrasePlace& place : places)
    {
        if (!place.features.empty() && place.score > model.tail.start)
        {
            descriptions->push_back(DescribePath(place.path, model.states));
        }
    }
}

/// Examples side by side.
Eigen::MatrixXf FeaturesOf(const Descriptions& examples)
{
    Eigen::MatrixXf features(NearPhraseCheck::Features, static_cast<Eigen::Index>(examples.size()));
    for (std::size_t i = 0; i < examples.size(); ++i)
    {
        features.col(static_cast<Eigen::Index>(i)) = examples[i];
    }
    return features;
}

/// The log odds that NearCheckLoss of the takes stay below.
float CutOf(const LogisticRegression& classifier, const Descriptions& good)
{
    std::vector<float> odds;
    for (const PathDescription& description : good)
    {
        odds.push_back(classifier.LogOdds(description));
    }
    const auto rank = static_cast<std::ptrdiff_t>(NearCheckLoss * static_cast<double>(odds.size()));
    std::nth_element(odds.begin(), odds.begin() + rank, odds.end());
    return odds[static_cast<std::size_t>(rank)];
}

} // namespace

NearPhraseCheck TrainNearCheck(const PhraseModel& model, const PhrasePlaces& places)
{
    Descriptions good;
    Descriptions near;
    Describe(model, places.takes, &good);
    Describe(model, places.copies, &good);
    Describe(model, places.damaged, &near);

    NearPhraseCheck check;
    check.classifier.weights = Eigen::VectorXf::Zero(NearPhraseCheck::Features);
    check.cut = -1.0F; // without examples everything passes
    if (!good.empty() && !near.empty())
    {
        check.classifier = FitLogisticRegression(FeaturesOf(good), FeaturesOf(near));
        check.cut = CutOf(check.classifier, good);
    }
    return check;
}

} // namespace velox::engine
