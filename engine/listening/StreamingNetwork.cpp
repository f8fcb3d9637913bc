#include "engine/listening/StreamingNetwork.h"

#include <cmath>

namespace velox::engine
{

StreamingNetwork::StreamingNetwork(const Network& weights) : network(weights)
{
    for (const NetworkLayer& layer : network.layers)
    {
        states.push_back({Eigen::MatrixXf::Zero(layer.Inputs(), layer.Span()), 0, 0, Eigen::VectorXf::Zero(layer.weights.cols()),
                          Eigen::VectorXf::Zero(layer.weights.rows())});
    }
}

bool StreamingNetwork::PushLayer(const NetworkLayer& layer, const float* input, LayerState* state)
{
    const int span = layer.Span();
    state->ring.col(state->next) = Eigen::Map<const Eigen::VectorXf>(input, layer.Inputs());
    state->next = (state->next + 1) % span;
    if (state->filled < span)
    {
        ++state->filled;
    }
    if (state->filled < span)
    {
        return false;
    }
    for (Eigen::Index k = 0; k < layer.kernel; ++k)
    {
        state->gathered.segment(k * layer.Inputs(), layer.Inputs()) = state->ring.col((state->next + k * layer.dilation) % span);
    }
    state->output = layer.bias;
    state->output.noalias() += layer.weights * state->gathered;
    return true;
}

const Eigen::VectorXf* StreamingNetwork::Push(const MelFrame& feature)
{
    const float* input = feature.data();
    for (std::size_t i = 0; i < states.size(); ++i)
    {
        if (!PushLayer(network.layers[i], input, &states[i]))
        {
            return nullptr;
        }
        const bool last = i + 1 == states.size();
        if (!last)
        {
            states[i].output = states[i].output.cwiseMax(0.0F);
        }
        input = states[i].output.data();
    }
    LogSoftmax(&states.back().output);
    return &states.back().output;
}

void LogSoftmax(Eigen::VectorXf* outputs)
{
    const float largest = outputs->maxCoeff();
    const float logSum = largest + std::log((outputs->array() - largest).exp().sum());
    outputs->array() -= logSum;
}

} // namespace velox::engine
