#pragma once

#include <Eigen/Core>

#include <vector>

namespace velox::engine
{

/// One layer of the time-delay network (Waibel 1989; Peddinti, Povey and Khudanpur, "A time delay neural network architecture for
/// efficient modeling of long temporal contexts", 2015): looks at `kernel` of its inputs, `dilation` frames apart.
struct NetworkLayer
{
    int kernel = 1;
    int dilation = 1;
    Eigen::MatrixXf weights; ///< outputs x (kernel * inputs), the oldest input first
    Eigen::VectorXf bias;

    int Inputs() const
    {
        return static_cast<int>(weights.cols()) / kernel;
    }
    int Span() const
    {
        return (kernel - 1) * dilation + 1;
    }
};

/// The weights of a network that is ready for use: batch normalisation is folded in. A rectifier follows every layer but the
/// last; the last layer's outputs are the phrase's states and, as the last of them, the background.
struct Network
{
    std::vector<NetworkLayer> layers;

    /// Frames that one output depends on.
    int Field() const;

    /// Frames after the one that an output speaks of: the field's middle.
    int LookAhead() const
    {
        return Field() / 2;
    }
};

} // namespace velox::engine
