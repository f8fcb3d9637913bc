#include "engine/training/TrainingNetwork.h"

#include <cmath>
#include <utility>

namespace velox::engine
{

TrainingNetwork::TrainingNetwork(std::vector<LayerShape> layerShapes, RandomStream* random) : shapes(std::move(layerShapes))
{
    Eigen::Index size = 0;
    for (const LayerShape& shape : shapes)
    {
        offsets.push_back(size);
        size += shape.outputs * (static_cast<Eigen::Index>(shape.kernel) * shape.inputs + 2);
    }
    parameters.setZero(size - shapes.back().outputs);

    for (std::size_t i = 0; i < shapes.size(); ++i)
    {
        LayerPart part = Part(i, &parameters);
        const double deviation = std::sqrt(2.0 / static_cast<double>(part.weights.cols()));
        for (float& weight : part.weights.reshaped())
        {
            weight = static_cast<float>(deviation * random->Normal());
        }
        part.gain.setOnes();
    }
}

TrainingNetwork::LayerPart TrainingNetwork::Part(std::size_t layer, Eigen::VectorXf* vector) const
{
    const LayerShape& shape = shapes[layer];
    const Eigen::Index inputs = static_cast<Eigen::Index>(shape.kernel) * shape.inputs;
    const Eigen::Index gains = layer + 1 == shapes.size() ? 0 : shape.outputs;
    float* const weights = vector->data() + offsets[layer];
    float* const gain = weights + shape.outputs * inputs;
    return {{weights, shape.outputs, inputs}, {gain, gains}, {gain + gains, shape.outputs}};
}

TrainingNetwork::ConstLayerPart TrainingNetwork::Part(std::size_t layer) const
{
    // The maps of the result are read-only.
    const LayerPart part = Part(layer, const_cast<Eigen::VectorXf*>(&parameters));
    return {{part.weights.data(), part.weights.rows(), part.weights.cols()},
            {part.gain.data(), part.gain.size()},
            {part.shift.data(), part.shift.size()}};
}

Network TrainingNetwork::Fold(const std::vector<RowStatistics>& statistics) const
{
    Network network;
    for (std::size_t i = 0; i < shapes.size(); ++i)
    {
        const ConstLayerPart part = Part(i);
        NetworkLayer layer{shapes[i].kernel, shapes[i].dilation, part.weights, part.shift};
        if (i < statistics.size())
        {
            const Eigen::VectorXf factor =
                part.gain.array() / (statistics[i].variance.array() + BatchNormalization::LeastVariance).sqrt();
            layer.weights = factor.asDiagonal() * part.weights;
            layer.bias -= factor.cwiseProduct(statistics[i].mean);
        }
        network.layers.push_back(std::move(layer));
    }
    return network;
}

std::vector<LayerShape> TimeDelayShapes(int states)
{
    constexpr int Width = 64;
    return {
        {MelChannels, Width, 5, 1}, {Width, Width, 3, 3}, {Width, Width, 3, 6}, {Width, Width, 3, 6}, {Width, states + 1, 1, 1}};
}

} // namespace velox::engine
