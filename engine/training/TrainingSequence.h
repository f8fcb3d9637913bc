#pragma once

#include <Eigen/Core>

#include <vector>

namespace velox::engine
{

/// Features with the state that each frame belongs to.
struct TrainingSequence
{
    Eigen::MatrixXf features; ///< MelChannels x frames, normalised
    std::vector<int> labels;  ///< of each frame: 0 to states - 1, or `states` for background
    float weight = 1.0F;      ///< how often it is drawn, compared with others of its kind
    bool isTake = false;      ///< holds the phrase
    int fold = 0;             ///< half of the material, see Folds

    Eigen::Index Frames() const
    {
        return features.cols();
    }
};

} // namespace velox::engine
