#include "engine/training/JudgeTraining.h"

#include "engine/listening/PathDescription.h"
#include "engine/training/LogisticFit.h"

#include <algorithm>

namespace velox::engine
{

namespace
{

/// What damaged takes count for. More of it hears fewer near phrases, and less in noise.
constexpr double DamagedShare = 0.05;

/// Paths side by side; of takes that were too short there is none.
Eigen::MatrixXf Describe(const std::vector<PhrasePlace>& places)
{
    Eigen::MatrixXf features(PhraseModel::PathFeatures, static_cast<Eigen::Index>(places.size()));
    Eigen::Index count = 0;
    for (const PhrasePlace& place : places)
    {
        if (!place.features.empty())
        {
            features.col(count++) = DescribePath(place.path);
        }
    }
    return features.leftCols(count);
}

Eigen::MatrixXf SideBySide(const Eigen::MatrixXf& left, const Eigen::MatrixXf& right)
{
    Eigen::MatrixXf both(left.rows(), left.cols() + right.cols());
    both << left, right;
    return both;
}

} // namespace

LogisticRegression TrainJudge(const HeldOutPlaces& places)
{
    const std::vector<ExampleGroup> groups{
        {SideBySide(Describe(places.phrases.takes), Describe(places.phrases.copies)), true, 0.5},
        {Describe(places.damaged), false, DamagedShare},
        {Describe(places.background), false, 0.5 - DamagedShare}};
    if (std::ranges::any_of(groups, [](const ExampleGroup& group) { return group.features.cols() == 0; }))
    {
        return {Eigen::VectorXf::Zero(PhraseModel::PathFeatures), 0.0F};
    }
    return FitLogisticRegression(groups);
}

} // namespace velox::engine
