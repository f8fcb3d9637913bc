#pragma once

namespace velox::engine
{

/// The learning rate over a training: up to the peak, then down to almost nothing, along half cosines (Smith and Topin,
/// "Super-convergence: very fast training of neural networks using large learning rates", 2017).
class OneCycleSchedule
{
public:
    static constexpr double RisingShare = 0.3;
    static constexpr double PeakOverFirst = 25.0;
    static constexpr double FirstOverLast = 1e4;

    OneCycleSchedule(double peakRate, int batches) : peak(peakRate), count(batches)
    {
    }

    /// @param batch  0 to batches - 1
    double Rate(int batch) const;

private:
    double peak;
    int count;
};

} // namespace velox::engine
