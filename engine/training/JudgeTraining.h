#pragma once

#include "engine/models/LogisticRegression.h"
#include "engine/training/HeldOutSearch.h"

namespace velox::engine
{

/// Teaches the judge to tell the phrase, clean and in noisy copies, from damaged takes and from background. A network is surer of
/// what it learned from, and a judge that saw that would be too strict with unheard voices: so all of it is unheard.
/// @return what gives log odds of 0 where there is nothing to tell apart
LogisticRegression TrainJudge(const HeldOutPlaces& places);

} // namespace velox::engine
