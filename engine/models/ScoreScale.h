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
    static constexpr double ExceedingShare = 0.1;
    /// Slope of the tail, in score units per factor e of the rate. Fixed: a fit to half an hour of background wobbles between
    /// 0.34 and 0.62, and unseen speech gives 0.47 and 0.48.
    static constexpr float Slope = 0.48F;

    float start = 0.0F; ///< the 90th percentile of the blocks' largest scores

    /// Finds the start. @param blockMaxima  largest scores of successive blocks of background; reordered
    static BackgroundTail Fit(std::span<float> blockMaxima);
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

    /// False alarms per hour of background at the tail's start: a tenth of the blocks.
    static constexpr double AlarmsAtTailStart = 3600.0 / BackgroundTail::BlockSeconds * BackgroundTail::ExceedingShare;

    /// @param score  in the units of the decoder, with the tail that background gives
    static float FromScore(float score, const BackgroundTail& tail)
    {
        const auto halfAlarm = static_cast<float>(std::log(AlarmsAtTailStart / 0.5));
        return Clamp(HalfAlarmPerHour + StepsPerFactorE * ((score - tail.start) / BackgroundTail::Slope - halfAlarm));
    }

    /// The threshold that gives this many false alarms per hour.
    static float FromAlarmsPerHour(double alarms)
    {
        return Clamp(HalfAlarmPerHour + StepsPerFactorE * static_cast<float>(std::log(0.5 / alarms)));
    }

    /// What is not a number becomes Least.
    static float Clamp(float value)
    {
        return value > Least ? std::min(value, Most) : Least;
    }
};

} // namespace velox::engine
