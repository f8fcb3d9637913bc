#pragma once

#include <algorithm>
#include <cmath>
#include <span>

namespace velox::engine
{

/// The tail of the scores that background gives: false alarms per hour fall exponentially with the score (peaks over threshold:
/// Coles, "An Introduction to Statistical Modeling of Extreme Values", 2001).
struct BackgroundTail
{
    /// Length of the blocks whose largest scores are looked at.
    static constexpr double BlockSeconds = 2.0;
    /// Share of the blocks whose largest score lies above the tail's start.
    static constexpr double ExceedingShare = 0.05;
    /// False alarms per hour of background at the tail's start.
    static constexpr double AlarmsAtStart = 3600.0 / BlockSeconds * ExceedingShare;

    /// Of a fit whose blocks are all alike, and of a model that can be read.
    static constexpr float LeastSlope = 0.01F;

    float start = 0.0F; ///< the 95th percentile of the blocks' largest scores
    float slope = 1.0F; ///< score for a factor e of the rate, above 0

    /// Finds the start, and the slope from how far the blocks above it lie above it in the mean.
    /// @param blockMaxima  largest scores of successive blocks of background; reordered
    static BackgroundTail Fit(std::span<float> blockMaxima);

    /// The score's rate in factors e below half a false alarm per hour; negative above it.
    float FactorsBelowHalf(float score) const
    {
        return (score - start) / slope - static_cast<float>(std::log(AlarmsAtStart / 0.5));
    }
};

/// The scale on which scores leave the engine, and that thresholds are written in: 0 to 255, and ten steps are a factor e of the
/// false-alarm rate.
struct ScoreScale
{
    static constexpr float Least = 0.0F;
    static constexpr float Most = 255.0F;
    /// Where half a false alarm per hour falls.
    static constexpr float HalfAlarmPerHour = 100.0F;
    static constexpr float StepsPerFactorE = 10.0F;

    /// @param factors  e below half a false alarm per hour
    static float FromFactors(float factors)
    {
        return Clamp(HalfAlarmPerHour + StepsPerFactorE * factors);
    }

    /// The threshold that gives this many false alarms per hour.
    static float FromAlarmsPerHour(double alarms)
    {
        return FromFactors(static_cast<float>(std::log(0.5 / alarms)));
    }

    /// What is not a number becomes Least.
    static float Clamp(float value)
    {
        return value > Least ? std::min(value, Most) : Least;
    }
};

} // namespace velox::engine
