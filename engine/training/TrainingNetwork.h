#pragma once

#include "engine/base/RandomStream.h"
#include "engine/models/Network.h"
#include "engine/training/BatchNormalization.h"

#include <Eigen/Core>

#include <vector>

namespace velox::engine
{

struct LayerShape
{
    int inputs;
    int outputs;
    int kernel;
    int dilation;
};

/// What the rows of a layer's batches amount to.
struct RowStatistics
{
    Eigen::VectorXf mean;
    Eigen::VectorXf variance;
};

/// The parameters of a network that learns, all in one vector, so that a gradient is a vector, too. Batch normalisation follows
/// every layer but the last.
class TrainingNetwork
{
public:
    /// One layer's part of a vector of parameters or of its gradient.
    struct LayerPart
    {
        Eigen::Map<Eigen::MatrixXf> weights;
        Eigen::Map<Eigen::VectorXf> gain; ///< none in the last layer
        Eigen::Map<Eigen::VectorXf> shift;
    };
    struct ConstLayerPart
    {
        Eigen::Map<const Eigen::MatrixXf> weights;
        Eigen::Map<const Eigen::VectorXf> gain;
        Eigen::Map<const Eigen::VectorXf> shift;
    };

    /// Starts with random weights (He 2015), gains of 1 and shifts of 0.
    TrainingNetwork(std::vector<LayerShape> shapes, RandomStream* random);

    const std::vector<LayerShape>& Shapes() const
    {
        return shapes;
    }
    Eigen::VectorXf& Parameters()
    {
        return parameters;
    }
    const Eigen::VectorXf& Parameters() const
    {
        return parameters;
    }

    LayerPart Part(std::size_t layer, Eigen::VectorXf* vector) const;
    ConstLayerPart Part(std::size_t layer) const;

    /// The network for use.
    ///
    /// @param statistics  that the batch normalisation of each layer but the last is to hold fast
    Network Fold(const std::vector<RowStatistics>& statistics) const;

private:
    std::vector<LayerShape> shapes;
    std::vector<Eigen::Index> offsets; ///< of each layer's part
    Eigen::VectorXf parameters;
};

/// The network's layers for a phrase of so many states: a field of 35 frames.
std::vector<LayerShape> TimeDelayShapes(int states);

} // namespace velox::engine
