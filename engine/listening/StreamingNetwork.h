#pragma once

#include "engine/models/Network.h"
#include "engine/sound/MelFilterbank.h"

namespace velox::engine
{

/// Runs a network frame by frame. Nothing is allocated after the construction.
class StreamingNetwork
{
public:
    /// @param network  must outlive this
    explicit StreamingNetwork(const Network& network);

    /// @return null while the field is not full; else the natural logarithms of the outputs' posteriors, valid until the next
    /// call
    const Eigen::VectorXf* Push(const MelFrame& feature);

private:
    struct LayerState
    {
        Eigen::MatrixXf ring; ///< inputs x span
        int next = 0;
        int filled = 0;
        Eigen::VectorXf gathered; ///< kernel * inputs
        Eigen::VectorXf output;
    };

    /// @return false while the layer's span is not full
    static bool PushLayer(const NetworkLayer& layer, const float* input, LayerState* state);

    const Network& network;
    std::vector<LayerState> states;
};

/// Turns outputs into natural logarithms of posteriors.
void LogSoftmax(Eigen::VectorXf* outputs);

} // namespace velox::engine
