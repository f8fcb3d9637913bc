#pragma once

#include "engine/training/BatchNormalization.h"
#include "engine/training/DroppingRectifier.h"
#include "engine/training/TrainingNetwork.h"

#include <vector>

namespace velox::engine
{

/// Takes some crops of equal length through a network that learns, and the gradient of a loss back. Every layer is computed only
/// at every n-th frame (Peddinti 2015), n dividing the dilations of all layers but the first. Nothing is allocated after the
/// first pass.
///
/// In every matrix a column is a crop at a position; the crops of one position stand together, so that a tap of a convolution
/// is one block of columns for all of them.
class TrainingPass
{
public:
    /// @param network     must outlive this
    /// @param outputs     of each crop
    /// @param outputStep  n above: frames between outputs
    TrainingPass(const TrainingNetwork& network, int crops, int outputs, int outputStep);

    /// Frames of a crop.
    int CropFrames() const
    {
        return (positions - 1) * outputStep + network.Shapes().front().kernel;
    }

    /// @param features  channels x CropFrames()
    void SetCrop(int crop, const Eigen::MatrixXf& features);

    /// @param random  decides what is dropped
    /// @return a column of classes for each crop, for each output; may be turned into the gradient for Backward
    Eigen::MatrixXf& Forward(const DroppingRectifier& rectifier, RandomStream* random);

    /// Computes the gradient of the parameters; in the place of what the last Forward returned stands the gradient of that.
    void Backward(const DroppingRectifier& rectifier);

    /// Of the parameters.
    const Eigen::VectorXf& Gradient() const
    {
        return parameterGradient;
    }

    /// Of a layer's last batch.
    const BatchNormalization& Normalization(std::size_t layer) const
    {
        return normalizations[layer];
    }

private:
    Eigen::Index Stride(std::size_t layer) const;

    const TrainingNetwork& network;
    int crops;
    int outputStep;
    int positions;                            ///< at which the first layer is computed
    std::vector<Eigen::MatrixXf> activations; ///< the input of each layer
    std::vector<Eigen::MatrixXf> gradients;   ///< of what each layer computes; the outputs themselves stand in the last
    std::vector<BatchNormalization> normalizations;
    Eigen::VectorXf parameterGradient;
};

} // namespace velox::engine
