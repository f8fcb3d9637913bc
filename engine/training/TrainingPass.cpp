#include "engine/training/TrainingPass.h"

#include "engine/training/Convolution.h"

namespace velox::engine
{

TrainingPass::TrainingPass(const TrainingNetwork& learning, int cropCount, int outputs, int step)
    : network(learning), crops(cropCount), outputStep(step), positions(outputs), activations(learning.Shapes().size()),
      gradients(learning.Shapes().size()), normalizations(learning.Shapes().size() - 1),
      parameterGradient(learning.Parameters().size())
{
    const std::vector<LayerShape>& shapes = network.Shapes();
    for (std::size_t i = 1; i < shapes.size(); ++i)
    {
        positions += (shapes[i].kernel - 1) * shapes[i].dilation / outputStep;
    }
    const LayerShape& first = shapes.front();
    activations.front().resize(static_cast<Eigen::Index>(first.inputs) * first.kernel,
                               static_cast<Eigen::Index>(positions) * crops);
}

void TrainingPass::SetCrop(int crop, const Eigen::MatrixXf& features)
{
    // The taps of the first layer are gathered here, so that it has but one.
    Eigen::MatrixXf& input = activations.front();
    for (Eigen::Index i = 0; i < positions; ++i)
    {
        input.col(i * crops + crop) = features.middleCols(i * outputStep, network.Shapes().front().kernel).reshaped();
    }
}

Eigen::Index TrainingPass::Stride(std::size_t layer) const
{
    return static_cast<Eigen::Index>(network.Shapes()[layer].dilation / outputStep) * crops;
}

Eigen::MatrixXf& TrainingPass::Forward(const DroppingRectifier& rectifier, RandomStream* random)
{
    for (std::size_t i = 0; i < normalizations.size(); ++i)
    {
        const TrainingNetwork::ConstLayerPart part = network.Part(i);
        Convolve(part.weights, Stride(i), activations[i], &activations[i + 1]);
        normalizations[i].Forward(part.gain, part.shift, &activations[i + 1]);
        rectifier.Forward(random, &activations[i + 1]);
    }
    const std::size_t last = normalizations.size();
    const TrainingNetwork::ConstLayerPart part = network.Part(last);
    Convolve(part.weights, Stride(last), activations[last], &gradients.back());
    gradients.back().colwise() += part.shift;
    return gradients.back();
}

void TrainingPass::Backward(const DroppingRectifier& rectifier)
{
    for (std::size_t i = gradients.size(); i-- > 0;)
    {
        TrainingNetwork::LayerPart part = network.Part(i, &parameterGradient);
        if (i < normalizations.size())
        {
            rectifier.Backward(activations[i + 1], &gradients[i]);
            normalizations[i].Backward(network.Part(i).gain, &gradients[i], part.gain, part.shift);
        }
        else
        {
            part.shift = gradients[i].rowwise().sum();
        }
        WeightGradient(gradients[i], Stride(i), activations[i], part.weights);
        if (i > 0)
        {
            gradients[i - 1].resize(activations[i].rows(), activations[i].cols());
            InputGradient(network.Part(i).weights, Stride(i), gradients[i], &gradients[i - 1]);
        }
    }
}

} // namespace velox::engine
