#include "engine/enrollment/SpeedChange.h"

#include <Eigen/Core>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace velox::engine
{

namespace
{

/// Samples of the signal that one sample of the result is made of.
constexpr Eigen::Index Taps = 32;
/// Of these, the samples before the position.
constexpr Eigen::Index TapsBefore = Taps / 2 - 1;
/// Positions between two samples for which the taps are tabled; between these they are interpolated linearly (error -82 dB).
constexpr Eigen::Index Phases = 128;
/// Where the pass band ends, as a share of the lower of the two half sample rates.
constexpr double PassBand = 0.92;

/// Column p holds the taps for the position p / Phases behind the middle sample; the last equals the first, one sample on.
using TapTable = Eigen::Matrix<float, Taps, Phases + 1>;

double WindowedSinc(double position, double cutoff)
{
    constexpr double Reach = static_cast<double>(Taps) / 2.0;
    const double phase = std::numbers::pi * cutoff * position;
    const double sinc = std::abs(phase) < 1e-9 ? 1.0 : std::sin(phase) / phase;
    const double share = std::numbers::pi * position / Reach;
    const double blackman = 0.42 + 0.5 * std::cos(share) + 0.08 * std::cos(2.0 * share);
    return std::abs(position) < Reach ? cutoff * sinc * blackman : 0.0;
}

TapTable MakeTapTable(double cutoff)
{
    TapTable table;
    for (Eigen::Index phase = 0; phase <= Phases; ++phase)
    {
        const double fraction = static_cast<double>(phase) / static_cast<double>(Phases);
        for (Eigen::Index tap = 0; tap < Taps; ++tap)
        {
            table(tap, phase) = static_cast<float>(WindowedSinc(static_cast<double>(tap - TapsBefore) - fraction, cutoff));
        }
    }
    return table;
}

} // namespace

std::vector<float> ChangeSpeed(std::span<const float> signal, double speed)
{
    const TapTable table = MakeTapTable(PassBand * std::min(1.0, 1.0 / speed));

    // Zeros on either side, so that the taps never reach outside.
    Eigen::VectorXf padded = Eigen::VectorXf::Zero(static_cast<Eigen::Index>(signal.size()) + Taps);
    std::copy(signal.begin(), signal.end(), padded.begin() + TapsBefore);

    std::vector<float> result(static_cast<std::size_t>(static_cast<double>(signal.size()) / speed));
    for (std::size_t i = 0; i < result.size(); ++i)
    {
        const double position = static_cast<double>(i) * speed;
        const auto whole = static_cast<Eigen::Index>(position);
        const double tablePosition = (position - static_cast<double>(whole)) * static_cast<double>(Phases);
        const auto phase = static_cast<Eigen::Index>(tablePosition);
        const auto share = static_cast<float>(tablePosition - static_cast<double>(phase));
        const auto under = padded.segment<Taps>(whole);
        result[i] = (1.0F - share) * under.dot(table.col(phase)) + share * under.dot(table.col(phase + 1));
    }
    return result;
}

} // namespace velox::engine
