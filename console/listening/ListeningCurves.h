#pragma once

#include "console/pages/Report.h"
#include "engine/models/PhraseModel.h"

#include <span>

namespace velox::console
{

/// What a recording gives over time, for a report page.
struct ListeningCurves
{
    ReportCurve quality{}; ///< dB above the noise
    ReportCurve score{};   ///< of the words alone, without the voice; the first stage that runs on every frame
};

/// The curves of a recording of any length: at most MostWaveStretches values each, the highest of its stretch.
ListeningCurves CurvesOf(const engine::PhraseModel& model, std::span<const float> samples);

} // namespace velox::console
