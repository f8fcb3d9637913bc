#pragma once

#include "console/report/Report.h"
#include "engine/training/LanguageMaterial.h"
#include "engine/training/LanguageOptions.h"

namespace velox::console
{

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
/// @param options   of the whole training
/// @return nothing when it was cancelled, or the material does not suffice
std::optional<HeldOutTakes> ScoreHeldOut(engine::LanguageMaterial material, engine::LanguageOptions options);

/// Adds the misses, or that they are not estimated where nothing was held out, and their chart over the false alarms per hour.
void AddMisses(const std::optional<HeldOutTakes>& takes, double alarmsPerHour, Report* report);

} // namespace velox::console
