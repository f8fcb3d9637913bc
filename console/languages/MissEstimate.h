#pragma once

#include "console/report/Picture.h"
#include "engine/training/LanguageMaterial.h"
#include "engine/training/LanguageOptions.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace velox::console
{

/// Fewer voices are not enough to do without some.
inline constexpr std::size_t LeastVoicesForEstimate = 6;

/// What takes score whose voices were not learned from.
struct HeldOutTakes
{
    std::size_t voices = 0;
    std::vector<double> scores; ///< ScoreScale

    /// Takes below the threshold of this rate.
    int64_t MissedAt(double alarmsPerHour) const;
};

/// Holds out every fifth voice, learns a language from the others and scores the takes held out. It takes a third of a
/// whole training: with a quarter of the steps, and half of the copies and of the background, the estimate is rather too high.
/// @param material  of LeastVoicesForEstimate voices at least
/// @param options   of the whole training
/// @return nothing when it was cancelled, or the takes do not suffice
std::optional<HeldOutTakes> ScoreHeldOut(engine::LanguageMaterial material, engine::LanguageOptions options);

/// Misses over false alarms per hour.
Chart MissChart(const HeldOutTakes& takes, double alarmsPerHour);

} // namespace velox::console
