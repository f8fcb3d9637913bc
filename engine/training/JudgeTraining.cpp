#include "engine/training/JudgeTraining.h"

#include "engine/listening/PathDescription.h"
#include "engine/training/LogisticFit.h"

namespace velox::engine
{

namespace
{

using Descriptions = std::vector<PathDescription>;

void Describe(const std::vector<PhrasePlace>& places, Descriptions* descriptions)
{
    for (const PhrasePlace& place : places)
    {
        if (!place.features.empty())
        {
            descriptions->push_back(DescribePath(place.path));
        }
    }
}

/// Examples side by side.
Eigen::MatrixXf FeaturesOf(const Descriptions& examples)
{
    Eigen::MatrixXf features(PhraseModel::PathFeatures, static_cast<Eigen::Index>(examples.size()));
    for (std::size_t i = 0; i < examples.size(); ++i)
    {
        features.col(static_cast<Eigen::Index>(i)) = examples[i];
    }
    return features;
}

} // namespace

LogisticRegression TrainJudge(const HeldOutPlaces& places)
{
    Descriptions good;
    Descriptions others;
    Describe(places.phrases.takes, &good);
    Describe(places.phrases.copies, &good);
    Describe(places.damaged, &others);
    Describe(places.background, &others);
    if (good.empty() || others.empty())
    {
        return {Eigen::VectorXf::Zero(PhraseModel::PathFeatures), 0.0F};
    }
    return FitLogisticRegression(FeaturesOf(good), FeaturesOf(others));
}

} // namespace velox::engine
